#include "mrtool.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/captured_output.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"
#include "test/mrmemory.h"
#include "test/mrtest.h"

namespace {

class Tool : public testing::Test, protected ScriptedTiming {
  protected:
    /// What was called by one timing with these entries.
    std::string called(FuncLoop withLoop, FuncStat withStat, FuncCall withCall, FuncCall withInit = nullptr) {
        log.clear();
        m_result = m_tool.timing(withLoop, withStat, withCall, withInit);
        return log;
    }
    static std::string times(int count, const std::string& text) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += text;
        }
        return all;
    }

    mrTool m_tool;
    mrResult m_result = MR_NOT_RUN;
};

TEST_F(Tool, HoldsSettingsWithinTheirBounds) {
    static constexpr struct {
        int start, stop;
        int isStart, isStop;
    } best[] = {
        {3, 10, 3, 24}, {1, 2048, 1, 2048}, {3, 24, 3, 24},
        {0, -5, 1, 0},  {-2, -20, 1, -16},  {INT_MAX, 8, INT_MAX, INT_MAX},
    };
    for (const auto& row : best) {
        m_tool.setMethodBest(row.start, row.stop, 500);
        int start = 0;
        int stop = 0;
        long long clocks = 0;
        EXPECT_TRUE(m_tool.getMethodBest(start, stop, clocks));
        EXPECT_EQ(start, row.isStart);
        EXPECT_EQ(stop, row.isStop) << row.start << " " << row.stop;
        EXPECT_EQ(clocks, 500);
    }
    static constexpr int loops[][2] = {{0, 1}, {-7, 1}, {1, 1}, {25, 25}};
    for (const auto& row : loops) {
        m_tool.setMethodLoop(row[0]);
        int count = 0;
        EXPECT_TRUE(m_tool.getMethodLoop(count));
        EXPECT_EQ(count, row[1]);
    }
    // A method that is not set leaves what was asked for alone.
    int kept = 77;
    long long keptClocks = 78;
    EXPECT_FALSE(m_tool.getMethodAuto());
    EXPECT_FALSE(m_tool.getMethodStat(kept, keptClocks));
    EXPECT_FALSE(m_tool.getMethodBest(kept, kept, keptClocks));
    m_tool.setMethodAuto();
    EXPECT_FALSE(m_tool.getMethodLoop(kept));
    EXPECT_EQ(kept, 77);
    EXPECT_EQ(keptClocks, 78);
}

TEST_F(Tool, ShiftsTheLoopsOfTheAutoMethod) {
    static constexpr struct {
        int factor, start, stop;
    } rows[] = {
        {1, 0, 1024},  {-1, 2, 4096}, {-3, 8, 16384}, {12, 0, 0},         {33, 0, 1024},
        {32, 1, 2048}, {0, 0, 0},     {-34, 4, 8192}, {INT_MIN, 1, 2048},
    };
    for (const auto& row : rows) {
        m_tool.setLoopFactor(row.factor);
        EXPECT_EQ(m_tool.m_factorStart, row.start) << row.factor;
        EXPECT_EQ(m_tool.m_factorStop, row.stop) << row.factor;
    }
}

