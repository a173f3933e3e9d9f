#include <gtest/gtest.h>

#include "mrtool.h"
#include "support/captured_output.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"
#include "test/mrtest.h"

namespace {

constexpr OutputLevel InfoLevel = MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO;

class AutoMethod : public testing::Test, protected ScriptedTiming {
  protected:
    AutoMethod() { mrTest::clearCtrlStatus(); }
    ~AutoMethod() override {
        mrTest::clearCtrlStatus();
        mrTool::numIntLoops = 1;
    }

    /// Starts over with the costs of the calls; returns what was called.
    std::string course(std::vector<long long> script, FuncLoop withLoop = loop, FuncStat withStat = nullptr,
                       FuncCall withCall = nullptr) {
        costs = std::move(script);
        log.clear();
        m_result = m_tool.timing(withLoop, withStat, withCall, nullptr);
        return log;
    }

    mrTool m_tool;
    mrResult m_result = MR_NOT_RUN;
};

TEST_F(AutoMethod, FindsTheCountsOfTheLoopEntry) {
    static const struct {
        const char* what;
        std::vector<long long> costs;  // of one call, in each measurement
        const char* log;
        double figure;
        const char* comment;
        mrResult result;
    } rows[] = {
        {"1000 clocks: 20 times too short", {1000}, "L1 L32 L128 ", 1000.0, "nLps=128", MR_OK},
        {"exactly 8 times too short", {2500}, "L1 L8 L32 ", 2500.0, "nLps=32", MR_OK},
        {"9 times too short", {2222}, "L1 L16 L64 ", 2222.0, "nLps=64", MR_OK},
        {"just too short", {9999}, "L1 L2 L8 ", 9999.0, "nLps=8", MR_OK},
        {"long enough at once", {10000}, "L1 L4 ", 10000.0, "nLps=4", MR_OK},
        {"a single clock", {1}, "L1 L32768 L131072 ", 1.0, "nLps=131072", MR_OK},
        {"zero readings first", {0, 0, 5000}, "L1 L1 L10 L40 ", 5000.0, "nLps=40", MR_OK},
        {"a zero reading once", {0, 10000}, "L1 L1 L4 ", 10000.0, "nLps=4", MR_OK},
        {"zero, then too short: no third attempt", {0, 0, 1}, "L1 L1 L10 L40 ", 1.0, "nLps=40", MR_OK},
        {"zero readings only", {0}, "L1 L1 L10 L10 ", 0.0, "", MR_ACCURACY_FAIL},
        {"zero in the iteration", {10000, 0}, "L1 L4 L4 ", 0.0, "", MR_ACCURACY_FAIL},
        {"doubles until two figures agree",
         {10000, 20000, 30000, 30000},
         "L1 L4 L8 L16 ",
         30000.0,
         "nLps=16",
         MR_OK},
        {"agrees within 5% but not 1%: the simple measurements are on another scale, so the count is raised",
         {25000, 26000},
         "L1 L4 L4 L4 L16 ",
         26000.0,
         "nLps=16",
         MR_OK},
        {"simple measurements of nothing",
         {10000, 10300, 0, 0, 0, 0, 10300},
         "L1 L4 L4 L4 L4 L4 L16 L32 ",
         10300.0,
         "nLps=32",
         MR_OK},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(course(row.costs), row.log) << row.what;
        EXPECT_EQ(m_result, row.result) << row.what;
        EXPECT_EQ(m_tool.m_result, row.result) << row.what;
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.what;
        EXPECT_EQ(str(m_tool.m_comment), row.comment) << row.what;
    }
}

TEST_F(AutoMethod, EndsAtTheStopLoops) {
    // The best single call of a suite's entry does not grow with the count, so its quotient never settles.
    sums = false;
    EXPECT_EQ(course({2000}),
              "L1 L16 L64 L128 L256 L512 L1024 L2048 L4096 L8192 L16384 L32768 L32768 L32768 ");
    EXPECT_EQ(m_result, MR_BAD_ACCURACY);
    EXPECT_EQ(m_tool.m_funcClocks, 2000.0 / 32768);
    EXPECT_EQ(str(m_tool.m_comment), "nLps=32768 acc=100.0%");
    // A count that starts there is not measured again, and nothing is known of its accuracy.
    m_tool.m_method = MR_METHOD_BEST;
    m_tool.m_bestStart = 2048;
    m_tool.m_bestStop = 2048;
    EXPECT_EQ(course({2000}), "L2048 ");
    EXPECT_EQ(m_result, MR_BAD_ACCURACY);
    EXPECT_EQ(str(m_tool.m_comment), "nLps=2048 acc=100.0%");
    results = {MR_LIB_NOTE};
    course({2000});
    EXPECT_EQ(m_result, MR_LIB_NOTE) << "a bad accuracy takes nothing away";
    results = {MR_OK};
    // The stop is kept between the doublings too.
    sums = true;
    m_tool.m_bestStart = 10;
    m_tool.m_bestStop = 100;
    EXPECT_EQ(course({1000, 2000, 4000, 8000}), "L10 L40 L80 L80 L80 L100 L100 L100 ");
    m_tool.m_bestStop = 30;
    EXPECT_EQ(course({1000}), "L10 L30 ");
}

TEST_F(AutoMethod, TakesTheStartLoopsGiven) {
    m_tool.setLoopFactor(-3);
    EXPECT_EQ(course({10000}), "L8 L32 ");
    m_tool.setLoopFactor(1);  // shifts the start to 0, which forces nothing
    EXPECT_EQ(course({10000}), "L1 L4 ");
    m_tool.setMethodBest(3, 10, 2900);
    EXPECT_EQ(course({1000}), "L3 L12 ");
    EXPECT_EQ(course({100}), "L3 L96 L384 ");
    // A zero reading raises the stop with the start.
    m_tool.setMethodBest(1, 8, 1);
    EXPECT_EQ(course({0, 0, 50}), "L1 L1 L10 L40 ");
    m_tool.setMethodBest(2, 10, 7);
    m_tool.m_method = MR_METHOD_AUTO;
    m_tool.setLoopFactor(0);
    EXPECT_EQ(course({10000}), "L1 L4 ");
}

TEST_F(AutoMethod, RequestedAccuracyEndsTheDoubling) {
    m_tool.m_reqAccuracy = 0.5;  // reached exactly
    EXPECT_EQ(course({30000, 50000}), "L1 L4 L4 L4 L16 ");
    sums = false;
    m_tool.m_reqAccuracy = 0.7;  // halving a figure is 2/3 off the mean
    EXPECT_EQ(course({16000}), "L1 L4 L8 L8 L8 L32 L64 L64 L64 L256 L512 L512 L512 L2048 L2048 L2048 ");
    EXPECT_EQ(m_result, MR_BAD_ACCURACY);
    m_tool.m_reqAccuracy = 500.0;
    EXPECT_EQ(course({16000}), "L1 L4 L4 L4 ");
    EXPECT_EQ(m_result, MR_OK);
    EXPECT_EQ(str(m_tool.m_comment), "nLps=4");
    EXPECT_EQ(m_tool.m_funcClocks, 4000.0);
}

TEST_F(AutoMethod, FailOfAnEntryEndsTheMethod) {
    static const struct {
        std::vector<mrResult> results;
        const char* log;
        mrResult result;
    } rows[] = {
        {{MR_LIB_FAIL}, "L1 ", MR_LIB_FAIL},
        {{MR_OK, MR_LIB_FAIL}, "L1 L32 ", MR_LIB_FAIL},
        {{MR_OK, MR_OK, MR_LIB_FAIL}, "L1 L32 L128 ", MR_LIB_FAIL},
        {{MR_ACCURACY_FAIL, MR_OK}, "L1 L10 ", MR_ACCURACY_FAIL},
        {{MR_LIB_NOTE, MR_OK}, "L1 L32 L128 ", MR_LIB_NOTE},
    };
    for (const auto& row : rows) {
        results = row.results;
        EXPECT_EQ(course({1000}), row.log);
        EXPECT_EQ(m_result, row.result) << row.log;
    }
}

TEST_F(AutoMethod, OneStatisticMeasurementStandsForTheIteration) {
    static const struct {
        std::vector<long long> costs;
        std::vector<mrResult> results;
        const char* log;
        double figure;
        const char* comment;
        mrResult result;
    } rows[] = {
        // Blocks of 100 calls up to a quotient of 200 clocks in the prior measurement.
        {{200, 200, 150}, {MR_OK}, "L1 L128 S8/10000000/100 ", 150.0, "nLps=5000", MR_OK},
        {{201, 201, 150}, {MR_OK}, "L1 L128 S8/10000000/1 ", 150.0, "nLps=5000", MR_OK},
        {{10000, 9000}, {MR_OK}, "L1 S8/10000000/1 ", 9000.0, "nLps=5000", MR_OK},
        {{10000, 0, 90}, {MR_OK}, "L1 S8/10000000/1 S5000/10000000/1 ", 90.0, "nLps=5000", MR_OK},
        {{10000, 0}, {MR_OK}, "L1 S8/10000000/1 S5000/10000000/1 ", 0.0, "", MR_ACCURACY_FAIL},
        {{10000, 50}, {MR_OK, MR_LIB_FAIL}, "L1 S8/10000000/1 ", 50.0, "nLps=5000", MR_LIB_FAIL},
    };
    for (const auto& row : rows) {
        results = row.results;
        EXPECT_EQ(course(row.costs, loop, stat), row.log);
        EXPECT_EQ(m_result, row.result) << row.log;
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.log;
        EXPECT_EQ(str(m_tool.m_comment), row.comment) << row.log;
    }
    // The loop entry gives the best single call, which is divided all the same: single calls of up to 2222
    // clocks go in blocks.
    results = {MR_OK};
    sums = false;
    EXPECT_EQ(course({2222, 2222, 9}, loop, stat), "L1 L16 S8/10000000/100 ");
    EXPECT_EQ(course({2223, 2223, 9}, loop, stat), "L1 L8 S8/10000000/1 ");
    // What -j and -c set.
    mrTool::m_minNumLoops = 20;
    mrTool::m_numMilliseconds = 3;
    EXPECT_EQ(course({10000}, loop, stat), "L1 S20/300000/1 ");
    mrTool::m_minNumLoops = 8;
    mrTool::m_numMilliseconds = 100;
    // Set-and-use adds up calls in place of the entry, and their sum is not divided.
    m_tool.m_setAndUse = true;
    course({20000}, loop, stat, call);
    EXPECT_EQ(m_tool.m_funcClocks, 160000.0);
    EXPECT_EQ(str(m_tool.m_comment), "nLps=8");
}

TEST_F(AutoMethod, CountsMayBeCalledCalls) {
    m_tool.m_callMode = true;
    CapturedOutput output(InfoLevel);
    course({10000}, nullptr, nullptr, call);
    EXPECT_EQ(str(m_tool.m_comment), "nCalls=4");
    EXPECT_NE(output.text().find("    Prior Measurement: \n        numCalls   = 1\n"), std::string::npos);
    course({10000});  // without an entry that counts calls
    EXPECT_EQ(str(m_tool.m_comment), "nLps=4");
}

TEST_F(AutoMethod, DescribesItsCourse) {
    CapturedOutput output(InfoLevel);
    // 25000 clocks, and 26000 from the iteration on.
    course({25000, 26000});
    EXPECT_EQ(output.text(),
              "    Auto method: start\n"
              "        minClocks  = 10000\n"
              "    Prior Measurement: \n"
              "        numLoops   = 1\n"
              "        numClocks  = 25000\n"
              "        funcClocks = 2.5e+04\n"
              "        result     = successfully\n"
              "    Iteration Measurement: \n"
              "        startLoops = 4\n"
              "        maxLoops   = 2048\n"
              "        stopLoops  = 4\n"
              "        stopClocks = 104000\n"
              "        accuracy   = 3.9%\n"
              "        funcClocks = 2.6e+04\n"
              "        result     = successfully\n"
              "    Simple Measurements: \n"
              "        numLoops   = 4\n"
              "        numClocks  = 104000\n"
              "        funcClocks = 1.04e+05\n"
              "        numLoops   = 4\n"
              "        numClocks  = 104000\n"
              "        funcClocks = 1.04e+05\n"
              "        accuracy   = 66.7%\n"
              "        bestClocks = 2.6e+04\n"
              "        result     = wrong measure accuracy\n"
              "    Iteration Measurement: \n"
              "        startLoops = 16\n"
              "        maxLoops   = 2048\n"
              "        stopLoops  = 16\n"
              "        stopClocks = 416000\n"
              "        accuracy   = 0.00%\n"
              "        funcClocks = 2.6e+04\n"
              "        result     = successfully\n"
              "    Auto method: stop\n");
}

TEST_F(AutoMethod, DescribesItsFailure) {
    CapturedOutput output(InfoLevel);
    course({0});
    EXPECT_EQ(output.text(),
              "    Auto method: start\n"
              "        minClocks  = 10000\n"
              "    Prior Measurement: \n"
              "        numLoops   = 1\n"
              "        numClocks  = 0\n"
              "        funcClocks = 0\n"
              "        result     = accuracy fail\n"
              "    Prior Measurement: \n"
              "        numLoops   = 10\n"
              "        numClocks  = 0\n"
              "        funcClocks = 0\n"
              "        result     = accuracy fail\n"
              "    Auto method: exit\n");
}

TEST_F(AutoMethod, TriesToAvoidABadStatus) {
    constexpr const char* Overflow = "-- Status    SSX: ?Overflow \n";
    const std::string begin = std::string(Overflow) + "-- Attempting to avoid bad control status\n";
    const struct {
        const char* what;
        std::vector<long long> costs;
        int badFrom;  // loops
        const char* log;
        std::string text;
        double figure;
        const char* comment;
        mrResult result;
    } rows[] = {
        {"goes away with half the loops",
         {10000},
         4,
         "L1 L4 L2 L2 L2 L2 L2 ",
         begin + "-- Attempt is successful\n",
         10000.0,
         "nLps=2",
         MR_OK},
        {"up to twice the accuracy requested",
         {10000, 10000, 10600, 10600, 10600, 10600, 11500},
         4,
         "L1 L4 L2 L2 L2 L2 L2 ",
         begin + "-- Attempt is successful\n",
         10000.0,
         "nLps=2 acc=8.0%",
         MR_BAD_ACCURACY},
        {"stays",
         {10000},
         2,
         "L1 L4 L2 L2 L2 L2 L2 ",
         begin + Overflow + "-- Attempt fails: Bad control status repeats.\n",
         10000.0,
         "nLps=2",
         MR_OK},
        {"figures scatter",
         {10000, 10000, 20000},
         4,
         "L1 L4 L2 L2 L2 L2 L2 ",
         begin + "-- Attempt fails: Accuracy is unsatisfactory.\n",
         10000.0,
         "nLps=2 acc=45.5%",
         MR_BAD_ACCURACY},
        {"from the first call on: seen in the iteration only",
         {10000},
         1,
         "L1 L4 L2 L2 L2 L2 L2 ",
         begin + Overflow + "-- Attempt fails: Bad control status repeats.\n",
         10000.0,
         "nLps=2",
         MR_OK},
    };
    sums = false;
    m_tool.m_ibs = true;
    for (const auto& row : rows) {
        onCall = [&row](int calls) {
            if (calls >= row.badFrom) {
                raiseOverflow();
            }
        };
        CapturedOutput output(MSG_ERR | MSG_WARN);
        mrTest::clearCtrlStatus();
        EXPECT_EQ(course(row.costs), row.log) << row.what;
        EXPECT_EQ(output.text(), row.text) << row.what;
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.what;
        EXPECT_EQ(str(m_tool.m_comment), row.comment) << row.what;
        EXPECT_EQ(m_result, row.result) << row.what;
    }
    onCall = [](int) { raiseOverflow(); };
    CapturedOutput output(InfoLevel);
    course({10000});
    EXPECT_NE(output.text().find("        result     = modified control status\n" + begin +
                                 "    Reduce loops to avoid bad ctrl status.\n"
                                 "    Simple Measurements: \n"
                                 "        numLoops   = 2\n"),
              std::string::npos);
    EXPECT_NE(output.text().find("        result     = modified control status\n"
                                 "    Cannot avoid bad ctrl status\n"
                                 "-- Attempt fails: Bad control status repeats.\n"
                                 "    Auto method: stop\n"),
              std::string::npos);
}

TEST_F(AutoMethod, BadStatusAloneDoesNotMatterWhileMeasuring) {
    onCall = [](int) { raiseOverflow(); };
    CapturedOutput output(MSG_ERR | MSG_WARN);
    EXPECT_EQ(course({10000}), "L1 L4 ");
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(m_result, MR_OK);
    bool bad87 = true;
    bool badSSX = false;
    EXPECT_TRUE(mrTest::badCtrlStatus(bad87, badSSX));
    EXPECT_FALSE(bad87);
    EXPECT_TRUE(badSSX);
}

}  // namespace
