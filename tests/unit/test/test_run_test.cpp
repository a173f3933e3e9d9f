#include <gtest/gtest.h>

#include "job.h"
#include "output/mrtrace.h"
#include "support/temp_folder.h"
#include "test/mrmemory.h"

namespace {

constexpr OutputLevel Err = MSG_ERR;
constexpr OutputLevel Warn = MSG_ERR | MSG_WARN;
constexpr OutputLevel Perf = MSG_ERR | MSG_WARN | MSG_PERF;

void badStore() {
    volatile char* address = nullptr;
    asm volatile("movb $0, (%0)" : : "r"(address) : "memory");
}

const std::string OneRound = "begin canStart init const time flush flushStart end";
const std::string TwoRounds = "begin canStart init const time flush init time flush flushStart end";
const std::string NoRound = "begin canStart flushStart end";
const std::string FirstLine = "job,1,nLps=1,100,e,0.1,-,-\n";
const std::string BothLines = FirstLine + "job,2,nLps=1,100,e,0.1,-,-\n";
const std::string Figures = "  nLps=1      perf=      100/        1=      100 clocks\n";

struct RunCase {
    const char* what;
    void (*prepare)(JobRun& run);
    OutputLevel level;
    std::string printed;
    mrResult result;
    std::string steps;
    std::string table;
};

const RunCase RunCases[] = {
    {"all combinations", [](JobRun&) {}, Warn, "", MR_OK, TwoRounds, BothLines},
    {"no parameter", [](JobRun& run) { run.job.parms.clear(); }, Warn, "", MR_OK, OneRound,
     "job,-,nLps=1,100,e,0.1,-,-\n"},
    {"on the console", [](JobRun&) {}, Perf,
     " size = 1; 2\n"
     "   Test has been registered by MR_REG macro with loopMethod, funcInit.\n"
     "   loopMethod is called for measuring.\n"
     "size=1 \n" +
         Figures + "size=2 \n" + Figures,
     MR_OK, TwoRounds, BothLines},
    {"can't start", [](JobRun& run) { run.job.starts = [] { return false; }; }, Err,
     "-- Can't start timing\n", MR_DATA_FAIL, NoRound, ""},
    {"no value", [](JobRun& run) { run.size.clear(); }, Err, "-- One of argument list for timing is empty\n",
     MR_DATA_FAIL, NoRound, ""},
    {"no data at all", [](JobRun& run) { run.job.data = [] { return false; }; }, Err,
     "-- Fail while initialization of function data\n", MR_DATA_FAIL,
     "begin canStart init flush init flush flushStart end", ""},
    {"data for one combination", [](JobRun& run) { run.job.data = [&run] { return run.size.value() == 1; }; },
     Warn, "", MR_OK, "begin canStart init const time flush init flush flushStart end", FirstLine},
    {"nothing to call", [](JobRun& run) { run.job.m_funcLoop = nullptr; }, Err,
     "-- Internal test problem: runTiming() function returns undefined result\n", MR_FAIL, OneRound, ""},
    {"fail", [](JobRun& run) { run.results = {MR_LIB_FAIL}; }, Err,
     "-- lib function fail on test parameters:\nsize=1 \n", MR_LIB_FAIL, OneRound, ""},
    {"note, then none",
     [](JobRun& run) {
         run.results = {MR_LIB_NOTE, MR_OK};
     },
     Warn, "-- lib function note on test parameters:\nsize=1 \n-- performance:\n" + Figures, MR_LIB_NOTE,
     TwoRounds, BothLines},
    {"note where only fails show", [](JobRun& run) { run.results = {MR_LIB_NOTE}; }, Err, "", MR_OK,
     TwoRounds, BothLines},
    {"note, then fail",
     [](JobRun& run) {
         run.results = {MR_LIB_NOTE, MR_ACCURACY_FAIL};
     },
     Err, "-- accuracy fail on test parameters:\nsize=2 \n", MR_ACCURACY_FAIL, TwoRounds, FirstLine},
    {"bad status",
     [](JobRun& run) { run.onCall = [&run](int) { setFlagsSSX(run.size.value() == 1 ? 0x8 : 0); }; }, Warn,
     "-- Status    SSX: ?Overflow \n"
     "-- modified control status on test parameters:\nsize=1 \n-- performance:\n" +
         Figures,
     MR_BAD_STATUS, TwoRounds, BothLines},
    {"bad status where only fails show", [](JobRun& run) { run.onCall = [](int) { raiseOverflow(); }; }, Err,
     "", MR_OK, TwoRounds, BothLines},
    {"a fail outweighs the bad status",
     [](JobRun& run) {
         run.onCall = [](int) { raiseOverflow(); };
         run.results = {MR_DATA_FAIL};
     },
     Err, "-- test data fail on test parameters:\nsize=1 \n", MR_DATA_FAIL, OneRound, ""},
    {"refused data",
     [](JobRun& run) { run.job.data = []() -> bool { throw mrException(mrString("no such data")); }; }, Err,
     "--ZYL. Exception: no such data in initData\n", MR_EXCEPTION, "begin canStart init end", ""},
    {"not made for the cache", [](JobRun&) { mrTest::m_cache = true; }, Err,
     "-- Can't run In-Outof-Cache timing: no program support for function job\n", MR_NOT_RUN, NoRound, ""},
    {"names are all that is asked for", [](JobRun&) { mrSession::m_nameExit = true; }, Err, "", MR_OK,
     NoRound, ""},
    {"no line is hot",
     [](JobRun& run) {
         mrTest::m_hot = 2;
         run.job.hot = [] { return false; };
     },
     Err, "-- Fail while initialization of function data\n", MR_DATA_FAIL,
     "begin canStart init const flush init flush flushStart end", ""},
    {"a hot line among others",
     [](JobRun& run) {
         mrTest::m_hot = 2;
         run.job.m_info.m_regMark = "";
         run.job.hot = [&run] { return run.size.value() == 2; };
     },
     Perf,
     " size = 1; 2\n"
     "   Test has been registered with loopMethod, funcInit.\n"
     "   loopMethod is called for measuring.\n"
     "size=1 \n"
     "  measuring is omitted: not hot line\n"
     "size=2 \n" +
         Figures,
     MR_OK, "begin canStart init const flush init time flush flushStart end",
     "job,2,nLps=1,100,e,0.1,-,Hot\n"},
};

TEST(TestRun, GoesThroughItsSteps) {
    for (const RunCase& row : RunCases) {
        SCOPED_TRACE(row.what);
        JobRun run;
        row.prepare(run);
        EXPECT_EQ(run.printed(row.level), row.printed);
        EXPECT_EQ(run.result, row.result);
        EXPECT_EQ(run.job.m_result, row.result);
        EXPECT_EQ(run.job.steps, row.steps);
        EXPECT_EQ(run.table.text(), row.table);
        const bool badStatus = row.printed.find("Status    SSX") != std::string::npos;
        EXPECT_EQ(run.job.m_badSSX || row.level == Err, badStatus || row.level == Err);
        EXPECT_FALSE(run.job.m_bad87);
    }
}

TEST(TestRun, SignalEndsTheTestAndNotTheRun) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the jump leaks the texts of the frames that it leaves";
#endif
    const struct {
        void (*prepare)(JobRun& run);
        const char* where;
        const char* steps;
    } rows[] = {
        {[](JobRun& run) { run.onCall = [](int) { badStore(); }; }, "zylFunctionCalls",
         "begin canStart init const time end"},
        {[](JobRun& run) {
             run.job.starts = [] {
                 badStore();
                 return true;
             };
         },
         "canStart", "begin canStart end"},
        // In the middle of a table line, whose cells must not reach the line of another test.
        {[](JobRun& run) {
             run.job.unit = [] {
                 badStore();
                 return mrString();
             };
         },
         "resultToCstrm", "begin canStart init const time end"},
    };
    for (int round = 0; round < 2; ++round) {
        for (const auto& row : rows) {
            JobRun run;
            row.prepare(run);
            EXPECT_EQ(run.printed(Warn),
                      std::string("--ZYL. Signal: Illegal storage access. in ") + row.where + "\n");
            EXPECT_EQ(run.result, MR_EXCEPTION);
            EXPECT_EQ(run.job.steps, row.steps);
            EXPECT_EQ(run.table.text(), "");
            JobRun next;
            EXPECT_EQ(next.printed(Warn), "");
            EXPECT_EQ(next.result, MR_OK);
            EXPECT_EQ(next.table.text(), BothLines);
        }
    }
    g_trace.clear();
}

