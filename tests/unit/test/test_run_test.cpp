#include "job.h"
#include "output/mrtrace.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

constexpr OutputLevel Err = MSG_ERR;
constexpr OutputLevel Warn = MSG_ERR | MSG_WARN;
constexpr OutputLevel Perf = MSG_ERR | MSG_WARN | MSG_PERF;

const std::string First = "job,1,nLps=1,100,e,0.1,-,-\n";
const std::string Both = First + "job,2,nLps=1,100,e,0.1,-,-\n";
const std::string Figures = "  nLps=1      perf=      100/        1=      100 clocks\n";
const std::string NoteFigures = " on test parameters:\nsize=1 \n-- performance:\n" + Figures;

const struct {
    const char* what;
    void (*prepare)(JobRun& run);
    OutputLevel level;
    std::string printed;
    mrResult result;
    std::string steps;
    std::string table;
} Cases[] = {
    {"all combinations", [](JobRun&) {}, Warn, "", MR_OK, "bsictfitfFe", Both},
    {"no parameter", [](JobRun& run) { run.job.parms.clear(); }, Warn, "", MR_OK, "bsictfFe",
     "job,-,nLps=1,100,e,0.1,-,-\n"},
    {"can't start", [](JobRun& run) { run.job.starts = [] { return false; }; }, Err,
     "-- Can't start timing\n", MR_DATA_FAIL, "bsFe", ""},
    {"no value", [](JobRun& run) { run.size.clear(); }, Err, "-- One of argument list for timing is empty\n",
     MR_DATA_FAIL, "bsFe", ""},
    {"no data", [](JobRun& run) { run.job.data = [] { return false; }; }, Err,
     "-- Fail while initialization of function data\n", MR_DATA_FAIL, "bsififFe", ""},
    {"data for one", [](JobRun& run) { run.job.data = [&run] { return run.size.value() == 1; }; }, Warn, "",
     MR_OK, "bsictfifFe", First},
    {"nothing to call", [](JobRun& run) { run.job.m_funcLoop = nullptr; }, Err,
     "-- Internal test problem: runTiming() function returns undefined result\n", MR_FAIL, "bsictfFe", ""},
    {"fail", [](JobRun& run) { run.results = {MR_LIB_FAIL}; }, Err,
     "-- lib function fail on test parameters:\nsize=1 \n", MR_LIB_FAIL, "bsictfFe", ""},
    {"note", [](JobRun& run) { run.answer(MR_LIB_NOTE, MR_OK); }, Warn, "-- lib function note" + NoteFigures,
     MR_LIB_NOTE, "bsictfitfFe", Both},
    {"note, then fail", [](JobRun& run) { run.answer(MR_NOTE, MR_ACCURACY_FAIL); }, Err,
     "-- accuracy fail on test parameters:\nsize=2 \n", MR_ACCURACY_FAIL, "bsictfitfFe", First},
    {"bad status", [](JobRun& run) { run.onCall = [&](int) { setFlagsSSX(run.size.value() == 1 ? 8 : 0); }; },
     Warn, "-- Status    SSX: ?Overflow \n-- modified control status" + NoteFigures, MR_BAD_STATUS,
     "bsictfitfFe", Both},
    {"bad status not shown", [](JobRun& run) { run.onCall = [](int) { setFlagsSSX(8); }; }, Err, "", MR_OK,
     "bsictfitfFe", Both},
    {"refused data",
     [](JobRun& run) { run.job.data = []() -> bool { throw mrException(mrString("no such data")); }; }, Err,
     "--ZYL. Exception: no such data in initData\n", MR_EXCEPTION, "bsie", ""},
    {"not made for the cache", [](JobRun&) { mrTest::m_cache = true; }, Err,
     "-- Can't run In-Outof-Cache timing: no program support for function job\n", MR_NOT_RUN, "bsFe", ""},
    {"equal parameters not shown", [](JobRun& run) { run.size.clear(), run.size.add(1), run.size.add(1); },
     Err, "", MR_OK, "bsictfitfFe", First + First},
    {"old text of a value", [](JobRun& run) { run.size.addDeprecated(1, "one"); }, Warn, "", MR_OK,
     "bsictfitfFe", Both + "job,one,deprecated,100,e,0.1,-,-\n"},
    {"one hot line",
     [](JobRun& run) {
         mrTest::m_hot = 2;
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
        EXPECT_EQ(run.job.m_badSSX, std::string(row.what).starts_with("bad status"));
    }
}

TEST(TestRun, SignalEndsTheTestAndNotTheRun) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the jump leaks the texts of the frames that it leaves";
#endif
    static const struct {
        void (*prepare)(JobRun& run);
        const char* where;
        const char* steps;
    } rows[] = {
        {[](JobRun& run) { run.onCall = [](int) { badStore(); }; }, "zylFunctionCalls", "bsicte"},
        {[](JobRun& run) { run.job.starts = [] { return badStore(), true; }; }, "canStart", "bse"},
        // In the middle of the second line of a table, whose cells must not reach the first one of a test.
        {[](JobRun& run) {
             run.job.unit = [&run] { return run.size.value() == 2 ? (badStore(), "") : "e"; };
         },
         "resultToCstrm", "bsictfite"},
    };
    for (const auto& row : rows) {
        for (int round = 0; round < 2; ++round) {
            JobRun run;
            row.prepare(run);
            EXPECT_EQ(run.printed(Warn),
                      std::string("--ZYL. Signal: Illegal storage access. in ") + row.where + "\n");
            EXPECT_EQ(run.result, MR_EXCEPTION);
            EXPECT_EQ(run.job.steps, row.steps);
            JobRun next;
            EXPECT_EQ(next.printed(Warn), "");
            EXPECT_EQ(next.table.text(), Both);
        }
    }
    g_trace.clear();
}

