#include "mr.h"
#include "session_fixture.h"
#include "timing/mrpriority.h"

namespace {

using Options = SessionTest;

struct InfoRow {
    char key;
    const char* arg;
    const char* text;
};

const char* const NotBound = "ignored: <zylcore> is not included before <zy> in test files";

const InfoRow infoRows[] = {
    {'B', "", "batch mode"},
    {'A', "Timing", "asktiming method from console"},
    {'A', "ParamsMisalign", "askcommon parameters, data misalignment from console"},
    {'A', "", "asktiming method, common parameters, data misalignment, each test parameters from console"},
    {'A', "params",
     "asktiming method, common parameters, data misalignment, each test parameters from console"},
    {'d', "x=1", "set MR parameter x=1"},
    {'d', "x=", "set MR parameter x="},
    {'d', "", "ignored: empty data argument"},
    {'d', "x", "ignored: incorrect data format"},
    {'d', " =1", "ignored: incorrect data format"},
    {'i', "run", "read from in/run.ini"},
    {'i', "", "read from in/name.ini"},
    {'I', "", "write MR parameters to in/name.ini and exit"},
    {'P', "", "read tested function names from ini-file if any"},
    {'o', "", "write console output to out/name.txt"},
    {'O', "/x", "add console output to /x"},
    {'L', "ERR", "write fails to console"},
    {'L', "W", "write fails,notes to console"},
    {'L', "PERF", "write fails,notes,performance results to console"},
    {'L', "I", "write fails,notes,performance results,measurement process to console"},
    {'L', "M", "write fails,notes,performance results,memory info to console"},
    {'L', "DATA", "write fails,notes,performance results,tracing info,data info to console"},
    {'L', "", "ignored: incorrect level of console output"},
    {'L', "err", "ignored: incorrect level of console output"},
    {'J', "3", "set the number of external measurement loops to (3)"},
    {'J', "", "ignored: incorrect number of external loops"},
    {'r', "t", "write performance result table to out/t.csv"},
    {'R', "t.dat", "add performance result table to out/t.dat"},
    {'q', "", "write function parameter name lines to out/name_name.csv"},
    {'q', "+t", "write function parameter name lines to out/+t_name.csv"},
    {'q', "+", "ignored because -r or -R options are not present in command line"},
    {'Q', "", "ignored because -q option is not present in command line"},
    {'u', "", "write summary table to out/name_sum.csv"},
    {'U', "s", "add summary table to out/s_sum.csv"},
    {'g', "", "create file out/name.end at the end of MR work"},
    {'n', "x", "name ini-file and output files as x.<proper-ext>"},
    {'n', "", "ignored: empty default name"},
    {'p', "/a", "open test data files & ini-file in /a/"},
    {'p', "", "ignored: empty directory name"},
    {'l', "/a/", "open output files in /a/"},
    {'l', "", "ignored: empty directory name"},
    {'f', "x", "test functions containing 'x'"},
    {'f', "=x", "test function equal to 'x'"},
    {'f', "+x", "don't test functions without 'x' in the name"},
    {'f', "-x", "don't test functions containing 'x'"},
    {'f', "", "ignored: empty function pattern"},
    {'f', "-", "ignored: empty function pattern"},
    {'t', "x", "run tests containing 'x'"},
    {'t', "=x", "run test equal to 'x'"},
    {'t', "+x", "don't run tests which doesn't contain 'x'"},
    {'t', "-x", "don't run tests containing 'x'"},
    {'t', "+", "ignored: empty test pattern"},
    {'m', "x", "run tests from file containing 'x'"},
    {'m', "=x", "run test equal from file with exact name 'x'"},
    {'m', "+x", "don't run tests from file which doesn't contain 'x'"},
    {'m', "-x", "don't run tests from file containing 'x' in file name"},
    {'m', "", "ignored: empty file pattern"},
    {'k', "or", "keys composition: -f<conditions> OR -t<conditions> OR -m<conditiosn>"},
    {'k', "x", "keys composition: -f<conditions> AND -t<conditions> AND -m<conditions>"},
    {'k', "", "keys composition: -f<conditions> AND -t<conditions> AND -m<conditions>"},
    {'F', "fun", "start testing from fun function"},
    {'Y', "HIGH", "set high process priority"},
    {'Y', "N", "set normal process priority"},
    {'Y', "LOW", "set low process priority"},
    {'Y', "", "ignored: incorrect process priority value"},
    {'Y', "high", "ignored: incorrect process priority value"},
    {'H', "ONLY", "run tests for hot functions only"},
    {'H', "", "add 'Interest' column to table file"},
    {'W', "", "unmask floating-point exceptions"},
    {'T', "SSE2", "call zylSetCpuFeatures ( Zyl64u SSE2 )"},
    {'T', "sse2", "ignored: incorrect CPU features"},
    {'T', "", "ignored: incorrect CPU features"},
    {'N', "4", "call zylSetNumThreads(4)"},
    {'N', "-4", "ignored: incorrect number of threads"},
    {'S', "U", "include to measurement data set & use time"},
    {'C', "", "test data size will be in cache and out of cache if that is supported by test"},
    {'s', "", "sort functions"},
    {'s', "-", "don't sort functions"},
    {'e', "", "enumerate tested functions and exit"},
    {'e', "+", "enumerate applied and not applied library functions and exit"},
    {'e', "-x", "enumerate not applied library functions and exit"},
    {'v', "", "type the version number of the Metrig and exit"},
    {'h', "", "type short help and exit"},
    {'h', "h", "type extended help and exit"},
    {'h', "Big", "type extended help for -B key and exit"},
    {'?', "", "type short help with hidden keys and exit"},
    {'?', "?", "type extended help with hidden keys and exit"},
    {'?', "h", "type extended help for -h key and exit"},
    {'c', "20", "set measurement loop to (20) milliseconds"},
    {'c', "0", "ignored: incorrect number of milliseconds"},
    {'c', "abc", "ignored: incorrect number of milliseconds"},
    {'j', "0x10", "set minimun number of measurement loops to (0x10)"},
    {'j', "", "ignored: incorrect number of loops"},
};

TEST_F(Options, SayWhatTheyWillDo) {
    parse("-B");
    mrSession::m_inDir = "in/";
    mrSession::m_outDir = "out/";
    mrSession::m_defName = "name";
    for (const InfoRow& row : infoRows) {
        mrSession::m_exitLevel = 0;
        EXPECT_EQ(str(session->getOption(row.key)->m_info(row.arg)), row.text) << row.key << row.arg;
    }
    zylEnvironment = nullptr;
    EXPECT_EQ(str(session->getOption('T')->m_info("SSE2")), NotBound);
    EXPECT_EQ(str(session->getOption('N')->m_info("4")), NotBound);
    parse("-B -q -r");
    EXPECT_EQ(str(session->getOption('q')->m_info("+")),
              "add function parameter name lines to csv files defined by -r & -R keys");
    EXPECT_EQ(str(session->getOption('Q')->m_info("")),
              "exit after function parameter name table creation and don't run tests");
}

/// The exit level from on which each key gives way; 4 for those that never do.
int levelOf(char key) {
    const std::string byList = "BAdiILPqQuUFYSC";
    const std::string byHelp = "ftmHs";
    return byList.find(key) != std::string::npos ? 1 : byHelp.find(key) != std::string::npos ? 2 : 4;
}

TEST_F(Options, GiveWayToExitKeys) {
    parse("-B");
    const char* const reasons[] = {"", "ignored because of -e option", "ignored because of -h option",
                                   "ignored because of -v option"};
    for (const InfoRow& row : infoRows) {
        const bool isEmptyPattern = std::string(row.text).ends_with(" pattern");
        for (int level = 1; level <= 3; ++level) {
            mrSession::m_exitLevel = level;
            const std::string text = str(session->getOption(row.key)->m_info(row.arg));
            const bool gaveWay = row.key == 'e' ? level == 2 : level >= levelOf(row.key) && !isEmptyPattern;
            EXPECT_EQ(text == reasons[level], gaveWay)
                << row.key << row.arg << " at " << level << ": " << text;
        }
    }
}

struct ReportRow {
    const char* line;
    const char* report;  ///< behind the head line
};

TEST_F(Options, ReportInTheOrderOfTheCommandLine) {
    writeFile("keys", "-s-\n-x -h\n-@other");
    writeFile("first", "-F1");
    writeFile("none", "");
    const ReportRow rows[] = {
        {"-x", "-x: ignored: incorrect option key\n"},
        {"-c0 -B", "-c0: ignored: incorrect number of milliseconds\n-B: batch mode\n"},
        {"-f -h", "-f: ignored: empty function pattern\n-h: type short help and exit\n"},
        {"-ftest -h", "-ftest: ignored because of -h option\n-h: type short help and exit\n"},
        {"-ftest -e", "-ftest: test functions containing 'test'\n-e: enumerate tested functions and exit\n"},
        {"-e -v -B",
         "-e: enumerate tested functions and exit\n-v: type the version number of the Metrig and exit\n"
         "-B: ignored because of -e option\n"},
        {"-e -?B", "-e: ignored because of -h option\n-?B: type extended help for -B key and exit\n"},
        // A file of keys asks for help too late to make others useless, and is not asked for further files.
        {"-F1 -@keys -B",
         "-F1: start testing from 1 function\n-s-: don't sort functions\n-x: ignored: incorrect option key\n"
         "-h: type short help and exit\n-@other: ignored: incorrect option key\n-B: batch mode\n"},
        {"-@first -@none -B -@first",
         "-F1: start testing from 1 function\n-B: batch mode\n-F1: start testing from 1 function\n"},
    };
    for (const ReportRow& row : rows) {
        EXPECT_EQ(parse(row.line), std::string("Command line options: \n") + row.report);
        EXPECT_TRUE(passed) << row.line;
    }
}

struct EffectRow {
    const char* line;
    bool (*holds)();
};

TEST_F(Options, TakeEffect) {
    const EffectRow rows[] = {
        {"-dx=1 -dx=2 -d", [] { return str(g_istrm.dataList().begin()->m_value) == "2"; }},
        {"-P", [] { return mrTest::m_pressing; }},
        {"-J7", [] { return mrTool::m_numExtLoops == 7; }},
        {"-c0", [] { return mrTool::m_numMilliseconds == 0; }},
        {"-j", [] { return mrTool::m_minNumLoops == 0; }},
        {"-q+ -r", [] { return mrSession::m_nameMode == 1 && g_qstrm.empty(); }},
        {"-q+ -q -r", [] { return mrSession::m_nameMode == 3; }},
        {"-q -Q", [] { return mrSession::m_nameMode == 2 && !g_qstrm.empty() && mrSession::m_nameExit; }},
        {"-Q", [] { return mrSession::m_nameMode == 0 && !mrSession::m_nameExit; }},
        {"-Fab -Fcd", [] { return str(mrTestList::m_startFunc) == "cd"; }},
        {"-YLOW -Yx", [] { return mrTool::m_priority == MR_PRIORITY_LOW; }},
        {"-YHIGH -YNORMAL", [] { return mrTool::m_priority == MR_PRIORITY_NORMAL; }},
        {"-H", [] { return mrTest::m_hot == 1; }},
        {"-H -HO", [] { return mrTest::m_hot == 2; }},
        {"-TSSE2 -N3", [] { return s_cpuFeature == 7 && s_numThreads == 3; }},
        {"-TSSE2 -N3 -Tx -N-1", [] { return s_cpuFeature == 0 && s_numThreads == -1; }},
        {"-S", [] { return g_tool.m_setAndUse; }},
        {"-C -h", [] { return mrTest::m_cache; }},
        {"-v", [] { return s_version; }},
        {"-W", [] { return is_W_flagUsed && ts87Base::Exception == 0x20 && tsSSXBase::Exception == 0x1000; }},
        {"-h", [] { return s_hintArg == 1 && s_hintHide; }},
        {"-h -?Big", [] { return s_hintArg == 'B' && !s_hintHide; }},
    };
    for (const EffectRow& row : rows) {
        resetSettings();
        parse(row.line);
        EXPECT_TRUE(passed && row.holds()) << row.line;
    }
}

TEST_F(Options, ExistByLibraryAndNameTables) {
    zyl_Init = [] { return MR_NOT_BOUND; };
    qKeys = false;
    EXPECT_EQ(
        parse("-TSSE2 -N2 -q -Q"),
        "Command line options: \n-TSSE2: ignored: incorrect option key\n-N2: ignored: incorrect option key\n"
        "-q: ignored: incorrect option key\n-Q: ignored: incorrect option key\n");
    qKeys = true;
}

TEST_F(Options, FileKeysOpenTheirFiles) {
    writeFile("old.csv", "before\n");
    const std::string folders = " -p" + path("in") + " -l" + path("") + " -nrun";
    EXPECT_EQ(
        parse("-r -Rold -qnames -u -O -g" + folders),
        "Command line options: \n-r: write performance result table to <dir>/run.csv\n"
        "-Rold: add performance result table to <dir>/old.csv\n"
        "-qnames: write function parameter name lines to <dir>/names_name.csv\n"
        "-u: write summary table to <dir>/run_sum.csv\n-O: add console output to <dir>/run.txt\n"
        "-g: create file <dir>/run.end at the end of MR work\n"
        "-p<dir>/in: open test data files & ini-file in <dir>/in/\n-l<dir>/: open output files in <dir>/\n"
        "-nrun: name ini-file and output files as run.<proper-ext>\n");
    EXPECT_TRUE(passed);
    g_cstrm << "cell"
            << "\n";
    EXPECT_EQ(readFile("run.csv"), "cell\n");
    EXPECT_EQ(readFile("old.csv"), "before\ncell\n");
    EXPECT_TRUE(std::filesystem::exists(path("names_name.csv")));
    EXPECT_TRUE(std::filesystem::exists(path("run_sum.csv")));
    EXPECT_EQ(readFile("run.txt").substr(0, 22), "Command line options: ");
    mrTestList tests;
    pTestList = &tests;
    session->outputSignal();
    pTestList = nullptr;
    EXPECT_TRUE(std::filesystem::exists(path("run.end")));
}

TEST_F(Options, UnopenedFilesEndTheRunAfterAllKeys) {
    for (const char* key : {"o", "O", "r", "R", "q", "u", "U"}) {
        const std::string text = parse(std::string("-") + key + "/none/x -YLOW");
        EXPECT_FALSE(passed) << key;
        EXPECT_TRUE(text.starts_with("-- Can't open file /none/x to write: \nCommand line options: \n"))
            << text;
        EXPECT_TRUE(
            text.ends_with("-YLOW: set low process priority\n"
                           "FATAL FAIL: can't open output file for writing\n"))
            << text;
        EXPECT_EQ(mrTool::m_priority, MR_PRIORITY_LOW);
    }
    EXPECT_EQ(parse("-@missing -B"),
              "-- Can't open file <dir>/missing to read: \nCommand line options: \n-B: batch mode\n"
              "FATAL FAIL: can't open output file for writing\n");
    EXPECT_FALSE(passed);
}

TEST_F(Options, IniFiles) {
    EXPECT_EQ(parse("-Inew -ilast"),
              "Command line options: \n-Inew: write MR parameters to <dir>/new.ini and exit\n"
              "-ilast: read from <dir>/last.ini\n-- Can't open file <dir>/last.ini to read: \n");
    EXPECT_TRUE(passed);
    EXPECT_FALSE(g_istrm.iniWrite());
    parse("-ilast -Inew");
    EXPECT_TRUE(passed);
    EXPECT_TRUE(g_istrm.iniWrite());
    EXPECT_TRUE(parse("-I/none/x").ends_with("FATAL FAIL: can't open ini-file for writing\n"));
    EXPECT_FALSE(passed);
}

TEST_F(Options, WithoutArgumentsComeFromTheCfgFileOrTheBuiltInLine) {
    EXPECT_EQ(parse(""), "");
    EXPECT_TRUE(passed);
    mrString builtIn = " -B";
    pCmdLine = &builtIn;
    EXPECT_EQ(parse(""),
              "Command line options: set by _FORCE_CMDLINE preprocessor definition\n-B: batch mode\n");
    writeFile("metrig.cfg", "-F\"a b\" -c7\n-B\n");
    EXPECT_EQ(
        parse(""),
        "Command line options: read from <dir>/metrig.cfg file\n-Fa b: start testing from a b function\n"
        "-c7: set measurement loop to (7) milliseconds\n");
    writeFile("metrig.cfg", "");
    EXPECT_EQ(parse(""), "Command line options: read from <dir>/metrig.cfg file\n");
    // One in the current directory comes first.
    const auto before = std::filesystem::current_path();
    std::filesystem::create_directory(path("current"));
    std::filesystem::current_path(path("current"));
    writeFile("current/metrig.cfg", "-v");
    EXPECT_TRUE(parse("").starts_with("Command line options: read from metrig.cfg file\n-v: "));
    std::filesystem::current_path(before);
    EXPECT_EQ(parse("-v"), "Command line options: \n-v: type the version number of the Metrig and exit\n");
    pCmdLine = nullptr;
}

/// Ends the run where the tests would start.
class StoppedSession : public mrSession {
  public:
    struct Stop {};

