#include <gtest/gtest.h>

#include <climits>

#include "support/scripted_clock.h"
#include "zysuite.h"

namespace {

int callF() { return ScriptedTiming::call(); }
int initF() { return ScriptedTiming::init(); }

class TimingLoop : public testing::Test, protected ScriptedTiming {
  protected:
    TimingLoop() {
        zyl_GetStatusString = [](int status) { return status < 0 ? "bad" : "noted"; };
    }
    ~TimingLoop() override { zyl_GetStatusString = m_getStatusString; }

    // What is called for these costs and statuses of the calls, the ticks, and the result; of the statistic
    // method also the calls that it counts, and the status line.

    std::string loop(int numLoops, std::vector<long long> theCosts, std::vector<int> theStatuses) {
        CapturedOutput output(MSG_ERR);
        costs = std::move(theCosts);
        statuses = std::move(theStatuses);
        long long ticks = 0;
        const int result = zyTimeLoop<callF, zyNoInit>(numLoops, &ticks, "F");
        return called() + std::to_string(ticks) + " !" + std::to_string(result);
    }
    template <int (*Init)() = zyNoInit>
    std::string stat(int calls, long long ticks, int step, std::vector<int> theStatuses = {0}) {
        CapturedOutput output(MSG_ERR | MSG_WARN);
        statuses = std::move(theStatuses);
        const int result = zyTimeStat<callF, Init>(&calls, &ticks, step, "F");
        const std::string entries = called();
        return (Init == zyNoInit ? entries : "") + std::to_string(calls) + " " + std::to_string(ticks) +
               " !" + std::to_string(result) + " " + output.text();
    }

  private:
    const char* (*m_getStatusString)(int) = zyl_GetStatusString;
};

TEST_F(TimingLoop, LoopKeepsTheBestCallAndTheLastStatus) {
    setReadCost(3);
    EXPECT_EQ(loop(4, {10, 90, 70, 80, 95}, {0}), "C*5 73 !1");
    EXPECT_EQ(loop(0, {10}, {0}), "C 3 !1");
    EXPECT_EQ(loop(3, {10, 90, 70, 80}, {-8, -8, -8, 0}), "C*4 73 !1");
    EXPECT_EQ(loop(2, {10, 90}, {0, 0, -8}), "C*3 93 !9");
    EXPECT_EQ(loop(2, {10, -200, 90}, {0}), "C*3 93 !1") << "a clock that went backwards gives no best time";
    initCost = 1000;
    long long ticks = 0;
    zyTimeLoop<callF, initF>(2, &ticks, "F");
    EXPECT_EQ(called(), "I C I C I C ");
    EXPECT_EQ(ticks, 93) << "the input is put back outside the timed call";
}

TEST_F(TimingLoop, StatReachesBothTheCallsAndTheTime) {
    EXPECT_EQ(stat(8, 800, 1), "C*8 8 100 !1 ");
    EXPECT_EQ(stat(8, 801, 1), "C*9 9 100 !1 ");
    EXPECT_EQ(stat(0, 250, 1), "C*3 3 100 !1 ");
    EXPECT_EQ(stat(8, 10001, 100), "C*200 200 100 !1 ");
    EXPECT_EQ(stat(0, 0, 100), "0 " + std::to_string(LLONG_MAX / 100) + " !1 ") << "nothing asked for";
}

TEST_F(TimingLoop, StatStopsAtANegativeStatus) {
    const std::string bad = " 100 !9 --ZYL FAIL. status = -8 in F: bad\n";
    EXPECT_EQ(stat(4, 0, 1, {5, -8, 0}), "C*2 1" + bad);
    EXPECT_EQ(stat(4, 0, 1, {5, 7, 0}), "C*4 4 100 !5 --ZYL NOTE. status = 7 in F: noted\n");
    // Of a block only the last call is looked at.
    EXPECT_EQ(stat(4, 0, 2, {-8, 0}), "C*4 4 100 !1 ");
    EXPECT_EQ(stat(4, 0, 2, {0, -8, 0}), "C*2 0" + bad);
}

TEST_F(TimingLoop, StatKeepsTheBestBlockLessTheOverhead) {
    const auto best = [&](long long theInitCost, Zyl64u readCost, std::vector<long long> script) {
        initCost = theInitCost;  // of each turn of the bare loop too
        setReadCost(readCost);
        costs = std::move(script);
        return stat<initF>(4, 0, 2);
    };
    EXPECT_EQ(best(10, 0, {100, 300, 100, 60, 100}), "4 80 !1 ");
    EXPECT_EQ(best(10, 450, {100, 60, 100}), "4 301 !1 ") << "(160 + 20 + 450) / 2 - (1000 + 450) / 100";
    EXPECT_EQ(best(50, 0, {0}), "4 50 !1 ") << "not above the overhead: no correction";
}

TEST_F(TimingLoop, StatusesBecomeResults) {
    const auto checked = [](int status, const char* name, OutputLevel level, int before) {
        CapturedOutput output(level);
        mrTest::m_currentResult = before;
        const int result = zyTest::checkStatus(status, name);
        return std::to_string(result) + " " + std::to_string(mrTest::m_currentResult) + " " + output.text();
    };
    EXPECT_EQ(checked(5, "", 3, MR_NOTE), "5 6 --ZYL NOTE. status = 5: noted\n");
    EXPECT_EQ(checked(5, "F", 1, MR_NOT_RUN), "5 1 ") << "where only fails show, a note does not count";
    zyTest::m_checkErrorsOnly = true;
    EXPECT_EQ(checked(5, "F", 3, MR_NOT_RUN), "1 0 ");
    EXPECT_EQ(checked(-8, "F", 1, MR_OK), "9 9 --ZYL FAIL. status = -8 in F: bad\n");
    zyTest::m_checkErrorsOnly = false;
}

}  // namespace
