#include <gtest/gtest.h>

#include "job.h"
#include "zytest.h"

namespace {

TEST(TestOutput, FormatsClocksByTheirSize) {
    static constexpr struct {
        double value;
        const char* text;
    } rows[] = {
        {0.0, ""},
        {-1.0, ""},
        {0.00009, "9.000e-05"},
        {0.0001, "0.000100"},
        {0.00099, "0.000990"},
        {0.001, "0.00100"},
        {0.01, "0.0100"},
        {0.1, "0.100"},
        {1.0, "1.00"},
        {9.999, "10.00"},
        {10.0, "10.0"},
        {99.99, "100.0"},
        {100.0, "100"},
        {10000000.0, "10000000"},
        {10000000.5, "1.000e+07"},
        {123456789.0, "1.235e+08"},
    };
    Job job;
    for (const auto& row : rows) {
        EXPECT_EQ(str(job.formatClocks(row.value)), row.text) << row.value;
    }
}

TEST(TestOutput, LineOfFigures) {
    static constexpr struct {
        int method;
        double accuracy;
        const char* comment;
        double clocks, divisor;
        const char* line;
    } rows[] = {
        {MR_METHOD_AUTO, 0.0005, "nLps=128", 1234.5, 32,
         "  acc=0.05%  nLps=128    perf= 1.23e+03/       32=     38.6 clocks"},
        {MR_METHOD_BEST, 1.0, "nLps=2048 acc=100.0%", 7, 1,
         "  acc=100.0%  nLps=2048 acc=100.0%  perf=        7/        1=     7.00 clocks"},
        {MR_METHOD_STAT, 0.0, "nCalls=12", 0, 4, "  nCalls=12   perf=        0/        4=          clocks"},
        {MR_METHOD_LOOP, 0.0, "", 5, 0, "              perf=        5/        0=          clocks"},
    };
    Job job;
    for (const auto& row : rows) {
        job.m_tool.m_method = row.method;
        job.m_tool.m_accuracy = row.accuracy;
        job.setTimingResult(row.clocks, row.comment);
        job.divisor = row.divisor;
        EXPECT_EQ(str(job.testResultString()), row.line);
    }
}

TEST(TestOutput, LineOfTheTable) {
    const ScriptedClock clock;
    static constexpr struct {
        double clocks, divisor, flops;
        bool hot;
        const char* line;
    } rows[] = {
        {2000, 32, 0, false, "job,-,c,62.5,e,2,-,-\n"},
        {2000, 32, 64, true, "job,-,c,62.5,e,2,32.0,Hot\n"},
        {0, 32, 64, false, "job,-,c,-,e,0,-,-\n"},
        {2000, 0, 0, false, "job,-,c,-,e,2,-,-\n"},
        {1234.5, 1, 0, false, "job,-,c,1234,e,1.23,-,-\n"},
    };
    for (const auto& row : rows) {
        CapturedTable table;
        Job job;
        job.setTimingResult(row.clocks, "c");
        job.divisor = row.divisor;
        job.flops = row.flops;
        job.hot = [&row] { return row.hot; };
        job.putTableResult(MR_OK);
        EXPECT_EQ(table.text(), row.line);
    }
}

mrResult oldEntry(mrTool&, int) { return MR_OK; }

TEST(TestOutput, SaysByWhatItMeasures) {
    const FuncLoop loop = ScriptedEntries::loop;
    const FuncStat stat = ScriptedEntries::stat;
    const FuncCall call = ScriptedEntries::call;
    const FuncCall init = ScriptedEntries::init;
    const struct {
        FuncCall call, init;
        FuncLoop loop;
        FuncStat stat;
        FuncOld old;
        int method;
        bool callMode, setAndUse;
        const char* entries;
        const char* measured;
    } rows[] = {
        {call, init, loop, stat, nullptr, 0, false, false, "loopMethod, statMethod, funcCall, funcInit",
         "loopMethod"},
        {call, nullptr, loop, stat, nullptr, 2, false, false, "loopMethod, statMethod, funcCall",
         "statMethod"},
        {call, nullptr, loop, stat, nullptr, 1, true, false, "loopMethod, statMethod, funcCall",
         "loopMethod"},
        {nullptr, nullptr, loop, stat, nullptr, 3, true, false, "loopMethod, statMethod", "statMethod"},
        {nullptr, nullptr, loop, nullptr, nullptr, 2, false, false, "loopMethod", "loopMethod"},
        {nullptr, nullptr, nullptr, stat, nullptr, 0, false, false, "statMethod", "statMethod"},
        {call, nullptr, nullptr, nullptr, nullptr, 2, false, false, "funcCall", "funcCall"},
        {call, nullptr, loop, stat, nullptr, 0, false, true, "loopMethod, statMethod, funcCall",
         "funcCall with Set&Use"},
        {nullptr, nullptr, loop, nullptr, nullptr, 0, false, true, "loopMethod", "loopMethod"},
        {call, nullptr, loop, nullptr, oldEntry, 0, false, true, "loopMethod, oldMethod, funcCall",
         "oldMethod"},
    };
    for (const auto& row : rows) {
        mrTest test(row.call, row.init, row.loop, row.stat, "f", "f.cpp", "Suite//ZY_REG_I");
        test.m_funcOld = row.old;
        test.m_tool.m_method = row.method;
        test.m_tool.m_callMode = row.callMode;
        test.m_tool.m_setAndUse = row.setAndUse;
        EXPECT_EQ(str(test.regInfo()), std::string("   Test has been registered by ZY_REG_I macro with ") +
                                           row.entries + ".\n   " + row.measured +
                                           " is called for measuring.");
    }
    mrTest none(static_cast<FuncOld>(nullptr), "f", "f.cpp", "Suite");
    EXPECT_EQ(str(none.regInfo()),
              "   Test has been registered without any function to call.\n"
              " No standard timing method is available");
}

TEST(TestOutput, CacheStateStandsBeforeParametersAndComment) {
    CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
    Job job;
    mrIterator<int> size;
    size.setName("size");
    size.add(16);
    mrTest::m_cache = true;
    job.regCacheParm(size, nullptr, nullptr);
    mrTest::m_cache = false;
    ASSERT_NE(job.m_pCacheIter, nullptr);
    EXPECT_TRUE(job.canContinue());
    job.setTimingResult(1.0, "nLps=1");
    EXPECT_EQ(str(job.getComment()), "inCache nLps=1");
    job.putTextParms(MSG_PERF);
    EXPECT_EQ(output.text(), "inCache:size=16 \n");
    job.m_deprecated = true;
    EXPECT_EQ(str(job.getComment()), "deprecated");
}

/// Of a function of the library, with floating-point operations.
class LibraryJob : public zyTest {
  public:
    explicit LibraryJob(const char* name, const char* mark = "TimsJob//MR_REG_MR_")
        : zyTest(nullptr, nullptr, ScriptedEntries::loop, nullptr, name, "perf/p_job.cpp", mark) {}
    double getFlops() override { return 2.0; }
};

TEST(LibraryTest, KnowsItsFunction) {
    static constexpr struct {
        const char* name;
        bool isFloat;
        const char* cells;
    } rows[] = {
        {"zylsFind_8u", false, "zylsFind,8u,-\n"},
        {"zylsAdd_32f_I", true, "zylsAdd,32f,I\n"},
        {"zylsCopy_64f", true, "zylsCopy,64f,-\n"},
        {"zylsCopy_32s", false, "zylsCopy,32s,-\n"},
    };
    for (const auto& row : rows) {
        CapturedTable table;
        LibraryJob job(row.name);
        EXPECT_EQ(job.isFloatFunction(), row.isFloat) << row.name;
        job.funcToCstrm();
        g_cstrm.lineOut(3);
        EXPECT_EQ(table.text(), row.cells);
    }
    EXPECT_EQ(str(LibraryJob("zylsFind_8u").regInfo()),
              "   Test has been registered by ZY_REG_MR_ macro with loopMethod.\n"
              "   loopMethod is called for measuring.");
    EXPECT_EQ(str(LibraryJob("zylsFind_8u", "TimsJob//ZY_REG").regInfo()),
              "   Test has been registered by ZY_REG macro with loopMethod.\n"
              "   loopMethod is called for measuring.");
}

TEST(LibraryTest, ListsTheDataBlocks) {
    LibraryJob job("zylsFind_8u");
    void* buffer = mrTest::allocate(2, 0);
    static_cast<unsigned char*>(buffer)[0] = 0x12;
    static_cast<unsigned char*>(buffer)[1] = 0xAB;
    void* part = mrTest::allocate(2, 0, MEM_OBJECT_IS_SUBOBJECT);
    {
        CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
        EXPECT_EQ(job.printAllMemoryBlocks("here"), 0);
        EXPECT_EQ(output.text(), "");
    }
    CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF | MSG_DATA);
    EXPECT_EQ(job.printAllMemoryBlocks("here"), 1);
    const std::string text = output.text();
    EXPECT_TRUE(
        text.starts_with("======== OBJECTS OUTPUT START === here === OBJECTS OUTPUT START ========\n"
                         "======== Object 1: \n"))
        << text;
    EXPECT_TRUE(text.ends_with("\n\n======== OBJECTS OUTPUT END === here === OBJECTS OUTPUT END ========\n"))
        << text;
    mrTest::deallocate(part);
    mrTest::deallocate(buffer);
}

}  // namespace