TEST_F(Tool, FallsBackToTheMethodThatTheEntriesAllow) {
    static constexpr struct {
        FuncLoop loop;
        FuncStat stat;
        FuncCall call;
        int method, methodAfter;
        const char* attention;
        const char* log;
    } rows[] = {
        {nullptr, stat, nullptr, MR_METHOD_LOOP, MR_METHOD_STAT,
         " ATTENTION! The test cannot execute Manual loop timing.\n Statistic timing will be run instead.\n",
         "S10/0/1 "},
        {loop, nullptr, nullptr, MR_METHOD_STAT, MR_METHOD_LOOP,
         " ATTENTION! The test cannot execute Statistic timing.\n Manual loop timing will be run instead.\n",
         "L12 "},
        {nullptr, nullptr, call, MR_METHOD_LOOP, MR_METHOD_LOOP, "", "C C C C C C C C C C C "},
        {nullptr, nullptr, call, MR_METHOD_STAT, MR_METHOD_STAT, "", nullptr},
        {loop, stat, call, MR_METHOD_LOOP, MR_METHOD_LOOP, "", "L10 "},
        {loop, stat, call, MR_METHOD_STAT, MR_METHOD_STAT, "", "S12/10000/1 "},
    };
    for (const auto& row : rows) {
        m_tool = mrTool();
        m_tool.m_method = row.method;
        CapturedOutput output(MSG_ERR);
        // The words come once; the second combination goes the other way in silence.
        for (int combination = 0; combination < 2; ++combination) {
            EXPECT_EQ(called(row.loop, row.stat, row.call),
                      row.log != nullptr ? row.log : "C " + times(200, "C "));
            EXPECT_EQ(output.text(), row.attention);
            EXPECT_EQ(m_result, MR_OK);
            EXPECT_EQ(m_tool.m_method, row.methodAfter);
        }
    }
}

TEST_F(Tool, TellsWhatCannotBeMeasured) {
    constexpr const char* NoEntry =
        " Internal test problem: The test cannot execute standard timing.\n"
        " No one of funcLoop, funcStat or funcCall is registered in the test.\n";
    static const struct {
        int method;
        FuncStat stat;
        mrResult inTool;
        std::string text;
    } rows[] = {
        {MR_METHOD_AUTO, nullptr, MR_NOT_RUN, NoEntry},
        {9, stat, MR_FAIL, "MR internal fail: file perflib/src/mrtool, line 845\n"},
        {MR_METHOD_AUTO, stat, MR_FAIL, "MR internal fail: file perflib/src/mrtool, line 273\n"},
    };
    for (const auto& row : rows) {
        m_tool.m_method = row.method;
        CapturedOutput output(MSG_ERR);
        EXPECT_EQ(called(nullptr, row.stat, nullptr), "");
        EXPECT_EQ(m_result, MR_FAIL);
        EXPECT_EQ(m_tool.m_result, row.inTool) << row.text;
        EXPECT_EQ(output.text(), row.text);
    }
}

TEST_F(Tool, RepeatsAReadingOfNoClocksOnce) {
    static const struct {
        std::vector<long long> readings;
        std::vector<mrResult> results;
        const char* log;
        double figure;
        mrResult result;
    } rows[] = {
        {{0, 500}, {MR_OK}, "L1 L1 ", 500.0, MR_OK},
        {{0}, {MR_OK}, "L1 L1 ", 0.0, MR_OK},
        {{-5, 300}, {MR_OK}, "L1 L1 ", 300.0, MR_OK},
        {{0, 300}, {MR_LIB_NOTE, MR_OK}, "L1 L1 ", 300.0, MR_LIB_NOTE},
        {{0, 300}, {MR_LIB_FAIL}, "L1 ", 0.0, MR_LIB_FAIL},
        {{1, 300}, {MR_OK}, "L1 ", 1.0, MR_OK},
    };
    m_tool.setMethodLoop(1);
    for (const auto& row : rows) {
        costs = row.readings;
        results = row.results;
        EXPECT_EQ(called(loop, nullptr, nullptr), row.log);
        EXPECT_EQ(m_tool.m_funcClocks, row.figure);
        EXPECT_EQ(m_result, row.result);
        EXPECT_EQ(str(m_tool.m_comment), "nLps=1") << "left from the measurement before";
    }
}

TEST_F(Tool, OldEntryMeasuresByItself) {
    const FuncOld old = [](mrTool& tool, int numLoops) {
        tool.m_numClocks = 70LL * numLoops;
        return MR_DATA_NOTE;
    };
    m_tool.setMethodLoop(3);
    EXPECT_EQ(m_tool.timing(old), MR_DATA_NOTE);
    EXPECT_EQ(m_tool.m_funcClocks, 210.0);
}

