#include "job.h"
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
    static constexpr struct {
        int method;
        double accuracy;
        const char* comment;
        double clocks, divisor, flops;
        const char* console;
        const char* table;
    } rows[] = {
        {MR_METHOD_AUTO, 0.0005, "nLps=128", 2000, 32, 64,
         "  acc=0.05%  nLps=128    perf=    2e+03/       32=     62.5 clocks",
         "job,-,nLps=128,62.5,e,2,32.0,-\n"},
        {MR_METHOD_BEST, 1.0, "nLps=8 acc=100.0%", 7, 1, 0,
         "  acc=100.0%  nLps=8 acc=100.0%  perf=        7/        1=     7.00 clocks",
         "job,-,nLps=8 acc=100.0%,7.00,e,0.007,-,-\n"},
        {MR_METHOD_STAT, 0.0, "nCalls=12", 0, 4, 64,
         "  nCalls=12   perf=        0/        4=          clocks", "job,-,nCalls=12,-,e,0,-,-\n"},
        {MR_METHOD_LOOP, 0.0, "", 5, 0, 0, "              perf=        5/        0=          clocks",
         "job,-,-,-,e,0.005,-,-\n"},
    };
    for (const auto& row : rows) {
        CapturedTable table;
        Job job;
        job.m_tool.m_method = row.method;
        job.m_tool.m_accuracy = row.accuracy;
        job.setTimingResult(row.clocks, row.comment);
        job.divisor = row.divisor;
        job.flops = row.flops;
        EXPECT_EQ(str(job.testResultString()), row.console);
        job.putTableResult(MR_OK);
        EXPECT_EQ(table.text(), row.table);
    }
}

/// What a test with the entries of the letters says: L loop, S statistic, O old, C call, I init.
std::string said(const std::string& entries, int method, bool callMode, bool setAndUse) {
    const auto has = [&entries](char letter) { return entries.find(letter) != std::string::npos; };
    mrTest test(has('C') ? ScriptedTiming::call : nullptr, has('I') ? ScriptedTiming::init : nullptr,
                has('L') ? ScriptedTiming::loop : nullptr, has('S') ? ScriptedTiming::stat : nullptr, "f",
                "f.cpp", "Suite//M");
    const FuncOld old = [](mrTool&, int) { return MR_OK; };
    test.m_funcOld = has('O') ? old : nullptr;
    test.m_tool.m_method = method;
    test.m_tool.m_callMode = callMode;
    test.m_tool.m_setAndUse = setAndUse;
    const std::string begin = "   Test has been registered by M macro with";
    const std::string text = str(test.regInfo());
    EXPECT_TRUE(text.starts_with(begin)) << text;
    return text.substr(begin.size());
}

TEST(TestOutput, SaysByWhatItMeasures) {
    EXPECT_EQ(said("LSCI", 0, false, false),
              " loopMethod, statMethod, funcCall, funcInit.\n   loopMethod is called for measuring.");
    EXPECT_EQ(said("LS", 2, false, false),
              " loopMethod, statMethod.\n   statMethod is called for measuring.");
    EXPECT_EQ(said("LS", 3, true, false), " loopMethod, statMethod.\n   statMethod is called for measuring.");
    EXPECT_EQ(said("L", 2, false, true), " loopMethod.\n   loopMethod is called for measuring.");
    EXPECT_EQ(said("S", 0, false, false), " statMethod.\n   statMethod is called for measuring.");
    EXPECT_EQ(said("LC", 0, false, true),
              " loopMethod, funcCall.\n   funcCall with Set&Use is called for measuring.");
    EXPECT_EQ(said("OC", 0, false, true), " oldMethod, funcCall.\n   oldMethod is called for measuring.");
    EXPECT_EQ(str(mrTest(static_cast<FuncOld>(nullptr), "f", "f.cpp", "Suite").regInfo()),
              "   Test has been registered without any function to call.\n"
              " No standard timing method is available");
}

TEST(TestOutput, NamesTheTest) {
    struct LibraryJob : zyTest {
        explicit LibraryJob(const char* info)
            : zyTest(nullptr, nullptr, ScriptedTiming::loop, nullptr, "zylsAdd_32f_I", "f.cpp", info) {}
    };
    CapturedTable table;
    mrString texts;
    for (const char* info : {"Tims//MR_REG_MR_", "a/b/c/d", "a/b", "a"}) {
        LibraryJob job(info);
        texts << job.m_info.m_suite << "|" << job.m_info.m_group << "|" << job.m_info.m_regMark << "; ";
        EXPECT_EQ(job.regInfo().found(" by ZY_REG_MR_ macro"), job.m_info.m_suite == "Tims");
        job.funcToCstrm();
    }
    EXPECT_EQ(str(texts), "Tims||MR_REG_MR_; a|b|c/d; a|b|; a||; ");
    g_cstrm.lineOut(3);
    EXPECT_EQ(table.text(), "zylsAdd,32f,I\n");
}

}  // namespace
