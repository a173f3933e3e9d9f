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
/// whether or not the points depend on each other. The ranks of the fresh walk are the greatest with which it
/// stays, after n of N pairs, within the cube root of n/N of what the bound allows: early enough for a clear
/// difference, with enough left for one that a layout in five hides. With 438 points and the usual looks:
///     10, 12, 16, 24, 32, 40, 56, 80 pairs: ranks 1, 2, 3, 6, 9, 12, 19, 31; the walk ends with 2.50%
///     8, 12, 16, 24, 32, 40, 56, 80 fresh: ranks 0, 0, 2, 3, 6, 8, 14, 24; the walk ends with 0.042%
///     family <= 0.93%
///
/// Points that close as "same" at an early look, those given up because half of the fresh pairs do not show
/// the side, and those that a process did not live to measure, only take chances to err away.

#include "verdict/plan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lab {
namespace {

constexpr double seems = 0.025;

/// Fair coins thrown one after the other, until a look at which too few have shown heads.
class CoinWalk {
  public:
    /// A look after so many coins.
    void end(const Look& look) {
        throwUntil(look.pairs);
        const std::size_t end = std::min(m_going.size(), static_cast<std::size_t>(std::max(0, look.rank)));
        for (std::size_t heads = 0; heads < end; ++heads) {
            m_ended += m_going[heads];
            m_going[heads] = 0;
        }
    }
    /// A look with the greatest rank that keeps the probability of having ended within `allowed`; the rank.
    int endWithin(int coins, double allowed) {
        throwUntil(coins);
        int rank = 0;
        for (double ended = m_ended; static_cast<std::size_t>(rank) < m_going.size(); ++rank) {
            ended += m_going[static_cast<std::size_t>(rank)];
            if (ended > allowed) {
                break;
            }
        }
        end({coins, rank});
        return rank;
    }
    double ended() const { return m_ended; }

  private:
    void throwUntil(int coins) {
        for (; m_thrown < coins; ++m_thrown) {
            m_going.push_back(0);
            for (std::size_t heads = m_going.size() - 1; heads > 0; --heads) {
                m_going[heads] = (m_going[heads] + m_going[heads - 1]) / 2;
            }
            m_going[0] /= 2;
        }
    }

    std::vector<double> m_going{1.0};  ///< the probability of going on with so many heads
    double m_ended = 0;
    int m_thrown = 0;
};

}  // namespace

double everCrossed(std::span<const Look> looks) {
    CoinWalk walk;
    for (const Look& look : looks) {
        walk.end(look);
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
        plan.looks.push_back({pairs, first.endWithin(pairs, seems * pairs / looks.back())});
    }
    CoinWalk fresh;
    const double chances = 2.0 * std::max(1, points) * first.ended();
    // with few points too, what confirms is no weaker than what is to be confirmed
    const double allowed = chances > 0 ? std::min(family / chances, first.ended()) : 0;
    for (const int pairs : confirmingLooks) {
        const double part = std::cbrt(static_cast<double>(pairs) / confirmingLooks.back());
        plan.confirming.push_back({pairs, fresh.endWithin(pairs, allowed * part)});
    }
    plan.family = chances * fresh.ended();
    return plan;
}

}  // namespace lab