TEST(TestRun, OtherExceptionsPass) {
    JobRun run;
    run.job.data = []() -> bool { throw 5; };
    EXPECT_THROW(run.printed(Warn), int);
    g_trace.clear();
}

TEST(TestRun, ShowsTheTimingAtTheWarningLevel) {
    static constexpr struct {
        OutputLevel level;
        const char* printed;
    } rows[] = {{Err, ""}, {Warn, "timing\ntiming\n"}, {MSG_WARN, ""}};
    for (const auto& row : rows) {
        JobRun run;
        run.job.timing = [] {
            g_ostrm << MSG_PERF << "timing\n" << MSG_END;
            return MR_OK;
        };
        EXPECT_EQ(run.printed(row.level), row.printed);
    }
}

TEST(TestRun, NotesLinesOfEqualParameters) {
    static constexpr struct {
        OutputLevel level;
        mrResult result;
        const char* printed;
    } rows[] = {
        {Err, MR_OK, ""},
        {Warn, MR_DATA_NOTE, "-- Notice: duplicate lines in performance table (csv-file)\n"},
    };
    for (const auto& row : rows) {
        JobRun run;
        run.size.add(1);
        const std::string text = run.printed(row.level);
        const std::string tail = row.printed;
        EXPECT_EQ(text.substr(text.size() - std::min(text.size(), tail.size())), tail);
        EXPECT_EQ(run.result, row.result);
    }
}