TEST_F(Tool, LoopsAroundTheCallEntry) {
    static const struct {
        std::vector<int> statuses;
        FuncCall init;
        const char* log;
        double figure;
    } rows[] = {
        {{0}, nullptr, "C C C C ", 300.0},     {{0}, init, "I C I C I C I C ", 321.0},
        {{-1, 0}, nullptr, "C C C C ", 300.0}, {{0, 4, -2}, nullptr, "C C C ", 200.0},
        {{0, -2}, init, "I C I C ", 107.0},
    };
    m_tool.setMethodLoop(3);
    initCost = 7;
    for (const auto& row : rows) {
        statuses = row.statuses;
        EXPECT_EQ(called(nullptr, nullptr, call, row.init), row.log);
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.log;
        EXPECT_EQ(m_result, MR_OK);
    }
}

TEST_F(Tool, AddsUpTimedCallsOfTheCallEntry) {
    static const struct {
        int calls;
        long long clocks;
        long long cost;
        std::vector<int> statuses;  // of the warm-up, then of the timed and the untimed call of each round
        int rounds;
        int made;  // calls in all
        double figure;
    } rows[] = {
        {12, 10000, 2000, {0}, 12, 25, 2000.0},
        {12, 10000, 100, {0}, 100, 201, 100.0},
        {3, 0, 100, {0}, 3, 7, 100.0},
        {0, 0, 100, {0}, 0, 1, 0.0},
        // The status of the timed call does not end it, that of the second call does, and its round does not
        // count though its clocks do.
        {3, 0, 100, {0, -1, 0}, 3, 7, 100.0},
        {3, 0, 100, {0, 0, 0, 0, -1}, 1, 5, 200.0},
        {3, 0, 100, {0, 0, -1}, 0, 3, 0.0},
        {2, 0, 100, {-1, 0}, 2, 5, 100.0},
    };
    for (const auto& row : rows) {
        m_tool.setMethodStat(row.calls, row.clocks);
        costs = {row.cost};
        statuses = row.statuses;
        EXPECT_EQ(called(nullptr, nullptr, call), times(row.made, "C "));
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.made;
        EXPECT_EQ(str(m_tool.m_comment), "nCalls=" + std::to_string(row.rounds));
        EXPECT_EQ(m_result, MR_OK);
    }
    // Putting the data back stands outside the timed stretch.
    m_tool.setMethodStat(2, 0);
    initCost = 7;
    EXPECT_EQ(called(nullptr, nullptr, call, init), "I C I C C I C C ");
    EXPECT_EQ(m_tool.m_funcClocks, 100.0);
}

TEST_F(Tool, StatusesOfTheCallEntryBecomeResultsIfAsked) {
    mrTool::m_pCheckStatus = [](int status) { return status < 0 ? MR_LIB_FAIL : mrResult{MR_OK}; };
    static constexpr struct {
        int method;
        int statuses[4];
        int made;
        mrResult result;
    } rows[] = {
        {MR_METHOD_LOOP, {-1, 0, 0, 0}, 1, MR_LIB_FAIL}, {MR_METHOD_LOOP, {0, 0, -1, 0}, 3, MR_LIB_FAIL},
        {MR_METHOD_LOOP, {0, 0, 4, 0}, 4, MR_OK},        {MR_METHOD_STAT, {-1, 0, 0, 0}, 1, MR_LIB_FAIL},
        {MR_METHOD_STAT, {0, -1, 0, 0}, 7, MR_OK},       {MR_METHOD_STAT, {0, 0, -1, 0}, 3, MR_LIB_FAIL},
    };
    m_tool.m_manualLoops = 3;
    m_tool.m_statCalls = 3;
    m_tool.m_statClocks = 0;
    for (const auto& row : rows) {
        m_tool.m_method = row.method;
        statuses.assign(std::begin(row.statuses), std::end(row.statuses));
        EXPECT_EQ(called(nullptr, nullptr, call), times(row.made, "C "));
        EXPECT_EQ(m_result, row.result) << row.method << " " << row.made;
    }
    mrTool::m_pCheckStatus = nullptr;
}

