/// What a history says of builds whose truth is known: 30 of a nightly job, and years in which nothing
/// changes.

#include "history/changes.h"

#include <gtest/gtest.h>

#include "history/tests/madeup.h"

namespace lab {
namespace {

constexpr int builds = 30;
constexpr int repeats = 40;

struct Story {
    const char* name;
    MadeUp::Truth truth;
    double scatter;
    int step;    ///< build at which a step must be found; 0: none
    bool drift;  ///< one drift must be found, over half of the builds at least
    int fewest;  ///< histories of `repeats` in which it must be so
};

MadeUp::Truth stepAt(int step, double size) {
    return [=](int build) { return build < step ? 0.0 : std::log1p(size); };
}

bool isAsStated(const Story& story, const std::vector<Change>& changes) {
    if (story.step == 0 && !story.drift) {
        return changes.empty();
    }
    if (changes.size() != 1 || changes[0].drift != story.drift) {
        return false;
    }
    const Change& change = changes[0];
    const double miss = change.size.value - (story.truth(change.to) - story.truth(change.from));
    const bool inPlace = story.drift ? change.to - change.from > builds / 2 : change.to == story.step;
    return inPlace && std::abs(miss) < 4 * change.size.error;
}

TEST(Changes, AreFoundAsStated) {
    const Story stories[] = {
        {"nothing", stepAt(1, 0), 0.002, 0, false, repeats},
        {"nothing, wild", stepAt(1, 0), 0.03, 0, false, repeats},
        {"+3%", stepAt(11, 0.03), 0.002, 11, false, repeats},
        {"-3%", stepAt(11, -0.03), 0.002, 11, false, repeats},
        {"+10%", stepAt(16, 0.1), 0.005, 16, false, repeats},
        {"+10%, the newest but one", stepAt(28, 0.1), 0.002, 28, false, repeats},
        {"+10%, the newest", stepAt(29, 0.1), 0.002, 0, false, repeats},
        {"a spike of 8%", [](int build) { return build == 21 ? 0.08 : 0.0; }, 0.002, 0, false, repeats},
        {"a spike, a step, a spike",
         [](int build) { return build == 9 || build == 21 ? 0.1
                                : build < 16              ? 0.0
                                                          : -0.02; }, 0.002, 16,
         false, repeats},
        {"0.3% a build", [](int build) { return 0.003 * build; }, 0.002, 0, true, repeats * 9 / 10},
        {"+0.5%, within the margin", stepAt(11, 0.005), 0.002, 0, false, repeats},
    };
    for (const Story& story : stories) {
        int asStated = 0;
        for (int seed = 0; seed < repeats; ++seed) {
            MadeUp made(story.truth, story.scatter, static_cast<std::uint64_t>(seed));
            for (int build = 1; build < builds; ++build) {
                made.night();
            }
            const std::vector<Change> changes = made.point().changes;
            asStated += isAsStated(story, changes);
        }
        RecordProperty(story.name, asStated);
        EXPECT_GE(asStated, story.fewest) << story.name;
    }
}

/// Without a margin and at a rate that can be counted: nights whose pairs have random signs, and sizes of all
/// kinds.
TEST(Changes, AreFalseNoOftenerThanReckoned) {
    constexpr double rate = 0.2;
    constexpr int years = 300;
    std::mt19937_64 random(7);
    int alarms = 0;
    for (int year = 0; year < years; ++year) {
        std::vector<Level> levels(YearOfBuilds + 1, Level{0, -1, 0, 0});
        std::vector<Link> links;
        for (int night = 1; night <= YearOfBuilds; ++night) {
            Link link{.older = night - 1, .newer = night, .error = 0.001};
            for (int pair = 0; pair < 12; ++pair) {
                const double size = std::min(1.0, std::exp(std::normal_distribution<double>(-1, 1)(random)));
                link.push += std::bernoulli_distribution(0.5)(random) ? size : -size;
                link.energy += size * size;
            }
            levels[static_cast<std::size_t>(night)].value =
                levels[static_cast<std::size_t>(night) - 1].value + link.push;
            links.push_back(link);
        }
        alarms += findChanges(links, levels, {}, 1e-9, std::log(YearOfBuilds / rate)).empty() ? 0 : 1;
    }
    RecordProperty("alarms", alarms);
    EXPECT_LE(alarms, years * rate + 5 * std::sqrt(years * rate));
    EXPECT_GT(alarms, 0) << "a threshold that nothing reaches would find nothing";
}

TEST(Changes, LastGoodWaitsForWhatIsInDoubt) {
    MadeUp made([](int build) { return build == 3 ? 0.08 : 0.0; }, 0.001, 1);
    const auto good = [&] { return lastGood(Network(made.history(), 0), {made.point()}); };
    made.night();
    made.night();
    EXPECT_EQ(good(), 2);
    made.night();  // off, or slower from now on
    EXPECT_EQ(good(), 2);
    ASSERT_EQ(made.point().departures.size(), 1U);
    EXPECT_EQ(made.point().departures[0].state, Departure::State::fresh);
    made.night();  // measured against 2: it was off
    EXPECT_EQ(good(), 4);
    EXPECT_EQ(made.point().departures[0].state, Departure::State::spike);
    EXPECT_TRUE(made.point().changes.empty());
}

/// Each against the one before it, so that one comparison alone has seen the step.
TEST(Changes, OneComparisonIsNotEnough) {
    MadeUp made([](int build) { return build < 3 ? 0.0 : 0.08; }, 0.001, 1);
    for (int build = 1; build < 8; ++build) {
        made.addBuild();
        made.compare(build - 1, build);
    }
    EXPECT_TRUE(made.point().changes.empty());
    ASSERT_EQ(made.point().departures.size(), 1U);
    EXPECT_EQ(made.point().departures[0].state, Departure::State::once);
    made.compare(2, 3);
    ASSERT_EQ(made.point().changes.size(), 0U) << "no build after it was added since";
    made.addBuild();
    made.compare(7, 8);
    ASSERT_EQ(made.point().changes.size(), 1U);
    EXPECT_EQ(made.point().changes[0].to, 3);
    EXPECT_TRUE(made.point().departures.empty());
}

}  // namespace
}  // namespace lab
