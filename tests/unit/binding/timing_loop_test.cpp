#include <gtest/gtest.h>

#include <climits>

#include "support/captured_output.h"
#include "support/scripted_clock.h"
#include "zysuite.h"

namespace {

constexpr long long Longest = LLONG_MAX;

int callF() { return ScriptedEntries::call(); }
int initF() { return ScriptedEntries::init(); }

class TimingLoop : public testing::Test, protected ScriptedTiming {
  protected:
    TimingLoop() {
        zyl_GetStatusString = [](int status) { return status < 0 ? "bad" : "noted"; };
        mrTest::m_currentResult = MR_NOT_RUN;
    }
    ~TimingLoop() override {
        zyl_GetStatusString = m_getStatusString;
        zyTest::m_checkErrorsOnly = false;
    }

    std::string called(char entry) const { return std::to_string(std::count(log.begin(), log.end(), entry)); }

    long long m_ticks = 0;

  private:
    const char* (*m_getStatusString)(int) = zyl_GetStatusString;
};

TEST_F(TimingLoop, LoopKeepsTheBestCallAndTheLastStatus) {
    static const struct {
        int numLoops;
        std::vector<long long> costs;  // of the warm-up first
        std::vector<int> statuses;
        long long ticks;
        mrResult result;
        const char* calls;
    } rows[] = {
        {4, {10, 90, 70, 80, 95}, {0}, 73, MR_OK, "5"},
        {1, {10, 90}, {0}, 93, MR_OK, "2"},
        {0, {10}, {0}, 3, MR_OK, "1"},
        {0, {10}, {-8}, 3, MR_LIB_FAIL, "1"},
        // A failing status does not end the loop, and only the last one counts.
        {3, {10, 90, 70, 80}, {0, -8, 0}, 73, MR_OK, "4"},
        {2, {10, 90}, {-8, -8, 0}, 93, MR_OK, "3"},
        {2, {10, 90}, {0, 0, 5}, 93, MR_LIB_NOTE, "3"},
        {2, {10, 90}, {0, 0, -8}, 93, MR_LIB_FAIL, "3"},
        // A clock that went backwards is no best time.
        {2, {10, -200, 90}, {0}, 93, MR_OK, "3"},
        {1, {10, -200}, {0}, Longest, MR_OK, "2"},
    };
    CapturedOutput output(MSG_WARN);
    setReadCost(3);
    for (const auto& row : rows) {
        costs = row.costs;
        statuses = row.statuses;
        log.clear();
        EXPECT_EQ((zyTimeLoop<callF, zyNoInit>(row.numLoops, &m_ticks, "F")), row.result) << row.calls;
        EXPECT_EQ(m_ticks, row.ticks);
        EXPECT_EQ(called('C'), row.calls);
    }
}

TEST_F(TimingLoop, InputIsPutBackOutsideTheTimedCall) {
    initCost = 1000;
    EXPECT_EQ((zyTimeLoop<callF, initF>(2, &m_ticks, "F")), MR_OK);
    EXPECT_EQ(log, "I C I C I C ");
    EXPECT_EQ(m_ticks, 100);
    EXPECT_EQ((zyTimeLoop<callF, initF>(0, &m_ticks, "F")), MR_OK);
    EXPECT_EQ(m_ticks, 0);
}

TEST_F(TimingLoop, StatReachesBothTheCallsAndTheTime) {
    static constexpr struct {
        int numLoops;
        long long least;
        int step;
        int made;
    } rows[] = {
        {8, 0, 1, 8}, {8, 800, 1, 8}, {8, 801, 1, 9},     {0, 1, 1, 1},     {0, 250, 1, 3},
        {8, 0, 0, 8}, {8, 0, -5, 8},  {250, 0, 100, 300}, {8, 0, 100, 100}, {8, 10001, 100, 200},
    };
    for (const auto& row : rows) {
        int calls = row.numLoops;
        m_ticks = row.least;
        log.clear();
        EXPECT_EQ((zyTimeStat<callF, zyNoInit>(&calls, &m_ticks, row.step, "F")), MR_OK);
        EXPECT_EQ(calls, row.made) << row.least << " " << row.step;
        EXPECT_EQ(called('C'), std::to_string(row.made));
        EXPECT_EQ(m_ticks, 100);
    }
    // Nothing asked for, nothing done.
    int calls = 0;
    m_ticks = 0;
    zyTimeStat<callF, zyNoInit>(&calls, &m_ticks, 100, "F");
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(m_ticks, Longest / 100);
}

TEST_F(TimingLoop, StatKeepsTheBestBlockLessTheOverhead) {
    static const struct {
        long long initCost;
        Zyl64u readCost;
        std::vector<long long> costs;
        long long ticks;
    } rows[] = {
        // The init entry is timed in each block as in the bare loop.
        {10, 0, {100, 300, 100, 60, 100}, 80},
        {10, 450, {100, 60, 100, 300}, 80 + 225 - 4},  // 1450 clocks for 100 turns
        {300, 0, {100}, 100},
        // Not above the overhead: no correction.
        {50, 0, {0}, 50},
        {50, 0, {1}, 1},
    };
    for (const auto& row : rows) {
        initCost = row.initCost;
        setReadCost(row.readCost);
        costs = row.costs;
        int calls = 4;
        m_ticks = 0;
        EXPECT_EQ((zyTimeStat<callF, initF>(&calls, &m_ticks, 2, "F")), MR_OK);
        EXPECT_EQ(calls, 4);
        EXPECT_EQ(m_ticks, row.ticks) << row.initCost;
    }
}

TEST_F(TimingLoop, StatStopsAtANegativeStatus) {
    static const struct {
        int step;
        std::vector<int> statuses;
        int made;
        const char* calls;
        mrResult result;
        const char* text;
    } rows[] = {
        {1, {-8}, 0, "1", MR_LIB_FAIL, "--ZYL FAIL. status = -8 in F: bad\n"},
        {1, {0, 0, -8, 0}, 2, "3", MR_LIB_FAIL, "--ZYL FAIL. status = -8 in F: bad\n"},
        {1, {5, 0}, 4, "4", MR_LIB_NOTE, "--ZYL NOTE. status = 5 in F: noted\n"},
        {1, {5, 0, 7, 0}, 4, "4", MR_LIB_NOTE, "--ZYL NOTE. status = 7 in F: noted\n"},
        {1, {5, -8, 0}, 1, "2", MR_LIB_FAIL, "--ZYL FAIL. status = -8 in F: bad\n"},
        // Only the last call of a block is looked at.
        {2, {-8, 0}, 4, "4", MR_OK, ""},
        {2, {0, -8, 0}, 0, "2", MR_LIB_FAIL, "--ZYL FAIL. status = -8 in F: bad\n"},
    };
    for (const auto& row : rows) {
        CapturedOutput output(MSG_ERR | MSG_WARN);
        statuses = row.statuses;
        int calls = 4;
        m_ticks = 0;
        log.clear();
        EXPECT_EQ((zyTimeStat<callF, zyNoInit>(&calls, &m_ticks, row.step, "F")), row.result);
        EXPECT_EQ(calls, row.made) << row.text;
        EXPECT_EQ(called('C'), row.calls);
        EXPECT_EQ(m_ticks, 100) << row.text;
        EXPECT_EQ(output.text(), row.text);
    }
}

TEST_F(TimingLoop, StatusesBecomeResults) {
    static constexpr struct {
        int status;
        const char* name;
        OutputLevel level;
        bool errorsOnly;
        int before;
        mrResult result;
        int current;
        const char* text;
    } rows[] = {
        {0, "zylsF", 3, false, 0, MR_OK, 0, ""},
        {5, "zylsF", 3, false, 0, MR_LIB_NOTE, 5, "--ZYL NOTE. status = 5 in zylsF: noted\n"},
        {5, "", 3, false, 6, MR_LIB_NOTE, 6, "--ZYL NOTE. status = 5: noted\n"},
        // Where only fails show, a note does not count.
        {5, "zylsF", 1, false, 0, MR_LIB_NOTE, 1, ""},
        {5, "zylsF", 1, false, 4, MR_LIB_NOTE, 4, ""},
        {5, "zylsF", 3, true, 0, MR_OK, 0, ""},
        {-8, "zylsF", 1, true, 1, MR_LIB_FAIL, 9, "--ZYL FAIL. status = -8 in zylsF: bad\n"},
        {-8, "", 0, false, 0, MR_LIB_FAIL, 9, ""},
    };
    for (const auto& row : rows) {
        CapturedOutput output(row.level);
        const MessageLevel level = g_ostrm.msgLevel();
        mrTest::m_currentResult = row.before;
        zyTest::m_checkErrorsOnly = row.errorsOnly;
        EXPECT_EQ(zyTest::checkStatus(row.status, row.name), row.result);
        EXPECT_EQ(mrTest::m_currentResult, row.current) << row.status << " " << row.level;
        EXPECT_EQ(output.text(), row.text);
        EXPECT_EQ(g_ostrm.msgLevel(), level);
    }
}

}  // namespace
