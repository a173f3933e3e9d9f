#pragma once

/// How a comparison went: what its pairs said at each point, and what the machine did meanwhile.

#include <optional>
#include <vector>

namespace lab {

/// What one pair of processes said at a point.
struct PairValue {
    int pair = 0;
    double value = 0;    ///< log(new / old)
    bool fresh = false;  ///< the pair was asked to confirm
};

/// A stretch of the run.
struct Slice {
    /// Time of calls over their least time in this run, median over what was measured then. Nothing where too
    /// little was.
    std::optional<double> slowdown;
    bool busy = false;  ///< slowed down by more than a quiet machine would
};

/// The state of the machine when a pair had ended.
struct PairState {
    int pair = 0;
    double seconds = 0;   ///< since the comparison began
    double busyness = 1;  ///< time of a fixed piece of work over its least
    double steal = 0;     ///< part of the time that other machines took, 0 to 1
    double load = 0;
};

struct Course {
    std::vector<std::vector<PairValue>> points;  ///< as Report::points, pairs in the order of their start
    double step = 0;                             ///< seconds of a slice
    std::vector<Slice> slices;                   ///< from the comparison's begin on, without gaps
    std::vector<PairState> pairs;
};

}  // namespace lab
