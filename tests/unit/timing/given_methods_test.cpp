#include <gtest/gtest.h>

#include "support/scripted_clock.h"

namespace {

constexpr OutputLevel InfoLevel = MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO;

class GivenMethods : public testing::Test, protected ScriptedTiming {
  protected:
    mrTool tool;
};

TEST_F(GivenMethods, DescribeThemselves) {
    CapturedOutput output(InfoLevel);
    tool.setMethodStat(12, 5'000'000'000);
    statCalls = 400;
    costs = {2000};
    results = {MR_LIB_NOTE};
    EXPECT_EQ(course(tool, "LSCI"), "S12/5000000000/1 = 5 nCalls=400 !5");
    tool.setMethodLoop(10);
    EXPECT_EQ(course(tool, "SC"), "C*11 = 20000 nLps=10");
    EXPECT_EQ(tool.m_accuracy, 0.0);
    EXPECT_EQ(output.text(),
              "    Statistical method:\n"
              "        minCalls   = 12\n"
              "        maxClocks  = 5000000000\n"
              "        numCalls   = 400\n"
              "        funcClocks = 5\n"
              "        result     = lib function note\n"
              "    Manual method: \n"
              "        numLoops   = 10\n"
              "        funcClocks = 2e+04\n"
              "        result     = successfully\n");
}

TEST_F(GivenMethods, StatisticTakesItsEntryAsItComes) {
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
