#include "job.h"
#include "support/golden.h"
#include "zytest.h"

namespace {

TEST(TestOutput, FormatsClocksByTheirSize) {
    Job job;
    mrString texts;
    for (const double clocks : {0.0, -1.0, 0.00009, 0.0001, 0.001, 0.01, 0.1, 1.0, 9.999, 10.0, 99.99, 100.0,
                                10000000.0, 10000000.5}) {
        texts << job.formatClocks(clocks) << " ";
    }
    EXPECT_EQ(str(texts),
              "  9.000e-05 0.000100 0.00100 0.0100 0.100 1.00 10.00 10.0 100.0 100 10000000 1.000e+07 ");
}

TEST(TestOutput, LinesOfFigures) {
    const ScriptedClock clock;
    // Method, accuracy, comment, clocks, divisor and operations; the line of the console and of the table.
    using Row = std::tuple<int, double, const char*, double, double, double, const char*, const char*>;
    static constexpr Row rows[] = {
        {MR_METHOD_AUTO, 0.0005, "nLps=128", 2000, 32, 64,
         "  acc=0.05%  nLps=128    perf=    2e+03/       32=     62.5 clocks",
         "job,-,nLps=128,62.5,e,2,32.0,-\n"},
        {MR_METHOD_BEST, 1.0, "nLps=8 acc=100.0%", 7, 1, 0,
         "  acc=100.0%  nLps=8 acc=100.0%  perf=        7/        1=     7.00 clocks",
         "job,-,nLps=8 acc=100.0%,7.00,e,0.007,-,-\n"},
        {MR_METHOD_STAT, 0.0, "", 0, 4, 64, "              perf=        0/        4=          clocks",
         "job,-,-,-,e,0,-,-\n"},
        {MR_METHOD_LOOP, 0.0, "", 5, 0, 0, "              perf=        5/        0=          clocks",
         "job,-,-,-,e,0.005,-,-\n"},
    };
    for (const auto& [method, accuracy, comment, clocks, divisor, flops, console, line] : rows) {
        CapturedTable table;
        Job job;
        job.m_tool.m_method = method;
        job.m_tool.m_accuracy = accuracy;
        job.setTimingResult(clocks, comment);
        job.divisor = divisor;
        job.flops = flops;
        EXPECT_EQ(str(job.testResultString()), console);
        job.putTableResult(MR_OK);
        EXPECT_EQ(table.text(), line);
    }
}

TEST(TestOutput, SaysByWhatItMeasures) {
    // The entries: L loop, S statistic, O old, C call, I init; the method, whether it counts calls, -S.
    static constexpr std::tuple<const char*, int, bool, bool> rows[] = {
        {"LSCI", MR_METHOD_AUTO, false, false}, {"LS", MR_METHOD_STAT, false, false},
        {"LS", MR_METHOD_BEST, true, false},    {"L", MR_METHOD_STAT, false, true},
        {"S", MR_METHOD_AUTO, false, false},    {"C", MR_METHOD_STAT, false, false},
        {"LC", MR_METHOD_AUTO, false, true},    {"OC", MR_METHOD_AUTO, false, true},
    };
    std::string text;
    for (const auto& [entries, method, callMode, setAndUse] : rows) {
        const auto has = [of = entries](char letter) { return std::strchr(of, letter) != nullptr; };
        Job job;
        job.m_funcLoop = has('L') ? ScriptedTiming::loop : nullptr;
        job.m_funcStat = has('S') ? ScriptedTiming::stat : nullptr;
        job.m_funcCall = has('C') ? ScriptedTiming::call : nullptr;
        job.m_funcInit = has('I') ? ScriptedTiming::init : nullptr;
        job.m_funcOld = has('O') ? [](mrTool&, int) { return MR_OK; } : FuncOld{};
        job.m_tool.m_method = method;
        job.m_tool.m_callMode = callMode;
        job.m_tool.m_setAndUse = setAndUse;
        text += std::string(entries) + "\n" + str(job.regInfo()) + "\n";
    }
    text += str(mrTest(static_cast<FuncOld>(nullptr), "f", "f.cpp", "Suite").regInfo()) + "\n";
    expectGolden("unit/job/golden/registration.txt", text);
}

TEST(TestOutput, NamesTheTest) {
    mrString texts;
    for (const char* info : {"Tims//MR_REG_MR_", "a/b/c/d", "a/b", "a"}) {
        const mrTestInfo parts(info);
        texts << parts.m_suite << "|" << parts.m_group << "|" << parts.m_regMark << "; ";
    }
    EXPECT_EQ(str(texts), "Tims||MR_REG_MR_; a|b|c/d; a|b|; a||; ");
    zyTest job(nullptr, nullptr, ScriptedTiming::loop, nullptr, "f", "f.cpp", "Tims//MR_REG_MR_");
    EXPECT_TRUE(job.regInfo().found(" by ZY_REG_MR_ macro"));
}

}  // namespace
