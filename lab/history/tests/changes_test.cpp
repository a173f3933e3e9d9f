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
        {"0.3% a build", [](int build) { return 0.003 * build; }, 0.002, 0, true, repeats * 9 / 10},
        {"+0.5%, within the margin", stepAt(11, 0.005), 0.002, 0, false, repeats},
    };
    for (const Story& story : stories) {
        int asStated = 0;
        int told = 0;
        for (int seed = 0; seed < repeats; ++seed) {
            MadeUp made(story.truth, story.scatter, static_cast<std::uint64_t>(seed));
            for (int build = 1; build < builds; ++build) {
                made.night();
            }
            const std::vector<Change> changes = made.point().changes;
            asStated += isAsStated(story, changes);
            told = std::max(told, changes.empty() ? 0 : changes[0].told);
        }
        std::printf("%-28s %d of %d, last told at b%d\n", story.name, asStated, repeats, told);
        EXPECT_GE(asStated, story.fewest) << story.name;
    }
}

}  // namespace
}  // namespace lab
