#include "job.h"
#include "stream/mrtrace.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

constexpr OutputLevel Err = MSG_ERR;
constexpr OutputLevel Warn = MSG_ERR | MSG_WARN;
constexpr OutputLevel Perf = MSG_ERR | MSG_WARN | MSG_PERF;

const std::string First = "job,1,nLps=1,100,e,0.1,-,-\n";
const std::string Both = First + "job,2,nLps=1,100,e,0.1,-,-\n";
const std::string Figures = "  nLps=1      perf=      100/        1=      100 clocks\n";

const struct {
    const char* what;
    void (*prepare)(JobRun& run);
    OutputLevel level;
    std::string printed;
    mrResult result;
    std::string steps;
    std::string table;
} Cases[] = {

    {"can't start", [](JobRun& run) { run.job.starts = [] { return false; }; }, Err,
     "-- Can't start timing\n", MR_DATA_FAIL, "bsFe", ""},
    {"no data", [](JobRun& run) { run.job.data = [] { return false; }; }, Err,
     "-- Fail while initialization of function data\n", MR_DATA_FAIL, "bsififFe", ""},
    {"nothing to call", [](JobRun& run) { run.job.m_funcLoop = nullptr; }, Err,
     "-- Internal test problem: runTiming() function returns undefined result\n", MR_FAIL, "bsictfFe", ""},

    {"note, then fail",
     [](JobRun& run) {
         run.results = {MR_NOTE, MR_ACCURACY_FAIL};
     },
     Err, "-- accuracy fail on test parameters:\nsize=2 \n", MR_ACCURACY_FAIL, "bsictfitfFe", First},
    {"bad status", [](JobRun& run) { run.onCall = [&](int) { setFlagsSSX(run.size.value() == 1 ? 8 : 0); }; },
     Warn,
     "-- Status    SSX: ?Overflow \n-- modified control status on test parameters:\nsize=1 \n"
     "-- performance:\n" +
         Figures,
     MR_BAD_STATUS, "bsictfitfFe", Both},
    {"bad status not shown", [](JobRun& run) { run.onCall = [](int) { setFlagsSSX(8); }; }, Err, "", MR_OK,
     "bsictfitfFe", Both},
    {"refused data",
     [](JobRun& run) { run.job.data = []() -> bool { throw mrException(mrString("no such data")); }; }, Err,
     "--ZYL. Exception: no such data in initData\n", MR_EXCEPTION, "bsie", ""},
    {"not made for the cache", [](JobRun&) { mrTest::m_cache = true; }, Err,
     "-- Can't run In-Outof-Cache timing: no program support for function job\n", MR_NOT_RUN, "bsFe", ""},
    {"old text of a value", [](JobRun& run) { run.size.addDeprecated(1, "one"); }, Warn, "", MR_OK,
     "bsictfitfFe", Both + "job,one,deprecated,100,e,0.1,-,-\n"},
    {"one hot line",
     [](JobRun& run) {
         mrTest::m_hot = MR_HOT_ONLY;
         run.job.hot = [&run] { return run.size.value() == 2; };
     },
     Perf,
     " size = 1; 2\n"
     "   Test has been registered by MR_REG macro with loopMethod, funcInit.\n"
     "   loopMethod is called for measuring.\n"
     "size=1 \n  measuring is omitted: not hot line\nsize=2 \n" +
         Figures,
     MR_OK, "bsicfitfFe", "job,2,nLps=1,100,e,0.1,-,Hot\n"},
};

TEST(TestRun, GoesThroughItsSteps) {
    for (const auto& row : Cases) {
        SCOPED_TRACE(row.what);
        JobRun run;
        row.prepare(run);
        EXPECT_EQ(run.printed(row.level), row.printed);
        EXPECT_EQ(run.result, row.result);
        EXPECT_EQ(run.job.m_result, row.result);
        EXPECT_EQ(run.job.steps, row.steps);
        EXPECT_EQ(run.table.text(), row.table);
    }
}

TEST(TestRun, SignalEndsTheTestAndNotTheRun) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the jump leaks the texts of the frames that it leaves";
#endif

    {  // In the middle of the second line of a table, whose cells must not reach the first one of a test.
        JobRun run;
        run.job.hot = [&run] { return run.size.value() == 2 && (badStore(), true); };
        EXPECT_EQ(run.printed(Warn), "--ZYL. Signal: Illegal storage access. in resultToCstrm\n");
        EXPECT_EQ(run.result, MR_EXCEPTION);
        EXPECT_EQ(run.job.steps, "bsictfite");
    }
    JobRun next;
    EXPECT_EQ(next.printed(Warn), "");
    EXPECT_EQ(next.table.text(), Both);
    g_trace.clear();
}

TEST(TestRun, ShowsTheTimingAtTheWarningLevelAlone) {
    for (const OutputLevel level : {Err, Warn, OutputLevel{MSG_WARN}}) {
        JobRun run;
        run.onCall = [](int) { g_ostrm << MSG_PERF << "timing\n" << MSG_END; };
        EXPECT_EQ(run.printed(level), level == Warn ? "timing\ntiming\n" : "");
    }
}

TEST(TestRun, NotesLinesOfEqualParameters) {
    JobRun run;
    run.size.add(1);
    EXPECT_TRUE(run.printed(Warn).ends_with(
        " have identical parameters\n-- Notice: duplicate lines in performance table (csv-file)\n"));
    EXPECT_EQ(run.result, MR_DATA_NOTE);
    run.printed(Err);
    EXPECT_EQ(run.result, MR_OK) << "a note that is not shown does not count";
}

TEST(TestRun, IbsTestsAreInitialisedForEachTiming) {
    JobRun run;
    run.job.m_info.m_regMark = "MR_REG_Ibs";
    run.printed(Warn);
    EXPECT_EQ(run.called(), "I L1 I L1 ");
}

TEST(TestRun, IsLeftOutByTheIniFile) {
    const TempFolder folder;
    JobRun run;
    ASSERT_TRUE(g_istrm.setIniFile(folder.file("a.ini", "[other]\n"), false));
    mrTest::m_pressing = true;
    EXPECT_EQ(run.printed(Perf), "");
    mrTest::m_pressing = false;
    g_istrm.deleteIniFile();
    EXPECT_EQ(run.result, MR_NOT_RUN);
    EXPECT_EQ(run.job.m_result, MR_OK) << "so the list of tests does not count it";
    EXPECT_EQ(run.job.steps, "");
}

TEST(TestRun, StartAndStopRegistersParametersAlone) {
    JobRun run;
    CapturedOutput output(Perf);
    run.job.starts = []() -> bool {
        g_ostrm << MSG_WARN << "not shown\n" << MSG_END;
        throw mrException(mrString("no file"));
    };
    run.job.startAndStop();
    EXPECT_EQ(output.text(), "--ZYL. Exception: no file in startAndStop of job test\n");
    EXPECT_EQ(g_ostrm.outLevel(), Perf);
}

}  // namespace
