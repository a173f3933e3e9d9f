#pragma once

/// What two instruments measured at one point, and the one figure a pair of processes gives there.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lab {

enum class Side { older, newer };

/// One turn of one instrument: some blocks of calls, each timed by itself. Ticks are those of the processor's
/// time-stamp counter, as read.
struct Turn {
    Side side = Side::older;
    int epoch = 0;                      ///< both sides take one turn in each epoch; from 0
    std::int64_t calls = 1;             ///< in each block
    std::vector<std::int64_t> ticks{};  ///< of each block
    std::int64_t empty = 0;             ///< ticks of a stretch with nothing in it
    std::int64_t loop = 0;              ///< ticks of a block that calls nothing, clock reads included
    double seconds = 0;                 ///< since the comparison began
};

/// What a pair of processes says at one point.
struct Pair {
    double value = 0;   ///< median over the epochs of log(new / old)
    double spread = 0;  ///< of an epoch's log(new / old) around it: a standard deviation
    double grain = 0;   ///< the step of the clock as a part of the shortest turn
    int epochs = 0;     ///< in which both sides took a turn
    double older = 0;   ///< ticks of one call, the least of all turns less the least of their loops
    double newer = 0;   ///< the same of the new build
};

/// The value of a pair from its turns at one point, in any order. Nothing when no epoch has a turn of both
/// sides.
std::optional<Pair> pairOf(std::span<const Turn> turns);

}  // namespace lab
