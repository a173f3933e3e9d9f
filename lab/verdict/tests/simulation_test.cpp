/// A thousand comparisons of two recorded sets of turns. The turns are made up, with what disturbs real ones:
/// each process has an address layout of its own, a busy neighbour slows stretches that are longer than a
/// turn, blocks scatter upwards. Which of the two is the new side is drawn anew for each comparison, so
/// nothing differs.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "verdict/verdict.h"

namespace lab {
namespace {

constexpr int comparisons = 1000;
constexpr int points = 438;

/// A body: ticks of a call, how much the layout moves it, how often the neighbour begins or ends to disturb.
struct Body {
    double ticks;
    double layout;
    double change;
};
const std::vector<Body> bodies{{12, 0.001, 0.02}, {30, 0.002, 0.05}, {170, 0.001, 0.3},
                               {1500, 0.05, 0.1}, {9000, 0.01, 0.5}, {2e4, 0.002, 0.02}};

class Recording {
  public:
    std::vector<Pair> pairs(const Body& body, int count) {
        std::vector<Pair> all;
        while (static_cast<int>(all.size()) < count) {
            const double layout[2] = {std::exp(body.layout * m_normal(m_random)),
                                      std::exp(body.layout * m_normal(m_random))};
            std::vector<Turn> turns;
            for (int epoch = 0; epoch < 10; ++epoch) {
                const bool newerFirst = chance(0.5);
                turns.push_back(turn(body, newerFirst, epoch, layout));
                turns.push_back(turn(body, !newerFirst, epoch, layout));
            }
            all.push_back(pairOf(turns).value());
        }
        return all;
    }

    /// So many of `pairs`, the sides changed by lot: nothing differs but by `shift`.
    std::vector<Pair> draw(const std::vector<Pair>& pairs, int count, double shift) {
        std::vector<Pair> drawn;
        while (static_cast<int>(drawn.size()) < count) {
            Pair pair = pairs[m_random() % pairs.size()];
            pair.value = (chance(0.5) ? pair.value : -pair.value) + shift;
            drawn.push_back(pair);
        }
        return drawn;
    }

  private:
    bool chance(double probability) { return std::bernoulli_distribution(probability)(m_random); }

    Turn turn(const Body& body, bool newer, int epoch, const double* layout) {
        m_busy = chance(body.change) ? (m_busy > 1 ? 1 : 1.1 + 0.7 * std::abs(m_normal(m_random))) : m_busy;
        Turn turn;
        turn.side = newer ? Side::newer : Side::older;
        turn.epoch = epoch;
        turn.empty = 26;
        turn.calls = std::max<std::int64_t>(1, std::llround(13000 / body.ticks));
        for (int block = 0; block < 5; ++block) {
            const double scatter = 1 + 0.002 * std::abs(m_normal(m_random)) + (chance(0.02) ? 0.3 : 0);
            const double calls = static_cast<double>(turn.calls);
            turn.ticks.push_back(26 + std::llround(calls * body.ticks * layout[newer] * m_busy * scatter));
        }
        return turn;
    }

    std::mt19937_64 m_random{20261123};
    std::normal_distribution<double> m_normal;
    double m_busy = 1;
};

std::vector<std::vector<Pair>> record(Recording& recording) {
    std::vector<std::vector<Pair>> recorded;
    for (const Body& body : bodies) {
        recorded.push_back(recording.pairs(body, 200));
    }
    return recorded;
}

/// How far the share of `n` may be from the probability it stands for: five standard deviations.
double allowance(double probability, int n) { return 5 * std::sqrt(probability / n); }

/// What a thousand comparisons came to.
struct Tally {
    int points = 0;
    int slower = 0;
    int faster = 0;
    int same = 0;
    int repeated = 0;  ///< seemed to differ, and did not when it was measured again
    int alarms = 0;    ///< comparisons that say something differs
};

/// Each comparison has every so-many-th of the points.
Tally compare(double margin, double shift, int every) {
    Recording recording;
    const std::vector<std::vector<Pair>> recorded = record(recording);
    const Plan plan = makePlan(points);
    Tally tally;
    for (int comparison = 0; comparison < comparisons; ++comparison) {
        const int before = tally.slower + tally.faster;
        for (int point = 0; point < points; point += every) {
            const std::vector<Pair>& pairs = recorded[static_cast<std::size_t>(point) % recorded.size()];
            const std::vector<Pair> first = recording.draw(pairs, 40, shift);
            Decision decision = decide({first, {}, {}, {}}, plan, margin);
            if (decision.next == Next::fresh) {
                decision = decide({first, recording.draw(pairs, 40, shift), {}, {}}, plan, margin);
            }
            ++tally.points;
            tally.slower += decision.verdict == Verdict::slower;
            tally.faster += decision.verdict == Verdict::faster;
            tally.same += decision.verdict == Verdict::same;
            tally.repeated += decision.reason == Reason::repeated;
        }
        tally.alarms += tally.slower + tally.faster > before;
    }
    return tally;
}

TEST(Simulation, IntervalsMissTheTrueDifferenceAsOftenAsReckoned) {
    Recording recording;
    const std::vector<std::vector<Pair>> recorded = record(recording);
    for (const Look& look : makePlan(points).looks) {
        const Plan plan{.looks = {look}, .confirming = {}, .family = 0};
        int missed = 0;
        for (int i = 0; i < comparisons * 60; ++i) {
            const auto& pairs = recorded[static_cast<std::size_t>(i) % recorded.size()];
            const Interval interval =
                decide({recording.draw(pairs, look.pairs, 0.05), {}, {}, {}}, plan, 1000).interval;
            missed += interval.low > 0.05 || interval.high < 0.05;
        }
        const double reckoned = 2 * fairTail(look.pairs, look.rank);
        EXPECT_NEAR(missed / (comparisons * 60.0), reckoned, allowance(reckoned, comparisons * 60))
            << look.pairs;
    }
}

/// Without a margin, where the arithmetic leaves no slack.
TEST(Simulation, FalseAlarmsAreAsManyAsReckoned) {
    const Plan plan = makePlan(points);
    const Tally tally = compare(0, 0, 1);
    const double all = tally.points;
    const int said = tally.slower + tally.faster;
    const double seems = 2 * everCrossed(plan.looks);
    EXPECT_NEAR((said + tally.repeated) / all, seems, allowance(seems, tally.points));
    EXPECT_NEAR(said / all, plan.family / points, allowance(plan.family / points, tally.points));
    EXPECT_LE(tally.alarms, comparisons * (plan.family + allowance(plan.family, comparisons)));
}

/// Of the six bodies the layout of one hides a difference of 4%.
TEST(Simulation, AMarginLeavesTrueDifferencesAlone) {
    const Tally equal = compare(0.01, 0, 31);
    EXPECT_EQ(equal.alarms, 0);
    EXPECT_GT(equal.same, equal.points * 3 / 5);
    const Tally differing = compare(0.01, 0.04, 31);
    EXPECT_EQ(differing.faster + differing.same, 0);
    EXPECT_GT(differing.slower, differing.points * 4 / 5);
}

}  // namespace
}  // namespace lab
