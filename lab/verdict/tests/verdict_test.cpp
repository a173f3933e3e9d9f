#include "verdict/verdict.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace lab {
namespace {

/// As many pairs as asked for, spread evenly from `low` to `high`, in mixed order.
std::vector<Pair> evenly(int count, double low, double high, Pair pair = {.spread = 0.001, .epochs = 20}) {
    std::vector<Pair> pairs;
    for (int i = 0; i < count; ++i) {
        pair.value = low + (high - low) * (17 * i % count) / (count - 1);
        pairs.push_back(pair);
    }
    return pairs;
}

/// A first look at 8 pairs, the last at 40.
const Plan plan = makePlan(438, std::array{8, 12, 16, 24, 32, 40});

struct Rule {
    const char* name;
    std::vector<Pair> pairs;
    std::vector<Pair> fresh;
    Verdict verdict;
    Reason reason;
    Next next;
    int wanted;
    Fate newer;
};

TEST(Verdict, FollowsTheRules) {
    constexpr auto nothing = Next::nothing;
    constexpr auto unsure = Verdict::unsure;
    const std::vector<Pair> slow = evenly(8, 0.012, 0.03);
    const std::vector<Pair> fast = evenly(8, -0.03, -0.012);
    const std::vector<Pair> fast12 = evenly(12, -0.02, -0.011);
    const Pair coarse{.spread = 0.001, .grain = 0.008, .epochs = 20};
    const Pair shaky{.spread = 0.2, .epochs = 20};
    const std::vector<Rule> rules{
        {"too few", evenly(7, 0.012, 0.03), {}, unsure, Reason::pairs, Next::pairs, 8, {}},
        {"same", evenly(8, -0.009, 0.009), {}, Verdict::same, Reason::none, nothing, 0, {}},
        {"one strays early", evenly(8, -0.009, 0.011), {}, unsure, Reason::layout, Next::pairs, 12, {}},
        {"one may stray later", evenly(12, -0.009, 0.0105), {}, Verdict::same, Reason::none, nothing, 0, {}},
        {"seems slower", slow, {}, unsure, Reason::pairs, Next::fresh, 12, {}},
        {"slower", slow, evenly(12, 0.011, 0.02), Verdict::slower, Reason::none, nothing, 0, {}},
        {"fresh on the other side", slow, fast12, unsure, Reason::repeated, nothing, 0, {}},
        {"fresh in doubt", slow, evenly(12, 0.009, 0.02), unsure, Reason::pairs, Next::fresh, 16, {}},
        {"fresh within the margin", slow, evenly(12, 0, 0.019), unsure, Reason::repeated, nothing, 0, {}},
        {"faster", fast, fast12, Verdict::faster, Reason::none, nothing, 0, {}},
        {"grain", evenly(40, -0.009, 0.009, coarse), {}, unsure, Reason::grain, nothing, 0, {}},
        {"margin", evenly(40, 0.009, 0.011), {}, unsure, Reason::margin, nothing, 0, {}},
        {"layout", evenly(40, -0.05, 0.05), {}, unsure, Reason::layout, nothing, 0, {}},
        {"noise", evenly(40, -0.05, 0.05, shaky), {}, unsure, Reason::noise, nothing, 0, {}},
        {"status", evenly(8, 0, 0), {}, unsure, Reason::status, nothing, 0, {.status = -5}},
        {"crash", {}, {}, unsure, Reason::crash, nothing, 0, {.status = 0, .death = "SIGSEGV"}},
    };
    for (const Rule& rule : rules) {
        SCOPED_TRACE(rule.name);
        const Decision decision = decide({rule.pairs, rule.fresh, {}, rule.newer}, plan, 0.01);
        EXPECT_EQ(word(decision.verdict), word(rule.verdict));
        EXPECT_EQ(word(decision.reason), word(rule.reason));
        EXPECT_EQ(decision.next, rule.next);
        EXPECT_EQ(decision.wanted, rule.wanted);
    }
}

TEST(Verdict, IntervalOfARepeatedDifferenceIsOfAllPairs) {
    const std::vector<Pair> fresh = evenly(12, 0.032, 0.043);
    const Decision decision = decide({evenly(8, 0.012, 0.019), fresh, {}, {}}, plan, 0.01);
    EXPECT_EQ(decision.pairs, 20);
    EXPECT_NEAR(decision.interval.low, 0.015, 1e-12);  // rank 4 of 20: an error of 0.26%
    EXPECT_NEAR(decision.interval.middle, 0.0335, 1e-12);
    EXPECT_NEAR(decision.interval.high, 0.040, 1e-12);
    EXPECT_NEAR(decision.smallest, std::log1p(0.01) + 0.0335 - 0.015, 1e-12);
    // one that just shows in many pairs and a few fresh ones: rank 178 of 407 would do for an error of 1%
    const Plan few{.looks = {{399, 180}}, .confirming = {{8, 1}}};
    const Decision just = decide({evenly(399, -0.169, 0.229), fresh, {}, {}}, few, 0.01);
    EXPECT_EQ(just.verdict, Verdict::slower);
    EXPECT_GT(just.interval.low, std::log1p(0.01));
}

Turn turn(Side side, int epoch, std::vector<std::int64_t> ticks) {
    return {.side = side, .epoch = epoch, .calls = 10, .ticks = std::move(ticks), .empty = 20, .loop = 60};
}

TEST(PairOf, IsTheMedianOverEpochsOfTheLeastBlocksLessTheEmptyStretch) {
    std::vector<Turn> turns{
        turn(Side::newer, 0, {1080, 1060}), turn(Side::older, 0, {1020, 1900}),  // 1040 / 1000
        turn(Side::older, 1, {2020, 2020}), turn(Side::newer, 1, {2080, 2060}),  // 2040 / 2000
        turn(Side::older, 2, {1020, 1020}), turn(Side::newer, 2, {5020}),        // 5000 / 1000
        turn(Side::older, 3, {900}),  // its fellow is missing: no ratio, but a figure of the old build
    };
    turns[2].loop = 3000;  // disturbed
    const Pair pair = pairOf(turns).value();
    EXPECT_EQ(pair.epochs, 3);
    EXPECT_DOUBLE_EQ(pair.value, std::log(1.04));
    EXPECT_NEAR(pair.spread, 1.4826 * std::log(1.04 / 1.02), 1e-12);
    EXPECT_DOUBLE_EQ(pair.grain, 20.0 / 880);
    EXPECT_DOUBLE_EQ(pair.older, 84);
    EXPECT_DOUBLE_EQ(pair.newer, 100);
}

TEST(PairOf, NeedsAnEpochOfBothSidesAndTakesCallsOfNoTimeForEqual) {
    const std::vector<Turn> turns{turn(Side::older, 0, {20}), turn(Side::newer, 0, {}),
                                  turn(Side::newer, 1, {19}), turn(Side::older, 1, {18, 20})};
    EXPECT_FALSE(pairOf(std::span(turns).first(3)));
    EXPECT_DOUBLE_EQ(pairOf(turns).value().value, 0);
}

}  // namespace
}  // namespace lab
