// The order of a run. What a step does stands in the file that has its name.

#include "session/mr.h"

#include <cstdio>

#include "job/mrinfotest.h"
#include "job/mroutputs.h"
#include "job/mrtestreport.h"
#include "measure/mrturns.h"
#include "report/mrreport.h"
#include "session/mrwatchdog.h"
#include "stream/mrcstream.h"
#include "stream/mrinventory.h"
#include "stream/mristream.h"
#include "stream/mrreportformat.h"

mrSession::~mrSession() {
    for (const mrOption* option : m_options) {
        delete option;
    }
}

int mrSession::run(int argc, char** argv) {
    g_ostrm.setMsgLevel(MSG_PERF);
    g_ostrm.append(&c_out);
    g_journal.open();
    bindEnvironment();
    initSession();
    registerCpuTest();
    pTestList->m_date.start();
    bool goesOn = startRun(argc, argv);
    if (goesOn) {
        mrBindLibrary();
        mrNoteLibraryVersions();
        if (!sortTests()) {
            return 0;
        }
        pTestList->startWithCpuTest();
        outputHeader();
        goesOn = !enumOutput();
    }
    int result = 0;
    if (goesOn) {
        result = runTests();
    } else {
        pTestList->m_date.stop();
    }
    outputSignal();
    g_journal.end();
    deleteTests();
    return result;
}

void mrSession::bindEnvironment() {
    if (zylEnvironment != nullptr) {
        zylEnvironment();
        // Filtered at this moment; mrBindLibrary sends the same words again when they pass.
        g_ostrm << "\nZorva ZYL Core library functions have been integrated into MR\n";
    }
    mrBindFallbacks();
}

void mrSession::registerCpuTest() {
    mrRegTest(new __mrZorvaCpuTest(nullptr, nullptr, "__mrZorvaCpu", "perflib/src/mr",
                                   "__mrZorvaCpuTest/Zorva CPU information"));
}

/// Keys, help and version; false if the run ends here.
bool mrSession::startRun(int argc, char** argv) {
    return parseCommandLine(argc, argv) && startSession() && !hintOutput();
}

bool mrSession::sortTests() {
    // These two lines are the process's own and pass no level and no listing file.
    if (pTestList == nullptr) {
        std::printf("Fail! pTestList is NULL\n");
        return false;
    }
    if (!m_quickMode) {
        std::printf("%s", g_journal.silent() ? "" : "Sorting functions...");
        pTestList->sortFunc();
        std::printf("%s", g_journal.silent() ? "" : "\n");
    }
    return true;
}

namespace {

/// The libraries under test in one line.
mrString librariesLine() {
    mrString line;
    if (g_pLibInfoList != nullptr) {
        for (const mrString& library : *g_pLibInfoList) {
            line << (line.empty() ? "" : "; ") << library;
        }
    }
    return line;
}

}  // namespace

int mrSession::runTests() {
    if (s_parmFunc != nullptr) {
        s_parmFunc();
    }
    selectTestParameters();
    g_ostrm.setOutLevel(MSG_ERR | MSG_WARN | MSG_PERF);
    readCommonData();
    g_ostrm.setOutLevel(m_levelMode);
    if ((m_askMode & AskEachTest) == 0) {
        g_istrm.setIStream(nullptr);
    }
    mrReadWatchdog();
    if (g_pHotList == nullptr) {
        g_pHotList = new mrStringList;
    }
    if (g_journal.isProbe()) {
        probeTests();
        return 0;
    }
    putTableTitle();
    beginJournal();
    g_turns.begin(librariesLine());
    const bool failed = pTestList->runTests(*m_conditions);
    g_turns.end();
    pTestList->m_date.stop();
    outputFooter();
    return failed ? 1 : 0;
}

/// Also takes over what earlier processes of the run have left.
void mrSession::beginJournal() {
    if (!g_journal.kept() || g_istrm.iniWrite()) {
        return;  // an ini file is written as a whole, by one process
    }
    const mrJournal::Position here = {g_cstrm.lineCount(), mrTest::m_vectorShift};
    pTestList->m_date.startedAt(g_journal.begin(mrCpuTicker::getFreq(), pTestList->m_date.startTime(), here));
    if (g_journal.resumes()) {
        g_cstrm.setLineCount(g_journal.position().tableLines);
        mrTest::m_vectorShift = g_journal.position().vectorShift;
        mrCutOutputs(g_journal.takenBack());
    }
}

/// Leaves those common parameters that a selected test uses; nothing is asked on the way.
void mrSession::selectTestParameters() {
    if (g_pParmList == nullptr || g_pParmList->empty()) {
        return;
    }
    const int askMode = m_askMode;
    const bool batMode = m_batMode;
    m_askMode = 0;
    m_batMode = true;
    pTestList->selectCommonParms(*m_conditions, *g_pParmList);
    m_askMode = askMode;
    m_batMode = batMode;
}

void mrSession::deleteTests() {
    for (mrTest*& test : *pTestList) {
        delete test;
        test = nullptr;
    }
    delete pTestList;
}

void mrSession::outputHeader() {
    const mrReportTitle title(*pTestList);
    g_ostrm << title;
    g_cstrm << title;
    g_qstrm << title;
    g_ustrm << title;
    g_ustrm << mrReportTestResult(nullptr);
}

void mrSession::outputFooter() {
    const mrReportEnd end(*pTestList);
    g_ostrm << MSG_ERR;
    g_ostrm << end;
    g_ostrm << MSG_END;
    g_ustrm << end;
}

void mrSession::outputSignal() {
    if (m_sglName.empty() || g_journal.silent()) {
        return;
    }
    o_stream file(m_sglName, IO_WRITE | IO_NOPATH, true);
    if (file.isOpen()) {
        const mrDate& date = pTestList->m_date;
        file << mrReportFormat::getTimeStr(date.seconds()) + "\n" + mrDate::text(date.stopTime()) + "\n\n";
        file.sync();
    }
}

void mrSession::putTableTitle() {
    putTableTitleLine();
    if ((m_nameMode & MR_NAMES_IN_FILE) != 0) {
        mrToNameTable([this] { putTableTitleLine(); });
    }
}

void mrSession::putTableTitleLine() {
    funcTitleToCStream();
    parmsTitleToCStream();
    mrTest::m_numParmsColm = g_cstrm.nextColm();
    resultTitleToCStream();
    mrTest::m_numResultColm = g_cstrm.nextColm() - mrTest::m_numParmsColm;
    g_cstrm.lineOut(0);
}

namespace {

void toCStream(std::initializer_list<const char*> titles) {
    for (const char* title : titles) {
        g_cstrm << title;
    }
}

}  // namespace

void mrSession::mrFuncTitleToCStream() { toCStream({"function"}); }

void mrSession::mrParmsTitleToCStream() {
    toCStream({"Parm1", "Parm2", "Parm3", "Parm4", "Parm5", "Parm6", "Parm7", "Parm8"});
}

void mrSession::resultTitleToCStream() {
    toCStream({"Comment", "Clocks", "per", "Time (usec)", "MFlops"});
    if (mrTest::m_hot != MR_HOT_NONE) {
        toCStream({"Interest"});
    }
}

void mrSession::zyFuncTitleToCStream() { toCStream({"funcBase", "funcDataType", "funcDescriptor"}); }

void mrSession::zyParmsTitleToCStream() {
    toCStream({"Len/Size", "Parm1", "Parm2", "Parm3", "Parm4", "scaleFactor"});
}
