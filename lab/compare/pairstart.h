#pragma once

/// Fresh instruments on fresh copies of what they measure: a pair that is compared, or one by itself.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "compare/settings.h"
#include "turns/instrument.h"

namespace lab {

/// What was started of a side.
struct Started {
    std::unique_ptr<Instrument> instrument;
    /// Where it really has its objects mapped, in the order of StoredSide::objects.
    std::vector<std::string> mapped;
};

/// Starts of an instrument before a failure is taken for one.
constexpr int ChancesToStart = 3;

/// Starts the sides, one or two, in random order, on the core this process is bound to, with equal random
/// amounts of environment. A failure gets further chances, as someone may have killed a child; then
/// std::runtime_error if one does not start, takes no turns, or has mapped other objects than its copies.
/// The random numbers are those of the pair, or the process, and of the start; each start of a pair needs a
/// number ChancesToStart above the last.
std::vector<Started> startSurely(std::span<const StoredSide> sides, int mhz, const RunSettings& settings,
                                 int pair, int start);

}  // namespace lab
