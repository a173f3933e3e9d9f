#include <gtest/gtest.h>

#include "support/float_flags.h"
#include "support/golden.h"
#include "support/scripted_clock.h"

namespace {

constexpr OutputLevel InfoLevel = MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO;

class AutoMethod : public testing::Test, protected ScriptedTiming {
  protected:
    ~AutoMethod() override { mrTool::numIntLoops = 1; }

    /// The course for these clocks of one call in each measurement.
    std::string course(std::vector<long long> script, const char* entries = "L") {
        costs = std::move(script);
        return ScriptedTiming::course(tool, entries);
    }

    KeptFloatState kept;
    mrTool tool;
};

TEST_F(AutoMethod, FindsTheCountsOfTheLoopEntry) {
    EXPECT_EQ(course({1000}), "L1 L32 L128 = 1000 nLps=128") << "20 times too short";
    EXPECT_EQ(course({2500}), "L1 L8 L32 = 2500 nLps=32") << "exactly 8 times too short";
    EXPECT_EQ(course({2222}), "L1 L16 L64 = 2222 nLps=64") << "9 times too short";
    EXPECT_EQ(course({9999}), "L1 L2 L8 = 9999 nLps=8");
    EXPECT_EQ(course({10000}), "L1 L4 = 10000 nLps=4") << "long enough at once";
    EXPECT_EQ(course({0, 0, 5000}), "L1*2 L10 L40 = 5000 nLps=40");
    EXPECT_EQ(course({0, 0, 1}), "L1*2 L10 L40 = 1 nLps=40") << "there is no third attempt";
    EXPECT_EQ(course({0}), "L1*2 L10*2 = 0  !7");
    EXPECT_EQ(course({10000, 0}), "L1 L4*2 = 0  !7");
    EXPECT_EQ(course({10000, 20000, 30000, 30000}), "L1 L4 L8 L16 = 30000 nLps=16");
    // Within 5% but not 1%. The simple measurements are on the scale of the whole loop, so the count is
    // raised.
    EXPECT_EQ(course({25000, 26000}), "L1 L4*3 L16 = 26000 nLps=16");
    EXPECT_EQ(course({10000, 10300, 0, 0, 0, 0, 10300}), "L1 L4*5 L16 L32 = 10300 nLps=32");
}

TEST_F(AutoMethod, KeepsWithinStartAndStop) {
    // The best single call does not grow with the count, so its quotient never settles.
    sums = false;
    EXPECT_EQ(course({2000}),
              "L1 L16 L64 L128 L256 L512 L1024 L2048 L4096 L8192 L16384 L32768*3 "
              "= 0.0610352 nLps=32768 acc=100.0% !2");
    tool.setLoopFactor(-3);
    EXPECT_EQ(course({100000}).substr(0, 8), "L8 L32 L");
    sums = true;
    tool.setMethodBest(3, 10, 2900);
    EXPECT_EQ(course({1000}), "L3 L12 = 1000 nLps=12");
    tool.setMethodBest(1, 8, 1);
    EXPECT_EQ(course({0, 0, 50}), "L1*2 L10 L40 = 50 nLps=40") << "the stop grows with the start";
    // A count that starts at the stop is not measured again, and nothing is known of its accuracy.
    tool.m_bestStart = tool.m_bestStop = 2048;
    EXPECT_EQ(course({1000}), "L2048 = 1000 nLps=2048 acc=100.0% !2");
}

TEST_F(AutoMethod, StopsAtTheRequestedAccuracy) {
    tool.m_reqAccuracy = 0.5;
    EXPECT_EQ(course({30000, 50000}), "L1 L4*3 L16 = 50000 nLps=16") << "0.5 exactly";
    sums = false;
    tool.m_reqAccuracy = 500.0;
    EXPECT_EQ(course({16000}), "L1 L4*3 = 4000 nLps=4");
}

TEST_F(AutoMethod, EndsWithAFailOfTheEntry) {
    const auto answering = [this](std::vector<mrResult> script) {
        results = std::move(script);
        return course({1000});
    };
    EXPECT_EQ(answering({MR_LIB_FAIL}), "L1 = 1000  !9");
    EXPECT_EQ(answering({MR_OK, MR_LIB_FAIL}), "L1 L32 = 1000  !9");
    EXPECT_EQ(answering({MR_OK, MR_OK, MR_LIB_FAIL}), "L1 L32 L128 = 1000 nLps=128 !9");
    EXPECT_EQ(answering({MR_ACCURACY_FAIL, MR_OK}), "L1 L10 = 1000  !7");
    EXPECT_EQ(answering({MR_LIB_NOTE, MR_OK}), "L1 L32 L128 = 1000 nLps=128 !5");
    // A call that fails at once leaves no count to double, at the first iteration or at a later one.
    tool.m_setAndUse = true;
    statuses = {0, 0, 0, 0, -8};
    EXPECT_EQ(course({25000, 26000}, "C"), "C*5 = 26000  !7");
    statuses.assign(10, 0);
    statuses.push_back(-8);
    EXPECT_EQ(course({25000, 26000}, "C"), "C*14 = 26000  !7");
}

TEST_F(AutoMethod, OneStatisticMeasurementStandsForTheIteration) {
    // Short calls go in blocks of 100.
    EXPECT_EQ(course({200, 200, 150}, "LS"), "L1 L128 S8/10000000/100 = 150 nLps=5000");
    EXPECT_EQ(course({201, 201, 150}, "LS"), "L1 L128 S8/10000000/1 = 150 nLps=5000");
    EXPECT_EQ(course({10000, 0, 90}, "LS"), "L1 S8/10000000/1 S5000/10000000/1 = 90 nLps=5000");
    EXPECT_EQ(course({10000, 0}, "LS"), "L1 S8/10000000/1 S5000/10000000/1 = 0  !7");
    mrTool::m_minNumLoops = 20;
    mrTool::m_numMilliseconds = 3;
    EXPECT_EQ(course({10000}, "LS"), "L1 S20/300000/1 = 10000 nLps=5000");
    mrTool::m_minNumLoops = mrTool::m_numMilliseconds = 0;
    EXPECT_EQ(course({10000}, "LS"), "L1 S1/0/1 = 10000 nLps=5000");
    mrTool::m_minNumLoops = 8;
    mrTool::m_numMilliseconds = 100;
    // The best single call is divided all the same, so what counts as short reaches up to 2222 clocks.
    sums = false;
    EXPECT_EQ(course({2222}, "LS"), "L1 L16 S8/10000000/100 = 2222 nLps=5000");
    // Set-and-use adds up calls in place of the entry, and their sum is not divided.
    tool.m_setAndUse = true;
    EXPECT_EQ(course({20000}, "LSC"), "C*19 = 160000 nLps=8");
}

TEST_F(AutoMethod, DescribesItsCourse) {
    CapturedOutput output(InfoLevel);
    course({25000, 26000});
    expectGolden("unit/measure/golden/auto_course.txt", output.text());
}

TEST_F(AutoMethod, CountsMayBeCalledCalls) {
    tool.m_callMode = true;
    CapturedOutput output(InfoLevel);
    EXPECT_EQ(course({0}, "C"), "C*26 = 0  !7");
    EXPECT_TRUE(
        output.text().ends_with("numCalls   = 10\n        numClocks  = 0\n        funcClocks = 0\n"
                                "        result     = accuracy fail\n    Auto method: exit\n"));
    EXPECT_EQ(course({10000}, "C"), "C*7 = 10000 nCalls=4");
    EXPECT_EQ(course({10000}), "L1 L4 = 10000 nLps=4") << "no entry that counts calls";
}

TEST_F(AutoMethod, TriesToAvoidABadStatus) {
    sums = false;
    tool.m_ibs = true;
    const std::string overflow = "-- Status    SSX: ?Overflow \n";
    const std::string begin = overflow + "-- Attempting to avoid bad control status\n";
    const auto tries = [&](int badFrom, std::vector<long long> script, OutputLevel level) {
        onCall = [badFrom](int loops) { setFlagsSSX(loops >= badFrom ? 8 : 0); };
        CapturedOutput output(level);
        g_ssx.clear();
        const std::string text = course(std::move(script));
        return text + "\n" + output.text();
    };
    constexpr OutputLevel level = MSG_ERR | MSG_WARN;
    EXPECT_EQ(tries(4, {10000, 10000, 10600, 10600, 10600, 10600, 11500}, level),
              "L1 L4 L2*5 = 10000 nLps=2 acc=8.0% !2\n" + begin + "-- Attempt is successful\n");
    EXPECT_EQ(tries(4, {10000, 10000, 20000}, level), "L1 L4 L2*5 = 10000 nLps=2 acc=45.5% !2\n" + begin +
                                                          "-- Attempt fails: Accuracy is unsatisfactory.\n");
    EXPECT_EQ(tries(1, {10000}, level), "L1 L4 L2*5 = 10000 nLps=2\n" + begin + overflow +
                                            "-- Attempt fails: Bad control status repeats.\n");
    const std::string text = tries(1, {10000}, InfoLevel);
    EXPECT_NE(text.find(begin + "    Reduce loops to avoid bad ctrl status.\n    Simple Measurements: \n"),
              std::string::npos);
    EXPECT_TRUE(
        text.ends_with("modified control status\n    Cannot avoid bad ctrl status\n"
                       "-- Attempt fails: Bad control status repeats.\n    Auto method: stop\n"));
    // Where nobody watches, the status does not matter while measuring.
    tool.m_ibs = false;
    sums = true;
    EXPECT_EQ(course({10000}), "L1 L4 = 10000 nLps=4");
}

}  // namespace
