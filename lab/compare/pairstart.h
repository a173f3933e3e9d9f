#pragma once

/// A fresh pair of instruments on fresh copies of what is compared.

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "compare/settings.h"
#include "machine/random.h"
#include "turns/instrument.h"

namespace lab {

struct InstrumentPair {
    std::array<std::unique_ptr<Instrument>, 2> side;  ///< old, new
    /// Where each really has its objects mapped, in the order of StoredSide::objects.
    std::array<std::vector<std::string>, 2> mapped;
};

/// Starts both in random order, on the core this process is bound to, with equal random amounts of
/// environment. std::runtime_error if one does not start, takes no turns, or has mapped other objects than
/// its copies.
InstrumentPair startPair(const std::array<StoredSide, 2>& sides, int mhz, std::chrono::milliseconds patience,
                         Random random);

/// Starts of a pair before a failure is taken for one.
constexpr int ChancesToStart = 3;

/// The same with further chances, as someone may have killed a child. The random numbers are those of the
/// pair and of the start; each start of a pair needs a number ChancesToStart above the last.
InstrumentPair startPairSurely(const std::array<StoredSide, 2>& sides, int mhz, const Settings& settings,
                               int pair, int start);

}  // namespace lab
