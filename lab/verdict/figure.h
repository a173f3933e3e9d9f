#pragma once

/// The figure of one build at a point: the clocks of one call, and what it is worth.

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "verdict/turn.h"

namespace lab {

/// Turns that lie together, apart from the others.
struct Cluster {
    double clocks = 0;  ///< median of its turns; of the first one the floor
    std::size_t turns = 0;
    /// Whole processes lie in it: where their code and data are may be the reason. Else processes are in it
    /// for a time.
    bool byProcess = false;
};

/// All in clocks of one call, less an empty stretch and what the bare loop takes beyond its counter.
struct Figure {
    double floor = 0;         ///< what the least turns took, see below
    std::size_t reached = 0;  ///< turns that came near to it
    double median = 0;        ///< of all turns
    double spread = 0;        ///< of the turns around their median, a standard deviation
    /// Hold the median of the least turns of all processes there could be: the second and the second last of
    /// eight processes and more, else the first and the last.
    double low = 0;
    double high = 0;
    double loop = 0;  ///< of a turn of the bare loop: the counter and, if there is one, the init
    std::size_t turns = 0;
    std::size_t processes = 0;
    std::vector<Cluster>
        clusters{};  ///< the floor's first, then by clocks; turns that lie scattered are in none
};

/// The figure of a point by the turns of each process there; nothing without a turn.
///
/// A turn says what its least block says. The floor is the least that two turns say, within 0.3% or a step of
/// the clock: one alone may be a fault of the clock. Its figure is the mean of the turns within a step of the
/// clock of it, which is finer than the step.
std::optional<Figure> figureOf(std::span<const std::vector<Turn>> processes);

}  // namespace lab
