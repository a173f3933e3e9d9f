#include "measure/mrclock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <tuple>

#include "machine/mrpriority.h"
#include "measure/mrtickrate.h"
#include "support/captured_output.h"

namespace {

TEST(Clock, TakesTheNearestKnownRate) {
    mrString text;
    for (const int measured : {2450, 2451, 58, 59, 3154, 3155, 1030, 1031, 0}) {
        text << mrCpuTicker::nominalFreq(measured) << " ";
    }
    // 2450 is as near to 2500, which comes later.
    EXPECT_STREQ(text.c_str(), "2400 2500 58 60 3060 3155 1000 1031 0 ");
}

/// A machine of 1000 MHz on which every read takes 0.1 ms, and what happens to it at some moment, in seconds.
struct Machine {
    struct Event {
        double at;
        double stopped;  ///< the process does not run
        double asleep;   ///< nor do the ticks
        double set;      ///< the time of day, by so much
    };
    static inline std::vector<Event> s_events;
    static inline double s_now, s_ticks, s_day;

    static void read() {
        s_now += 1e-4;
        s_ticks += 1e-4;
        while (!s_events.empty() && s_now >= s_events.front().at) {
            s_now += s_events.front().stopped + s_events.front().asleep;
            s_ticks += s_events.front().stopped;
            s_day += s_events.front().set;
            s_events.erase(s_events.begin());
        }
    }
    static constexpr mrRateClocks clocks = {[] { return read(), static_cast<Zyl64u>(s_ticks * 1e9); },
                                            [] { return read(), static_cast<std::time_t>(s_now + s_day); },
                                            [] { return read(), s_now; }};
};

TEST(TickRate, IsThatOfUndisturbedSeconds) {
    std::vector<Machine::Event> always;
    for (int i = 0; i < 40; ++i) {
        always.push_back({5.5 + 0.7 * i, 0.45, 0, 0});
    }
    // What happens, the seconds that the measurement takes, its result, and what is told.
    const std::tuple<std::vector<Machine::Event>, double, int, const char*> rows[] = {
        {{}, 2.7, 1000, ""},
        {{{6.5, 0, 0, -3600}}, 4.7, 1000, ""},                  // set back, in the first full second
        {{{5.5, 0, 0, -0.6}, {7.1, 0, 0, 60}}, 5.3, 1000, ""},  // and forward, in the second
        {{{6.9, 0.6, 0, 0}}, 4.7, 1000, ""},                    // stopped over the turn
        {{{7.5, 0, 7000.6, 0}}, 7004.7, 1000, ""},
        {always, 11.9, 850,
         "-- Tick frequency may be wrong by 15%: no second of its measurement was undisturbed\n"},
    };
    for (const auto& [events, seconds, mhz, told] : rows) {
        Machine::s_events = events;
        Machine::s_ticks = Machine::s_day = 0;
        Machine::s_now = 5.3;
        CapturedOutput output(MSG_WARN);
        EXPECT_NEAR(mrMeasureMHz(Machine::clocks), mhz, 10) << seconds;
        EXPECT_NEAR(Machine::s_now - 5.3, seconds, 0.5);
        EXPECT_EQ(output.text(), told);
    }
}

/// Ends the process with the priority that a level sets, counted from 20.
[[noreturn]] void exitWithPriority(int level) {
    mrSetPriority(level);
    std::_Exit(20 + getpriority(PRIO_PROCESS, 0));
}

TEST(PriorityDeathTest, ChangesForRootAlone) {
    const int before = 20 + getpriority(PRIO_PROCESS, 0);
    EXPECT_EXIT(exitWithPriority(MR_PRIORITY_KEEP), testing::ExitedWithCode(before), "");
    // Everybody may lower it, but nothing is done.
    EXPECT_EXIT(exitWithPriority(MR_PRIORITY_LOW), testing::ExitedWithCode(getuid() == 0 ? 30 : before), "");
}

}  // namespace
