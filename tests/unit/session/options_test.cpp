#include "mr.h"
#include "session_fixture.h"
#include "timing/mrpriority.h"

namespace {

using Options = SessionTest;

struct InfoRow {
    char key;
    const char* arg;
    const char* levels;  ///< of the exit keys -e, -h and -v (1 to 3) that the key gives way to
    const char* text;
};

const InfoRow infoRows[] = {
    {'B', "", "123", "batch mode"},
    {'A', "ParamsMisalign", "123", "askcommon parameters, data misalignment from console"},
    {'A', "params", "123",
     "asktiming method, common parameters, data misalignment, each test parameters from console"},
    {'d', "x=", "123", "set MR parameter x="},
    {'d', "", "123", "ignored: empty data argument"},
    {'d', " =1", "123", "ignored: incorrect data format"},
    {'i', "run", "123", "read from in/run.ini"},
    {'I', "", "123", "write MR parameters to in/name.ini and exit"},
    {'P', "", "123", "read tested function names from ini-file if any"},
    {'o', "", "", "write console output to out/name.txt"},
    {'O', "/x", "", "add console output to /x"},
    {'L', "M", "123", "write fails,notes,performance results,memory info to console"},
    {'L', "DATA", "123", "write fails,notes,performance results,tracing info,data info to console"},
    {'L', "err", "123", "ignored: incorrect level of console output"},
    {'J', "3", "", "set the number of external measurement loops to (3)"},
    {'J', "", "", "ignored: incorrect number of external loops"},
    {'r', "t", "", "write performance result table to out/t.csv"},
    {'R', "t.dat", "", "add performance result table to out/t.dat"},
    {'q', "+t", "123", "write function parameter name lines to out/+t_name.csv"},
    {'q', "+", "123", "ignored because -r or -R options are not present in command line"},
    {'Q', "", "123", "ignored because -q option is not present in command line"},
    {'u', "", "123", "write summary table to out/name_sum.csv"},
    {'U', "s", "123", "add summary table to out/s_sum.csv"},
    {'g', "", "", "create file out/name.end at the end of MR work"},
    {'n', "x", "", "name ini-file and output files as x.<proper-ext>"},
    {'n', "", "", "ignored: empty default name"},
    {'p', "/a", "", "open test data files & ini-file in /a/"},
    {'p', "", "", "ignored: empty directory name"},
    {'l', "/a/", "", "open output files in /a/"},
    {'l', "", "", "ignored: empty directory name"},
    {'f', "x", "23", "test functions containing 'x'"},
    {'f', "=x", "23", "test function equal to 'x'"},
    {'f', "+x", "23", "don't test functions without 'x' in the name"},
    {'f', "-x", "23", "don't test functions containing 'x'"},
    {'f', "-", "", "ignored: empty function pattern"},
    {'t', "x", "23", "run tests containing 'x'"},
    {'t', "=x", "23", "run test equal to 'x'"},
    {'t', "+x", "23", "don't run tests which doesn't contain 'x'"},
    {'t', "-x", "23", "don't run tests containing 'x'"},
    {'t', "", "", "ignored: empty test pattern"},
    {'m', "x", "23", "run tests from file containing 'x'"},
    {'m', "=x", "23", "run test equal from file with exact name 'x'"},
    {'m', "+x", "23", "don't run tests from file which doesn't contain 'x'"},
    {'m', "-x", "23", "don't run tests from file containing 'x' in file name"},
    {'m', "", "", "ignored: empty file pattern"},
    {'k', "or", "", "keys composition: -f<conditions> OR -t<conditions> OR -m<conditiosn>"},
    {'k', "x", "", "keys composition: -f<conditions> AND -t<conditions> AND -m<conditions>"},
    {'F', "fun", "123", "start testing from fun function"},
    {'Y', "HIGH", "123", "set high process priority"},
    {'Y', "LOW", "123", "set low process priority"},
    {'Y', "high", "123", "ignored: incorrect process priority value"},
    {'H', "ONLY", "23", "run tests for hot functions only"},
    {'H', "", "23", "add 'Interest' column to table file"},
    {'W', "", "", "unmask floating-point exceptions"},
    {'T', "SSE2", "", "call zylSetCpuFeatures ( Zyl64u SSE2 )"},
    {'T', "sse2", "", "ignored: incorrect CPU features"},
    {'N', "4", "", "call zylSetNumThreads(4)"},
    {'N', "-4", "", "ignored: incorrect number of threads"},
    {'S', "U", "123", "include to measurement data set & use time"},
    {'C', "", "123", "test data size will be in cache and out of cache if that is supported by test"},
    {'s', "", "23", "sort functions"},
    {'s', "-", "23", "don't sort functions"},
    {'e', "+", "2", "enumerate applied and not applied library functions and exit"},
    {'e', "-x", "2", "enumerate not applied library functions and exit"},
    {'v', "", "", "type the version number of the Metrig and exit"},
    {'h', "", "", "type short help and exit"},
    {'h', "Big", "", "type extended help for -B key and exit"},
    {'?', "?", "", "type extended help with hidden keys and exit"},
    {'c', "20", "", "set measurement loop to (20) milliseconds"},
    {'c', "abc", "", "ignored: incorrect number of milliseconds"},
    {'j', "0x10", "", "set minimun number of measurement loops to (0x10)"},
    {'j', "", "", "ignored: incorrect number of loops"},
};

TEST_F(Options, SayWhatTheyWillDo) {
    parse("-B");
    mrSession::m_inDir = "in/";
    mrSession::m_outDir = "out/";
    mrSession::m_defName = "name";
    const char* const reasons[] = {"", "ignored because of -e option", "ignored because of -h option",
                                   "ignored because of -v option"};
    for (const InfoRow& row : infoRows) {
        for (const int level : {0, 1, 2, 3}) {
            mrSession::m_exitLevel = level;
            const bool givesWay = std::string(row.levels).find(std::to_string(level)) != std::string::npos;
            EXPECT_EQ(str(session->getOption(row.key)->m_info(row.arg)), givesWay ? reasons[level] : row.text)
                << row.key << row.arg << " at " << level;
        }
    }
}

TEST_F(Options, ReportInTheOrderOfTheCommandLine) {
    writeFile("keys", "-s-\n-x -h\n-@other");
    writeFile("first", "-F1");
    writeFile("none", "");
    const std::pair<const char*, const char*> rows[] = {
        {"-e -v -B",
         "-e: enumerate tested functions and exit\n-v: type the version number of the Metrig and exit\n"
         "-B: ignored because of -e option\n"},
        {"-e -?B", "-e: ignored because of -h option\n-?B: type extended help for -B key and exit\n"},
        {"-g -nx -nrun",
         "-g: create file <dir>/run.end at the end of MR work\n"
         "-nx: name ini-file and output files as x.<proper-ext>\n"
         "-nrun: name ini-file and output files as run.<proper-ext>\n"},
        {"-q+ -r -Q",
         "-q+: add function parameter name lines to csv files defined by -r & -R keys\n"
         "-r: write performance result table to <dir>/metrig.csv\n"
         "-Q: exit after function parameter name table creation and don't run tests\n"},
        // A file of keys asks for help too late to make others useless, and is not asked for further files.
        {"-F1 -@keys -B",
         "-F1: start testing from 1 function\n-s-: don't sort functions\n-x: ignored: incorrect option key\n"
         "-h: type short help and exit\n-@other: ignored: incorrect option key\n-B: batch mode\n"},
        {"-@first -@none -B -@first",
         "-F1: start testing from 1 function\n-B: batch mode\n-F1: start testing from 1 function\n"},
    };
    for (const auto& [line, report] : rows) {
        EXPECT_EQ(parse(line), std::string("Command line options: \n") + report);
        EXPECT_TRUE(passed) << line;
    }
}

TEST_F(Options, TakeEffect) {
    const std::pair<const char*, bool (*)()> rows[] = {
        {"-dx=1 -dx=2 -d", [] { return str(g_istrm.dataList().begin()->m_value) == "2"; }},
        {"-P", [] { return mrTest::m_pressing; }},
        {"-J7", [] { return mrTool::m_numExtLoops == 7; }},
        {"-c0", [] { return mrTool::m_numMilliseconds == 0; }},
        {"-q+ -q -r", [] { return mrSession::m_nameMode == 3; }},
        {"-q -Q", [] { return mrSession::m_nameMode == 2 && !g_qstrm.empty() && mrSession::m_nameExit; }},
        {"-Fab -Fcd", [] { return str(mrTestList::m_startFunc) == "cd"; }},
        {"-YLOW -Yx", [] { return mrTool::m_priority == MR_PRIORITY_LOW; }},
        {"-YHIGH -YNORMAL", [] { return mrTool::m_priority == MR_PRIORITY_NORMAL; }},
        {"-H -HO", [] { return mrTest::m_hot == 2; }},
        {"-Tx -TSSE2 -N3", [] { return s_cpuFeature == 7 && s_numThreads == 3; }},
        {"-S", [] { return g_tool.m_setAndUse; }},
        {"-C -h", [] { return mrTest::m_cache; }},
        {"-W", [] { return is_W_flagUsed && ts87Base::Exception == 0x20 && tsSSXBase::Exception == 0x1000; }},
        {"-?B -h", [] { return s_hintArg == 1 && s_hintHide; }},
        {"-h -?Big", [] { return s_hintArg == 'B' && !s_hintHide; }},
        {"-Inew -ilast", [] { return !g_istrm.iniWrite(); }},
        {"-ilast -Inew", [] { return g_istrm.iniWrite(); }},
    };
    for (const auto& [line, holds] : rows) {
        parse(line);
        EXPECT_TRUE(passed && holds()) << line;
    }
}

TEST_F(Options, ExistByLibraryAndNameTables) {
    zylEnvironment = nullptr;
    const std::string notBound = ": ignored: <zylcore> is not included before <zy> in test files\n";
    EXPECT_EQ(parse("-TSSE2 -N4"), "Command line options: \n-TSSE2" + notBound + "-N4" + notBound);
    zyl_Init = [] { return MR_NOT_BOUND; };
    qKeys = false;
    EXPECT_EQ(
        parse("-TSSE2 -N2 -q -Q"),
        "Command line options: \n-TSSE2: ignored: incorrect option key\n-N2: ignored: incorrect option key\n"
        "-q: ignored: incorrect option key\n-Q: ignored: incorrect option key\n");
    qKeys = true;
}

TEST_F(Options, WithoutArgumentsComeFromTheCfgFileOrTheBuiltInLine) {
    EXPECT_EQ(parse(""), "");
    mrString builtIn = " -B";
    pCmdLine = &builtIn;
    EXPECT_EQ(parse(""),
              "Command line options: set by _FORCE_CMDLINE preprocessor definition\n-B: batch mode\n");
    writeFile("metrig.cfg", "-F\"a b\" -c7\n-B\n");
    EXPECT_EQ(
        parse(""),
        "Command line options: read from <dir>/metrig.cfg file\n-Fa b: start testing from a b function\n"
        "-c7: set measurement loop to (7) milliseconds\n");
    pCmdLine = nullptr;
}

}  // namespace