    void outputHeader() override {}
    void putTableTitle() override {
        m_level = g_ostrm.outLevel();
        throw Stop();
    }

    OutputLevel m_level = 0;
};

TEST_F(Options, LevelsAddUpAndHoldForTheTests) {
    const std::pair<const char*, OutputLevel> rows[] = {{"-B", 1},       {"-LERR", 1}, {"-LDATA", 87},
                                                        {"-LTRACE", 23}, {"-LI", 15},  {"-LPERF", 7},
                                                        {"-LM", 39},     {"-L", 1}};
    for (const auto& [key, level] : rows) {
        static auto& sessions = *new std::vector<StoppedSession*>;
        StoppedSession* stopped = sessions.emplace_back(new StoppedSession);
        std::string words[] = {path("metrig"), "-B", "-s-", key};
        char* values[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data()};
        testing::internal::CaptureStdout();
        printed([&] { EXPECT_THROW(stopped->run(4, values), StoppedSession::Stop); });
        const std::string console = testing::internal::GetCapturedStdout();
        EXPECT_EQ(stopped->m_level, level) << key;
        // Sorting is told past all streams, and this run does not sort.
        EXPECT_EQ(console.find("Sorting"), std::string::npos);
        for (const mrTest* test : *pTestList) {
            delete test;
        }
        delete pTestList;
        pTestList = nullptr;
    }
}

}  // namespace