TEST_F(Tool, SetAndUseRestoresTheDataBeforeEachCall) {
    struct Block : mrObject {
        bool setReservedCopy() override {
            ScriptedClock::advance(5);
            return ++restored > 0;
        }
        int restored = 0;
    } owner;
    void* block = mrMalloc(16, 0, 0, &owner);
    mrTest::clearCtrlStatus();
    onCall = [](int) { raiseOverflow(); };
    m_tool.m_setAndUse = true;
    const struct {
        int method;
        FuncLoop loop;
        FuncCall call;
        const char* log;
        int restored;
        double figure;
        mrResult result;
    } rows[] = {
        {MR_METHOD_LOOP, loop, call, "I C I C I C ", 2, 224.0, MR_OK},
        {MR_METHOD_STAT, loop, call, "I C I C C I C C ", 2, 105.0, MR_OK},
        {MR_METHOD_LOOP, loop, nullptr, "", 0, 0.0, MR_NOT_RUN},
    };
    m_tool.m_manualLoops = 2;
    m_tool.m_statCalls = 2;
    m_tool.m_statClocks = 0;
    initCost = 7;
    for (const auto& row : rows) {
        owner.restored = 0;
        m_tool.m_method = row.method;
        EXPECT_EQ(called(row.loop, stat, row.call, init), row.log);
        EXPECT_EQ(owner.restored, row.restored) << row.log;
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.log;
        EXPECT_EQ(m_result, row.result);
    }
    EXPECT_FALSE(g_ssx.badStatus()) << "the status is not watched in this mode";
    m_tool.m_setAndUse = false;
    called(loop, nullptr, nullptr);
    EXPECT_TRUE(g_ssx.badStatus());
    mrTest::clearCtrlStatus();
    mrFree(block);
}

TEST_F(Tool, WatchesTheEntryAlone) {
    const KeptFloatState kept;
    mrTest::clearCtrlStatus();
    for (const int method : {MR_METHOD_LOOP, MR_METHOD_STAT}) {
        m_tool.m_method = method;
        raiseOverflow();
        called(loop, stat, nullptr);
        EXPECT_FALSE(g_ssx.badStatus()) << "from before the call";
        onCall = [](int) { raiseOverflow(); };
        called(loop, stat, nullptr);
        EXPECT_TRUE(g_ssx.badStatus());
        onCall = nullptr;
        mrTest::clearCtrlStatus();
    }
}

TEST_F(Tool, TestsMarkedSoPutTheirDataBackBeforeEachMeasurement) {
    m_tool.setMethodLoop(4);
    EXPECT_EQ(called(loop, nullptr, nullptr, init), "L4 ");
    m_tool.m_ibs = true;
    EXPECT_EQ(called(loop, nullptr, nullptr, init), "I L4 ");
}

TEST(ToolTexts, AccuracyAndClocks) {
    static const struct {
        double accuracy;
        std::string text;
    } accuracies[] = {
        {0.0005, "0.05%"}, {0.05, "5.0%"},  {0.0, "0.00%"},      {0.001, "0.1%"},
        {1.0, "100.0%"},   {2.0, "200.0%"}, {500.0, "50000.0%"}, {1e30, "100000000000000005"},
    };
    for (const auto& row : accuracies) {
        EXPECT_EQ(str(mrTool::getAccuracyStr(row.accuracy)), row.text);
    }
    static constexpr struct {
        long long clocks;
        const char* text;
    } clocks[] = {
        {0, "0"},
        {-5, "-5"},
        {2147483647, "2147483647"},
        {2147483648, "2147483640"},
        {LLONG_MAX,
         "922337203"
         "0000000000"},
    };
    for (const auto& row : clocks) {
        EXPECT_EQ(str(clockStr(row.clocks)), row.text);
    }
}

}  // namespace
