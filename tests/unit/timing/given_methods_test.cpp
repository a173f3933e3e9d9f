#include <gtest/gtest.h>

#include "mrtool.h"
#include "support/captured_output.h"
#include "support/scripted_clock.h"

namespace {

constexpr OutputLevel InfoLevel = MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO;

class GivenMethods : public testing::Test, protected ScriptedTiming {
  protected:
    mrTool m_tool;
};

TEST_F(GivenMethods, StatisticDescribesItself) {
    CapturedOutput output(InfoLevel);
    m_tool.setMethodStat(12, 5'000'000'000);
    statCalls = 400;
    costs = {2000};
    results = {MR_LIB_NOTE};
    EXPECT_EQ(m_tool.timing(loop, stat, call, init), MR_LIB_NOTE);
    EXPECT_EQ(log, "S12/5000000000/1 ");
    EXPECT_EQ(output.text(),
              "    Statistical method:\n"
              "        minCalls   = 12\n"
              "        maxClocks  = 5000000000\n"
              "        numCalls   = 400\n"
              "        funcClocks = 5\n"
              "        result     = lib function note\n");
    EXPECT_EQ(str(m_tool.m_comment), "nCalls=400");
    EXPECT_EQ(m_tool.m_accuracy, 0.0);
}

TEST_F(GivenMethods, ManualDescribesItself) {
    CapturedOutput output(InfoLevel);
    m_tool.setMethodLoop(10);
    EXPECT_EQ(m_tool.timing(nullptr, stat, call, nullptr), MR_OK);
    EXPECT_EQ(output.text(),
              "    Manual method: \n"
              "        numLoops   = 10\n"
              "        funcClocks = 1e+03\n"
              "        result     = successfully\n");
    EXPECT_EQ(str(m_tool.m_comment), "nLps=10");
    EXPECT_EQ(m_tool.m_accuracy, 0.0);
}

TEST_F(GivenMethods, StatisticDividesByTheCallsMade) {
    static constexpr struct {
        int calls;
        long long reading;
        double figure;
    } rows[] = {{400, 2000, 5.0}, {1, 2000, 2000.0}, {0, 2000, 0.0}, {8, 0, 0.0}};
    m_tool.setMethodStat(12, 10000);
    for (const auto& row : rows) {
        statCalls = row.calls;
        costs = {row.reading};
        log.clear();
        EXPECT_EQ(m_tool.timing(loop, stat, nullptr, nullptr), MR_OK);
        EXPECT_EQ(log, "S12/10000/1 ") << "a reading of no clocks is not repeated";
        EXPECT_EQ(m_tool.m_funcClocks, row.figure) << row.calls;
    }
}

TEST_F(GivenMethods, StatisticKeepsTheBlockOfTheLastAutoMeasurement) {
    costs = {100};
    m_tool.timing(loop, stat, nullptr, nullptr);
    m_tool.setMethodStat(12, 10000);
    log.clear();
    m_tool.timing(loop, stat, nullptr, nullptr);
    EXPECT_EQ(log, "S12/10000/100 ");
    mrTool::numIntLoops = 1;
}

}  // namespace
