#include "measure/mrtool.h"

#include <gtest/gtest.h>

#include <climits>

#include "parameter/mrmemory.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"

namespace {

class Tool : public testing::Test, protected ScriptedTiming {
  protected:
    Tool() {
        mrTool::m_pCheckStatus = [](int status) {
            return status > 0 ? mrResult(status) : status ? MR_LIB_FAIL : MR_OK;
        };
    }
    ~Tool() override { mrTool::m_pCheckStatus = nullptr; }

    using ScriptedTiming::course;
    std::string course(int method, const char* entries) {
        tool.m_method = method;
        return course(tool, entries);
    }
    /// The course for these answers of the call entry.
    std::string calls(int method, int count, long long clocks, std::vector<int> script, const char* entries) {
        tool.m_manualLoops = tool.m_statCalls = count;
        tool.m_statClocks = clocks;
        statuses = std::move(script);
        return course(method, entries);
    }
    std::string readings(std::vector<long long> script, std::vector<mrResult> answers) {
        tool.m_manualLoops = 1;
        costs = script;
        results = answers;
        return course(MR_METHOD_LOOP, "L");
    }

    KeptFloatState kept;
    mrTool tool;
};

TEST_F(Tool, HoldsSettingsWithinTheirBounds) {
    mrString text;
    for (const auto& [start, stop] : {std::pair(3, 10), {3, 25}, {0, -5}, {-2, -20}, {INT_MAX, 8}}) {
        tool.setMethodBest(start, stop, 500);
        text << tool.m_bestStart << "-" << tool.m_bestStop << " ";
    }
    for (const int factor : {1, -1, -3, 12, 33, 32, INT_MIN, 0}) {
        tool.setLoopFactor(factor);
        text << tool.m_factorStart << "-" << tool.m_factorStop << " ";
    }
    EXPECT_EQ(str(text),
              "3-24 3-25 1-0 1--16 2147483647-2147483647 "
              "0-1024 2-4096 8-16384 0-0 0-1024 1-2048 1-2048 0-0 ");
    tool.setMethodLoop(0);
    EXPECT_EQ(tool.m_manualLoops, 1);
}

TEST_F(Tool, FallsBackToTheMethodThatTheEntriesAllow) {
    CapturedOutput output(MSG_ERR);
    EXPECT_EQ(course(MR_METHOD_LOOP, "S"), "S10/0/1 = 0.02 nCalls=5000");
    EXPECT_EQ(course(tool, "S"), "S10/0/1 = 0.02 nCalls=5000");
    tool = mrTool();
    EXPECT_EQ(course(MR_METHOD_STAT, "L"), "L12 = 1200 nLps=12");
    EXPECT_EQ(course(tool, "L"), "L12 = 1200 nLps=12");
    EXPECT_EQ(
        output.text(),
        " ATTENTION! The test cannot execute Manual loop timing.\n Statistic timing will be run instead.\n"
        " ATTENTION! The test cannot execute Statistic timing.\n Manual loop timing will be run instead.\n")
        << "once for each test";
}

TEST_F(Tool, TellsWhatCannotBeMeasured) {
    CapturedOutput output(MSG_ERR);
    EXPECT_EQ(course(MR_METHOD_AUTO, "I"), "= 0  !11");
    EXPECT_EQ(tool.m_result, MR_NOT_RUN);
    EXPECT_EQ(course(9, "L"), "= 0  !11");
    EXPECT_EQ(course(MR_METHOD_AUTO, "S"), "= 0  !11");
    EXPECT_EQ(output.text(),
              " Internal test problem: The test cannot execute standard timing.\n"
              " No one of funcLoop, funcStat or funcCall is registered in the test.\n"
              "MR internal fail: file perflib/src/mrtool, line 845\n"
              "MR internal fail: file perflib/src/mrtool, line 273\n");
}

TEST_F(Tool, RepeatsAReadingOfNoClocksOnce) {
    EXPECT_EQ(readings({0, 500}, {MR_OK}), "L1*2 = 500 nLps=1");
    EXPECT_EQ(readings({0}, {MR_OK}), "L1*2 = 0 nLps=1");
    EXPECT_EQ(readings({0, 300}, {MR_LIB_NOTE, MR_OK}), "L1*2 = 300 nLps=1 !5");
    EXPECT_EQ(readings({0, 300}, {MR_LIB_FAIL}), "L1 = 0 nLps=1 !9");
    EXPECT_EQ(readings({1, 300}, {MR_OK}), "L1 = 1 nLps=1");
    const FuncOld old = [](mrTool& own, int numLoops) {
        own.m_numClocks = 70LL * numLoops;
        return MR_DATA_NOTE;
    };
    EXPECT_EQ(tool.timing(old), MR_DATA_NOTE);
    EXPECT_EQ(tool.m_funcClocks, 70.0);
}

TEST_F(Tool, LoopsAroundTheCallEntry) {
    initCost = 7;
    EXPECT_EQ(calls(MR_METHOD_LOOP, 3, 0, {0}, "C"), "C*4 = 300 nLps=3");
    EXPECT_EQ(calls(MR_METHOD_LOOP, 2, 0, {0}, "CI"), "I C I C I C = 214 nLps=2");
    EXPECT_EQ(calls(MR_METHOD_LOOP, 3, 0, {-1, 0}, "C"), "C = 0 nLps=3 !9") << "of the warm-up";
    EXPECT_EQ(calls(MR_METHOD_LOOP, 3, 0, {0, 4, -2}, "C"), "C*3 = 200 nLps=3 !9");
    EXPECT_EQ(calls(MR_METHOD_LOOP, 3, 0, {0, 4, 0}, "C"), "C*4 = 300 nLps=3 !4");
    mrTool::m_pCheckStatus = nullptr;
    EXPECT_EQ(calls(MR_METHOD_LOOP, 3, 0, {-1, 0, -2}, "C"), "C*3 = 200 nLps=3");
}

TEST_F(Tool, AddsUpTimedCallsOfTheCallEntry) {
    initCost = 7;
    // A round is a timed and an untimed call.
    EXPECT_EQ(calls(MR_METHOD_STAT, 12, 1200, {0}, "C"), "C*25 = 100 nCalls=12");
    EXPECT_EQ(calls(MR_METHOD_STAT, 12, 1201, {0}, "C"), "C*27 = 100 nCalls=13");
    EXPECT_EQ(calls(MR_METHOD_STAT, 0, 0, {0}, "C"), "C*3 = 100 nCalls=1");
    EXPECT_EQ(calls(MR_METHOD_STAT, 2, 0, {0}, "CI"), "I C I C*2 I C*2 = 100 nCalls=2");
    // The status of the untimed call comes first, and alone ends it; that round counts no call, but clocks.
    EXPECT_EQ(calls(MR_METHOD_STAT, 2, 0, {0, 0, 0, -1, 3}, "C"), "C*5 = 100 nCalls=2 !3");
    EXPECT_EQ(calls(MR_METHOD_STAT, 2, 0, {0, 0, 0, -1, 0}, "C"), "C*5 = 100 nCalls=2 !9");
    EXPECT_EQ(calls(MR_METHOD_STAT, 3, 0, {0, 0, 0, 0, -1}, "C"), "C*5 = 200 nCalls=1 !9");
}

TEST_F(Tool, SetAndUseRestoresTheDataBeforeEachCall) {
    struct Block : mrObject {
        bool setReservedCopy() override { return advance(5), true; }
    } owner;
    void* block = mrMalloc(16, 0, 0, &owner);
    tool.m_setAndUse = true;
    tool.m_manualLoops = tool.m_statCalls = 2;
    tool.m_statClocks = 0;
    initCost = 7;
    onCall = [](int) { setFlagsSSX(8); };
    EXPECT_EQ(course(MR_METHOD_LOOP, "LSCI"), "I C I C I C = 224 nLps=2");
    EXPECT_EQ(course(MR_METHOD_LOOP, "LSI"), "= 0 nLps=2 !0");
    EXPECT_EQ(course(MR_METHOD_STAT, "LSCI"), "I C I C*2 I C*2 = 105 nCalls=2");
    EXPECT_FALSE(g_ssx.badStatus()) << "the status is not watched in this mode";
    mrFree(block);
}

TEST_F(Tool, WatchesTheEntryAlone) {
    setFlagsSSX(8);
    course(MR_METHOD_LOOP, "L");
    EXPECT_FALSE(g_ssx.badStatus()) << "of code before the call";
    onCall = [](int) { setFlagsSSX(8); };
    course(MR_METHOD_STAT, "S");
    EXPECT_TRUE(g_ssx.badStatus());
}

TEST_F(Tool, WritesAccuracyAndClocks) {
    mrString text;
    for (const double accuracy : {0.0, 0.0005, 0.001, 0.05, 500.0, 1e30}) {
        text << mrTool::getAccuracyStr(accuracy) << " ";
    }
    for (const long long clocks : {0LL, -5LL, 2147483647LL, 2147483648LL, LLONG_MAX}) {
        text << clockStr(clocks) << " ";
    }
    EXPECT_EQ(str(text),
              "0.00% 0.05% 0.1% 5.0% 50000.0% 100000000000000005 "
              "0 -5 2147483647 2147483640 9223372030000000000 ");
}

TEST_F(Tool, DescribesTheGivenMethods) {
    CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO);
    tool.setMethodStat(12, 5'000'000'000);
    statCalls = 400;
    costs = {2000};
    results = {MR_LIB_NOTE};
    EXPECT_EQ(course(tool, "LSCI"), "S12/5000000000/1 = 5 nCalls=400 !5");
    tool.setMethodLoop(10);
    EXPECT_EQ(course(tool, "SC"), "C*11 = 20000 nLps=10");
    EXPECT_EQ(tool.m_accuracy, 0.0);
    EXPECT_EQ(output.text(),
              "    Statistical method:\n        minCalls   = 12\n        maxClocks  = 5000000000\n"
              "        numCalls   = 400\n        funcClocks = 5\n        result     = lib function note\n"
              "    Manual method: \n        numLoops   = 10\n        funcClocks = 2e+04\n"
              "        result     = successfully\n");
}

TEST_F(Tool, StatisticTakesItsEntryAsItComes) {
    costs = {100};
    course(tool, "LS");  // leaves blocks of 100 calls behind
    tool.setMethodStat(12, 10000);
    statCalls = 0;
    EXPECT_EQ(course(tool, "LS"), "S12/10000/100 = 0 nCalls=0");
    statCalls = 8;
    costs = {0};
    EXPECT_EQ(course(tool, "S"), "S12/10000/100 = 0 nCalls=8") << "no clocks are no reason to repeat it";
    mrTool::numIntLoops = 1;
}

}  // namespace
