/// Levels along the comparisons of a method, and where they begin anew.

#include "history/chain.h"

#include <gtest/gtest.h>

#include "history/changes.h"
#include "history/overview.h"

namespace lab {
namespace {

/// Six builds "a" to "f" and one point.
History sixBuilds() {
    History history;
    for (const char* label : {"a", "b", "c", "d", "e", "f"}) {
        history.builds.push_back({label,
                                  std::string("of ") + label,
                                  "",
                                  "",
                                  "2026-11-2" + std::to_string(history.builds.size()),
                                  {}});
    }
    history.methods = {{"Fine One", "", "50 us, 10 blocks", 64},
                       {"Other One", "-TSSE2", "50 us, 10 blocks", 64}};
    history.points.push_back({"F", "Len=8", "e"});
    return history;
}

void compare(History& history, int older, int newer, double middle, double error, int method = 0,
             Reason reason = Reason::none) {
    Finding finding;
    finding.verdict = reason == Reason::none ? Verdict::same : Verdict::unsure;
    finding.reason = reason;
    finding.middle = middle;
    finding.error = error;
    history.comparisons.push_back({"", older, newer, method, 0.01, "", {finding}});
}

std::vector<Level> levelsOf(const History& history, int method = 0) {
    const Network network(history, method);
    return network.levels(network.links(0));
}

TEST(Chain, TakesTheWayOfLeastVariance) {
    History history = sixBuilds();
    compare(history, 0, 1, 0.02, 0.003);
    compare(history, 1, 2, 0.03, 0.004);
    EXPECT_DOUBLE_EQ(levelsOf(history)[2].value, 0.05);
    EXPECT_DOUBLE_EQ(difference(levelsOf(history), 0, 2).error, 0.005);
    EXPECT_DOUBLE_EQ(difference(levelsOf(history), 1, 2).error, 0.004);
    compare(history, 2, 0, -0.06, 0.002);  // from the last to the first: closes the chain
    EXPECT_DOUBLE_EQ(levelsOf(history)[2].value, 0.06);
    EXPECT_DOUBLE_EQ(difference(levelsOf(history), 0, 2).error, 0.002);
    EXPECT_DOUBLE_EQ(difference(levelsOf(history), 2, 1).value, -0.04);
    EXPECT_FALSE(levelsOf(history)[3].known());
}

TEST(Chain, BreaksWhereNothingJoins) {
    History history = sixBuilds();
    compare(history, 0, 1, 0.02, 0.001);
    compare(history, 1, 2, 0, -1, 0, Reason::crash);
    compare(history, 2, 3, 0.03, 0.001);
    compare(history, 4, 5, 0.04, 0.001);
    compare(history, 0, 5, 0.5, 0.001, 1);
    const PointHistory point = pointHistory(Network(history, 0), 0, 0.01, evidenceWanted(1));
    ASSERT_EQ(point.breaks.size(), 2U);
    EXPECT_EQ(point.breaks[0].build, 2);
    EXPECT_EQ(point.breaks[0].reason, Reason::crash);
    EXPECT_EQ(point.breaks[1].build, 4);
    EXPECT_EQ(point.breaks[1].reason, Reason::none);
    EXPECT_DOUBLE_EQ(point.levels[3].value, 0.03);
    EXPECT_EQ(point.levels[3].chain, 2);
    EXPECT_DOUBLE_EQ(levelsOf(history, 1)[5].value, 0.5) << "another method has chains of its own";
    EXPECT_EQ(differenceText(history.methods[1], history.methods[0]),
              "other processor (Other One; before: Fine One), other keys (-TSSE2; before: none)");
}

TEST(Chain, SameBytesHaveTheSameLevel) {
    History history = sixBuilds();
    compare(history, 0, 1, 0.02, 0.001);
    compare(history, 1, 2, 0.5, 0.001);
    compare(history, 2, 3, -0.4, 0.001);
    history.builds[3].identity = history.builds[1].identity;  // taken back
    EXPECT_DOUBLE_EQ(levelsOf(history)[3].value, 0.02);
    EXPECT_DOUBLE_EQ(difference(levelsOf(history), 1, 3).error, 0.0);
}

TEST(Overviews, ShowWhatLiesAfterABuildOrADay) {
    History history = sixBuilds();
    for (int build = 1; build < 6; ++build) {
        compare(history, build - 1, build, 0.01, 0.001);
    }
    const auto since = [&](const std::string& text) { return overviewOf(history, {text, "", 0}).since; };
    EXPECT_EQ(since(""), 0);
    EXPECT_EQ(since("c"), 2);
    EXPECT_EQ(since("of d"), 3);
    EXPECT_EQ(since("2026-11-23"), 2) << "the last build before that day";
    EXPECT_THROW(since("nobody"), std::runtime_error);
    EXPECT_THROW(overviewOf(history, {"", "G", 0}), std::runtime_error);
    EXPECT_THROW(overviewOf(history, {"", "", 3}), std::runtime_error);
    const Overview overview = overviewOf(history, {"c", "F", 1});
    EXPECT_NEAR(nowOf(overview, overview.points[0]).level.value, 0.03, 1e-12);
}

}  // namespace
}  // namespace lab