TEST(TestRun, OldTextsOfValuesFollowInLinesOfTheirOwn) {
    JobRun run;
    run.size.addDeprecated(1, "one");
    EXPECT_EQ(run.printed(Warn), "");
    EXPECT_EQ(run.table.text(), BothLines + "job,one,deprecated,100,e,0.1,-,-\n");
    EXPECT_EQ(run.result, MR_OK);
}

TEST(TestRun, LastParameterTurnsFastest) {
    JobRun run;
    mrIterator<int> fast;
    fast.setName("fast");
    fast.add(7);
    fast.add(8);
    run.job.parms.append(&fast);
    std::string walk;
    run.job.timing = [&] {
        walk += str(run.size.valueString() + fast.valueString()) + " ";
        return MR_OK;
    };
    run.printed(Warn);
    EXPECT_EQ(walk, "17 18 27 28 ");
}

TEST(TestRun, EachCombinationStartsFromTheDefaultFloatState) {
    JobRun run;
    std::string words;
    run.job.timing = [&words] {
        words += str(ts87Base::strCW(controlWord87()) + tsSSXBase().strCW(wordSSX()));
        zylFpuSsx4TS(1, 0xC3F, 0xF3F);
        zylFpuSsx4TS(5, 0x7F80, 0xFF80);
        return MR_OK;
    };
    run.printed(Warn);
    const std::string defaults =
        "Near 53 Invalid Denormal Overflow Underflow Inexact "
        "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero ";
    EXPECT_EQ(words, defaults + defaults);
}

TEST(TestRun, TakesTheSettingsOfTheSession) {
    JobRun run;
    g_tool.setMethodLoop(3);
    run.printed(Warn);
    EXPECT_EQ(run.log, "L3 L3 ");
    g_tool.setMethodLoop(2);
    run.log.clear();
    run.job.m_info.m_regMark = "MR_REG_Ibs";
    run.printed(Warn);
    EXPECT_EQ(run.log, "I L2 I L2 ");
}

TEST(TestRun, MayBeLeftOutByTheIniFile) {
    const TempFolder folder;
    const mrString file = folder.file("a.ini", "[other]\n");
    JobRun run;
    ASSERT_TRUE(g_istrm.setIniFile(file, false));
    mrTest::m_pressing = true;
    CapturedOutput output(Perf);
    EXPECT_EQ(run.job.run(), MR_NOT_RUN);
    EXPECT_EQ(run.job.m_result, MR_OK) << "so the list of tests does not count it";
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(run.job.steps, "");
}

TEST(TestRun, OnlyWritesTheIniFileInUpdateMode) {
    const TempFolder folder;
    const mrString file = folder.path("new.ini").c_str();
    JobRun run;
    ASSERT_TRUE(g_istrm.setIniFile(file, true));
    run.printed(Warn);
    EXPECT_EQ(run.result, MR_OK);
    EXPECT_EQ(run.job.steps, NoRound);
    g_istrm.deleteIniFile();
    const std::string content = folder.content("new.ini");
    EXPECT_NE(content.find("[job]"), std::string::npos);
    EXPECT_NE(content.find("size"), std::string::npos);
}

TEST(TestRun, StartAndStopRegistersParametersAlone) {
    JobRun run;
    CapturedOutput output(Perf);
    run.job.starts = [] {
        g_ostrm << MSG_WARN << "not shown\n" << MSG_END;
        return true;
    };
    run.job.startAndStop();
    EXPECT_EQ(run.job.steps, NoRound);
    EXPECT_EQ(run.job.m_parms.size(), 1);
    run.job.starts = []() -> bool { throw mrException(mrString("no file")); };
    run.job.startAndStop();
    EXPECT_EQ(output.text(), "--ZYL. Exception: no file in startAndStop of job test\n");
    EXPECT_EQ(g_ostrm.outLevel(), Perf);
}

TEST(TestInfo, IsCutAtTheSlashes) {
    static constexpr const char* rows[][4] = {
        {"TimsFind//ZY_REG", "TimsFind", "", "ZY_REG"},
        {"a/b/c/d", "a", "b", "c/d"},
        {"a/b", "a", "b", ""},
        {"a", "a", "", ""},
        {"/", "", "", ""},
    };
    for (const auto& row : rows) {
        const Job job("name", row[0]);
        EXPECT_EQ(str(job.m_info.m_suite), row[1]);
        EXPECT_EQ(str(job.m_info.m_group), row[2]);
        EXPECT_EQ(str(job.m_info.m_regMark), row[3]);
        EXPECT_EQ(str(job.m_fileName), "p_job.cpp");
    }
}

TEST(TestData, BlocksStartAtShiftsThatWrap) {
    const int before = mrTest::m_vectorShift;
    mrTest::m_vectorShift = 0;
    mrTest::m_vectorNum = 0;
    for (int block = 1; block <= 65; ++block) {
        void* memory = mrTest::allocate(16, 0);
        EXPECT_EQ(mrTest::m_vectorShift, block % 64 * 512);
        EXPECT_EQ(mrTest::m_vectorNum, block);
        mrTest::deallocate(memory);
    }
    mrTest::m_vectorShift = before;
    mrTest::m_vectorNum = 0;
}

}  // namespace
