#pragma once

/// What can be said about a point: slower, faster, the same, or why it cannot be told.

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "verdict/plan.h"
#include "verdict/turn.h"

namespace lab {

enum class Verdict { slower, faster, same, unsure };

/// Why a point is unsure.
enum class Reason {
    none,
    pairs,     ///< too few pairs for a look, or for the confirmation
    noise,     ///< the epochs of a pair scatter
    layout,    ///< each pair is steady, and pairs disagree
    margin,    ///< the difference is known well, and lies near the margin
    grain,     ///< one step of the clock is too much of a turn
    repeated,  ///< something was seen, and fresh pairs or another session did not show it
    status,    ///< the library's status differs between the builds
    crash,     ///< a build did not live through the point
};

/// Constant texts, as they stand in tables and documents: "slower", "noise", ...; "" for Reason::none.
std::string_view word(Verdict verdict);
std::string_view word(Reason reason);
/// A sentence for people: what the reason means.
std::string_view explanation(Reason reason);

/// What became of the calls of one build at a point.
struct Fate {
    int status = 0;  ///< the library's
    /// What ended the process or the test ("SIGSEGV", "exit 3", "no answer"); empty: it lived.
    std::string death{};
    bool operator==(const Fate&) const = default;
};

/// An interval that holds the median over all pairs there could be. Natural logarithms of new / old.
struct Interval {
    double low = -std::numeric_limits<double>::infinity();
    double middle = 0;
    double high = std::numeric_limits<double>::infinity();
};

/// Everything measured at a point, pairs in the order in which they were started.
struct Evidence {
    std::span<const Pair> pairs;  ///< those that walked all open points
    std::span<const Pair> fresh;  ///< those that were asked to confirm
    Fate older;
    Fate newer;
};

/// What is to be measured next at a point.
enum class Next { nothing, pairs, fresh };

struct Decision {
    Verdict verdict = Verdict::unsure;
    Reason reason = Reason::pairs;
    Interval interval{};
    /// The smallest |log(new / old)| that pairs scattered like these would have shown.
    double smallest = std::numeric_limits<double>::infinity();
    int pairs = 0;            ///< that the interval rests on
    Next next = Next::pairs;  ///< nothing: the point is closed
    int wanted = 0;           ///< how many pairs (or fresh pairs) the next look needs in all
};

/// The verdict on a point from what is there so far: the same evidence gives the same decision, however often
/// a comparison was interrupted. A margin of 0.01 is one percent. Pairs after the look that closed a point,
/// or that asked for fresh ones, do not count.
Decision decide(const Evidence& evidence, const Plan& plan, double margin);

}  // namespace lab