TEST(TestRun, ShowsTheTimingAtTheWarningLevelAlone) {
    for (const OutputLevel level : {Err, Warn, OutputLevel{MSG_WARN}}) {
        JobRun run;
        run.job.timing = [] {
            g_ostrm << MSG_PERF << "timing\n" << MSG_END;
            return MR_OK;
        };
        EXPECT_EQ(run.printed(level), level == Warn ? "timing\ntiming\n" : "");
    }
}

TEST(TestRun, NotesLinesOfEqualParameters) {
    JobRun run;
    run.size.add(1);
    EXPECT_TRUE(run.printed(Warn).ends_with(
        " have identical parameters\n-- Notice: duplicate lines in performance table (csv-file)\n"));
    EXPECT_EQ(run.result, MR_DATA_NOTE);
}

TEST(TestRun, LastParameterTurnsFastest) {
    JobRun run;
    mrIterator<int> fast(run.size);
    run.job.parms.append(&fast);
    std::string walk;
    run.job.timing = [&] {
        walk += str(run.size.valueString() + fast.valueString()) + " ";
        return MR_OK;
    };
    run.printed(Warn);
    EXPECT_EQ(walk, "11 12 21 22 ");
}

TEST(TestRun, TakesTheSettingsOfTheSession) {
    JobRun run;
    g_tool.setMethodLoop(3);
    run.printed(Warn);
    EXPECT_EQ(run.called(), "L3*2 ");
    run.job.m_info.m_regMark = "MR_REG_Ibs";
    // Whatever a test leaves in the registers, the next combination starts from the defaults.
    run.onCall = [](int) {
        EXPECT_EQ(controlWord87() & 0xF3F, 0x23BU);
        EXPECT_EQ(wordSSX(), 0x9F80U);
        zylFpuSsx4TS(1, 0xC3F, 0xF3F);
        zylFpuSsx4TS(5, 0x7F80, 0xFF80);
    };
    run.printed(Warn);
    EXPECT_EQ(run.called(), "I L3 I L3 ");
}

TEST(TestRun, ObeysTheIniFile) {
    const TempFolder folder;
    JobRun run;
    ASSERT_TRUE(g_istrm.setIniFile(folder.file("a.ini", "[other]\n"), false));
    mrTest::m_pressing = true;
    EXPECT_EQ(run.printed(Perf), "");
    EXPECT_EQ(run.result, MR_NOT_RUN);
    EXPECT_EQ(run.job.m_result, MR_OK) << "so the list of tests does not count it";
    EXPECT_EQ(run.job.steps, "");
    // A file to be written gets the section and the values, and nothing is measured.
    mrTest::m_pressing = false;
    ASSERT_TRUE(g_istrm.setIniFile(folder.path("new.ini").c_str(), true));
    run.printed(Warn);
    EXPECT_EQ(run.result, MR_OK);
    EXPECT_EQ(run.job.steps, "bsFe");
    g_istrm.deleteIniFile();
    EXPECT_NE(folder.content("new.ini").find("[job]\nsize"), std::string::npos) << folder.content("new.ini");
}

TEST(TestRun, StartAndStopRegistersParametersAlone) {
    JobRun run;
    CapturedOutput output(Perf);
    run.job.starts = [] {
        g_ostrm << MSG_WARN << "not shown\n" << MSG_END;
        return true;
    };
    run.job.startAndStop();
    EXPECT_EQ(run.job.steps, "bsFe");
    EXPECT_EQ(run.job.m_parms.size(), 1);
    run.job.starts = []() -> bool { throw mrException(mrString("no file")); };
    run.job.startAndStop();
    EXPECT_EQ(output.text(), "--ZYL. Exception: no file in startAndStop of job test\n");
    EXPECT_EQ(g_ostrm.outLevel(), Perf);
}

}  // namespace
