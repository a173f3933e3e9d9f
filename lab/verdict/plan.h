#pragma once

/// When a comparison looks at its points, and how sure it must be before it speaks.

#include <array>
#include <span>
#include <vector>

namespace lab {

/// A look at a point after so many of its pairs. With their sorted values d(1..n) the interval is
/// [d(rank), d(n + 1 - rank)]; with rank 0 it is too early for one.
struct Look {
    int pairs = 0;
    int rank = 0;
    bool operator==(const Look&) const = default;
};

/// The looks of a comparison. Ranks depend on the number of points, since every point is a chance to err.
struct Plan {
    std::vector<Look> looks{};       ///< at the pairs that walk all open points
    std::vector<Look> confirming{};  ///< at the fresh pairs of a point that seems to differ
    double family = 0;  ///< no true difference anywhere: a bound on the probability of saying one
};

inline constexpr std::array<int, 8> usualLooks{10, 12, 16, 24, 32, 40, 56, 80};
/// Fresh pairs visit few points, so there may be more of them.
inline constexpr std::array<int, 8> confirmingLooks{8, 12, 16, 24, 32, 40, 56, 80};

/// The plan for so many points, with looks after so many pairs (ascending), that says a false "slower" or
/// "faster" anywhere with a probability of at most `family`. Where too few looks are given for that, all
/// ranks are 0.
Plan makePlan(int points, std::span<const int> looks = usualLooks, double family = 0.01);

/// P(Bin(n, 1/2) < k): fewer than k of n fair coins show heads.
double fairTail(int n, int k);

/// The probability that at one look or more fewer than its rank of the fair coins thrown so far show heads.
double everCrossed(std::span<const Look> looks);

}  // namespace lab
