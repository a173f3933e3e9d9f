#include "machine/mrpriority.h"
#include "session/mr.h"
#include "session_fixture.h"
#include "support/golden.h"

namespace {

using Options = SessionTest;

/// Each line holds an option with its text after the levels of the exit keys -e, -h and -v (1 to 3) that it
/// gives way to.
TEST_F(Options, SayWhatTheyWillDo) {
    parse("-B");
    mrSession::m_inDir = "in/";
    mrSession::m_outDir = "out/";
    mrSession::m_defName = "name";
    const char* const reasons[] = {"", "ignored because of -e option", "ignored because of -h option",
                                   "ignored because of -v option"};
    std::ifstream golden(METRIG_SOURCE_DIR "/tests/unit/session/golden/options.txt");
    int rows = 0;
    for (std::string levels, line; golden >> levels && std::getline(golden, line); ++rows) {
        const std::size_t end = line.find(": ");
        mrOption* const option = session->getOption(line[2]);
        for (const int level : {0, 1, 2, 3}) {
            mrSession::m_exitLevel = level;
            EXPECT_EQ(
                str(option->m_info(line.substr(3, end - 3).c_str())),
                levels.find(std::to_string(level)) != levels.npos ? reasons[level] : line.substr(end + 2))
                << line << " at " << level;
        }
    }
    EXPECT_EQ(rows, 72);
}

TEST_F(Options, ReportInTheOrderOfTheCommandLine) {
    m_folder.file("keys", "-s-\n\n-x -h\n-F \"a\nb\"\n-@other");
    m_folder.file("first", "-F1");
    m_folder.file("none", "");
    std::string reports;
    for (const char* line : {"-e -v -B", "-e -?B", "-g -nx -nrun", "-q+ -r -Q",
                             // A file of keys asks for help too late to make others useless, and is not
                             // asked for further files.
                             "-F1 -@keys -B", "-@first -@none -B -@first"}) {
        reports += std::string("# metrig ") + line + "\n" + parse(line) + "\n";
        EXPECT_TRUE(passed) << line;
    }
    expectGolden("unit/session/golden/reports.txt", reports);
}

TEST_F(Options, TakeEffect) {
    const std::pair<const char*, bool (*)()> rows[] = {
        {"-dx=1 -dx=2 -d", [] { return str(g_istrm.dataList().begin()->m_value) == "2"; }},
        {"-J7", [] { return mrTool::m_numExtLoops == 7; }},
        {"-c0", [] { return mrTool::m_numMilliseconds == 0; }},
        {"-q+ -q -r", [] { return mrSession::m_nameMode == (MR_NAMES_IN_TABLE | MR_NAMES_IN_FILE); }},
        {"-q -Q",
         [] {
             return mrSession::m_nameMode == MR_NAMES_IN_FILE && !g_qstrm.empty() && mrSession::m_nameExit;
         }},
        {"-Fab -Fcd", [] { return str(mrTestList::m_startFunc) == "cd"; }},
        {"-YLOW -Yx", [] { return mrTool::m_priority == MR_PRIORITY_LOW; }},
        {"-H -HO", [] { return mrTest::m_hot == MR_HOT_ONLY; }},
        {"-Tx -TSSE2 -N3", [] { return s_cpuFeature == 7 && s_numThreads == 3; }},
        {"-S", [] { return g_tool.m_setAndUse; }},
        {"-W", [] { return is_W_flagUsed && ts87Base::Exception == 0x20 && tsSSXBase::Exception == 0x1000; }},
        {"-?B -h", [] { return s_hintArg == MR_HINT_QUICK && s_hintHide; }},

        {"-Inew -ilast", [] { return !g_istrm.iniWrite(); }},

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
    m_folder.file("metrig.cfg", "-F\"a b\" -c7\n-B\n");
    EXPECT_EQ(
        parse(""),
        "Command line options: read from <dir>/metrig.cfg file\n-Fa b: start testing from a b function\n"
        "-c7: set measurement loop to (7) milliseconds\n");
    pCmdLine = nullptr;
}

}  // namespace
