#include "verdict/plan.h"

#include <gtest/gtest.h>

#include <bit>

namespace lab {
namespace {

TEST(Plan, ProbabilitiesAreThoseOfAllSequencesOfCoins) {
    const std::vector<Look> looks{{5, 1}, {8, 2}, {12, 4}};
    int ended = 0;
    for (unsigned coins = 0; coins < 1u << 12; ++coins) {
        ended +=
            std::popcount(coins & 0x1Fu) < 1 || std::popcount(coins & 0xFFu) < 2 || std::popcount(coins) < 4;
    }
    EXPECT_DOUBLE_EQ(everCrossed(looks), ended / 4096.0);
    EXPECT_DOUBLE_EQ(fairTail(8, 1), 1 / 256.0);
    EXPECT_DOUBLE_EQ(fairTail(10, 3), 56 / 1024.0);
}

TEST(Plan, RanksOfTheUsualComparison) {
    const Plan plan = makePlan(438);
    EXPECT_EQ(plan.looks,
              (std::vector<Look>{{10, 1}, {12, 2}, {16, 3}, {24, 6}, {32, 9}, {40, 12}, {56, 19}, {80, 31}}));
    EXPECT_EQ(plan.confirming,
              (std::vector<Look>{{8, 0}, {12, 0}, {16, 2}, {24, 3}, {32, 6}, {40, 8}, {56, 14}, {80, 24}}));
    EXPECT_NEAR(plan.family, 0.0093, 0.00005);
}

TEST(Plan, AnyNumberOfPointsStaysWithinTheBoundAndCanBeConfirmed) {
    for (const int points : {1, 40, 2000, 100000}) {
        for (const std::vector<int>& looks :
             {std::vector<int>{8}, std::vector<int>{8, 12}, std::vector<int>{20, 60}}) {
            const Plan plan = makePlan(points, looks);
            EXPECT_LE(plan.family, 0.01) << points;
            EXPECT_GT(plan.family, 0) << points;
            EXPECT_LE(everCrossed(plan.confirming), everCrossed(plan.looks)) << points;
        }
    }
}

}  // namespace
}  // namespace lab
