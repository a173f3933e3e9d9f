/// Some calls have two speeds: that of a free core and that beside a busy sibling, say, or that of a good and
/// of a bad place in memory. A side that never came into the fast state was not seen at its best, and the
/// clocks of the two sides are not those of one state.
///
/// Clusters. The clocks of a call of all pairs and of both sides, as logarithms, are sorted and cut at their
/// widest gap. Sides play no part in that. There are two states if the gap is at least 5% and wider than the
/// whole fast cluster.
///
/// Chance. A pair with one side in each cluster is a coin: where the builds do not differ, the fast side of
/// it is the old one as often as the new one, since all that could tell them apart was drawn by lot. What
/// disturbs both sides of a pair alike makes no coin. One side is named after 12 coins that all show it, 17
/// with one that does not, 21 with two, 25 with three. That a walk of fair coins ever comes to one of these,
/// for either side, has a probability of 0.1%.
///
/// Size. A build that is faster throughout is no case of two states, so at least an eighth of the pairs of
/// the side named must be slow, and its slow ones as slow as those of the other side: the medians within half
/// of the gap. The other side may be fast at one pair of twenty at most. And it must not care: its medians in
/// the pairs where the side named is fast and where it is slow lie within 5%. Else the pair as a whole was
/// disturbed, and the disturbed calls of a fast build happen to take as long as the calls of a slow one.

#include "verdict/states.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "verdict/plan.h"
#include "verdict/statistics.h"

namespace lab {
namespace {

constexpr double leastGap = 0.05;
constexpr std::size_t oneOfFast = 20;  // pairs of the other side, at most
constexpr std::size_t oneOfSlow = 8;   // pairs of the side named, at least

/// So many coins, of which fewer than `rank` show the other side.
constexpr std::array<Look, 4> looks{{{12, 1}, {17, 2}, {21, 3}, {25, 4}}};

/// The clusters in logarithms of ticks.
struct Gap {
    double fast = 0;  ///< upper end of the fast one
    double slow = 0;  ///< lower end of the slow one
    double width() const { return slow - fast; }
};

/// The widest gap that leaves enough values on both sides of it for something to be said.
std::optional<Gap> widestGap(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t fewestFast = static_cast<std::size_t>(looks[0].pairs);
    const std::size_t fewestSlow = values.size() / 2 / oneOfSlow + 1;
    std::optional<Gap> widest;
    for (std::size_t i = fewestFast; i + fewestSlow <= values.size(); ++i) {
        const Gap gap{values[i - 1], values[i]};
        if (!widest || gap.width() > widest->width()) {
            widest = gap;
        }
    }
    const bool clear =
        widest && widest->width() >= leastGap && widest->width() > widest->fast - values.front();
    return clear ? widest : std::nullopt;
}

/// The pairs of one side.
struct Cluster {
    int alone = 0;  ///< fast where the other side is slow
    std::size_t fast = 0;
    std::vector<double> slow;
    std::vector<double> otherWhenFast;
    std::vector<double> otherWhenSlow;

    void add(double value, double other, const Gap& gap) {
        const bool isFast = value <= gap.fast;
        alone += isFast && other > gap.fast;
        fast += isFast;
        if (!isFast) {
            slow.push_back(value);
        }
        (isFast ? otherWhenFast : otherWhenSlow).push_back(other);
    }
};

bool areNear(const std::vector<double>& some, const std::vector<double>& others, double distance) {
    return std::abs(median(some) - median(others)) <= distance;
}

bool onlyFast(const Cluster& side, const Cluster& other, const Gap& gap, std::size_t pairs) {
    const bool certain = std::any_of(looks.begin(), looks.end(), [&](const Look& look) {
        return side.alone + other.alone >= look.pairs && other.alone < look.rank;
    });
    return certain && other.fast * oneOfFast <= pairs && side.slow.size() * oneOfSlow >= pairs &&
           areNear(side.slow, other.slow, gap.width() / 2) &&
           areNear(side.otherWhenFast, side.otherWhenSlow, leastGap);
}

}  // namespace

std::optional<Side> onlyFastSide(std::span<const Pair> pairs) {
    std::vector<double> values;
    for (const Pair& pair : pairs) {
        if (pair.older > 0 && pair.newer > 0) {
            values.push_back(std::log(pair.older));
            values.push_back(std::log(pair.newer));
        }
    }
    const std::optional<Gap> gap = widestGap(values);
    if (!gap) {
        return std::nullopt;
    }
    Cluster older;
    Cluster newer;
    for (std::size_t i = 0; i < values.size(); i += 2) {
        older.add(values[i], values[i + 1], *gap);
        newer.add(values[i + 1], values[i], *gap);
    }
    const std::size_t count = values.size() / 2;
    if (onlyFast(older, newer, *gap, count)) {
        return Side::older;
    }
    return onlyFast(newer, older, *gap, count) ? std::optional(Side::newer) : std::nullopt;
}

}  // namespace lab
