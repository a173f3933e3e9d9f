/// How sure a comparison is.
///
/// A pair of processes gives one value at a point, log(new / old). Which side is copied first, started first
/// and first in each turn is drawn by lot for every pair, and code and data lie at addresses of the pair's
/// own. Where the builds do not differ, such a value is above 0 as often as below: its sign is a fair coin,
/// whatever disturbs the machine and however the values are spread. The arithmetic needs nothing else.
///
/// One look. A point seems slower with margin m when d(k) > log(1 + m), that is when fewer than k of n values
/// lie at or below log(1 + m). The median being no greater than that, each lies there with a probability of
/// 1/2 or more, so the probability of a false "slower" is at most
///     P(Bin(n, 1/2) < k),
/// the same on the other side for "faster", and as much for an interval that misses the median on one side.
///
/// Several looks at values that accumulate: a walk of fair coins that ends at the first look at which fewer
/// than that look's k show heads. The probability of ending is computed exactly, coin by coin. The ranks of
/// the first looks are the greatest with which it stays, after n of N pairs, within n/N of `seems`: 2.5% a
/// side and point.
///
/// All points. What seems to differ is measured again by fresh pairs, whose coins are new, and is said only
/// when they show the same side by a walk of their own. The two are independent, so over P points and two
/// sides
///     family <= 2 P * P(first walk ends) * P(fresh walk ends),
/// whether or not the points depend on each other. The ranks of the fresh walk are, look by look, the
/// greatest that keep this within the bound, so an early look may use up the allowance of the later ones: few
/// points are measured again, and an early answer is what is wanted there. With 438 points and the usual
/// looks:
///     8, 12, 16, 24, 32, 40 pairs: ranks 1, 2, 3, 6, 10, 13; the walk ends with 1.92%
///     8, 12, 16, 24, 32, 40 fresh: ranks 0, 1, 2, 4, 6, 8; the walk ends with 0.056%; family <= 0.94%
///
/// Points that close as "same" at an early look, and those that a process did not live to measure, only take
/// chances to err away.

#include "verdict/plan.h"

#include <algorithm>
#include <cstddef>

namespace lab {
namespace {

constexpr double seems = 0.025;

/// Fair coins thrown one behind the other, until a look at which too few have shown heads.
class CoinWalk {
  public:
    void throwUntil(int coins) {
        for (; m_thrown < coins; ++m_thrown) {
            m_going.push_back(0);
            for (std::size_t heads = m_going.size() - 1; heads > 0; --heads) {
                m_going[heads] = (m_going[heads] + m_going[heads - 1]) / 2;
            }
            m_going[0] /= 2;
        }
    }
    /// The greatest rank with which the probability of having ended stays within `allowed`.
    int greatestRank(double allowed) const {
        double ended = m_ended;
        std::size_t rank = 0;
        while (rank < m_going.size() && ended + m_going[rank] <= allowed) {
            ended += m_going[rank++];
        }
        return static_cast<int>(rank);
    }
    void endBelow(int rank) {
        const std::size_t end = std::min(m_going.size(), static_cast<std::size_t>(std::max(0, rank)));
        for (std::size_t heads = 0; heads < end; ++heads) {
            m_ended += m_going[heads];
            m_going[heads] = 0;
        }
    }
    double ended() const { return m_ended; }

  private:
    std::vector<double> m_going{1.0};  ///< the probability of going on with so many heads
    double m_ended = 0;
    int m_thrown = 0;
};

}  // namespace

double everCrossed(std::span<const Look> looks) {
    CoinWalk walk;
    for (const Look& look : looks) {
        walk.throwUntil(look.pairs);
        walk.endBelow(look.rank);
    }
    return walk.ended();
}

double fairTail(int n, int k) {
    const Look look{n, k};
    return everCrossed({&look, 1});
}

Plan makePlan(int points, std::span<const int> looks, double family) {
    Plan plan;
    CoinWalk first;
    for (const int pairs : looks) {
        first.throwUntil(pairs);
        const int rank = first.greatestRank(seems * pairs / looks.back());
        first.endBelow(rank);
        plan.looks.push_back({pairs, rank});
    }
    CoinWalk fresh;
    const double chances = 2.0 * std::max(1, points) * first.ended();
    // with few points too, what confirms is no weaker than what is to be confirmed
    const double allowed = chances > 0 ? std::min(family / chances, first.ended()) : 0;
    for (const int pairs : usualLooks) {
        fresh.throwUntil(pairs);
        const int rank = fresh.greatestRank(allowed);
        fresh.endBelow(rank);
        plan.confirming.push_back({pairs, rank});
    }
    plan.family = chances * fresh.ended();
    return plan;
}

}  // namespace lab
