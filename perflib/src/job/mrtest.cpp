// The life cycle of a test: chosen, run, caught when it crashes, reported.

#include "job/mrtest.h"

#include "job/mrconditions.h"
#include "job/mrtestreport.h"
#include "job/mrteststep.h"
#include "machine/mrleftstate.h"
#include "machine/mrpriority.h"
#include "machine/mrsignal.h"
#include "machine/mrstop.h"
#include "measure/mrturns.h"
#include "parameter/mrmemory.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "stream/mrjournal.h"
#include "stream/mrtrace.h"

namespace {

void reportLostBlocks() {
    int count = 0;
    long long bytes = 0;
    mrForEachBlock([&](void*, int size, mrObject*) {
        ++count;
        bytes += size;
    });
    if (count > 0) {
        g_ostrm << MSG_MEM << " - left behind: " << mrText(count) << " blocks, " << mrText(bytes)
                << " bytes\n"
                << MSG_END;
    }
}

}  // namespace

mrTestInfo::mrTestInfo(mrString text) {
    const int first = text.find("/", 0);
    if (first == mrString::npos) {
        m_suite = text;
        return;
    }
    m_suite = text.substr(0, first);
    const mrString rest = text.substr(first + 1);
    const int second = rest.find("/", 0);
    m_group = second == mrString::npos ? rest : rest.substr(0, second);
    m_regMark = second == mrString::npos ? mrString() : rest.substr(second + 1);
}

mrTest::mrTest(FuncLoop loop, FuncStat stat, mrString name, mrString file, mrString info)
    : mrTest(nullptr, nullptr, loop, stat, name, file, info) {}

mrTest::mrTest(FuncCall call, FuncCall init, FuncLoop loop, FuncStat stat, mrString name, mrString file,
               mrString info)
    : m_name(name),
      m_fileName(file.getFileName()),
      m_info(info),
      m_funcLoop(loop),
      m_funcStat(stat),
      m_funcCall(call),
      m_funcInit(init) {
    mrTest::initSettings();
}

mrTest::mrTest(FuncOld old, mrString name, mrString file, mrString info)
    : mrTest(nullptr, nullptr, nullptr, nullptr, name, file, info) {
    m_funcOld = old;
}

void mrTest::initSettings() {
    m_bad87 = false;
    m_badSSX = false;
    m_deprecated = false;
    m_cacheRetry = false;
    m_pCacheIter.reset();
    m_currentResult = MR_NOT_RUN;
    m_first = true;
    m_parms.clear();
}

bool mrTest::tobeRun(mrConditions& conditions) {
    return conditions.tobeRun(this) && (m_hot != MR_HOT_ONLY || mrTest::isHotLine());
}

int mrTest::run() {
    m_outLevel = g_ostrm.outLevel();
    const int messages = g_ostrm.msgDepth();
    const int steps = g_trace.size();
    bool selected = true;
    const auto endTheTest = [&](const mrException& exception) {
        g_ostrm.restoreMsgDepth(messages);
        catchException(exception);
        g_trace.leaveTo(steps);
    };
    try {
        _g_signal.guard([&] { selected = runSteps(); });
    } catch (const mrException& exception) {
        endTheTest(exception);
    } catch (...) {
        // Only a function under test throws what is no std::exception.
        endTheTest(mrException(mrString("Unknown exception")));
    }
    if (!selected) {
        return MR_NOT_RUN;
    }
    finish();
    return m_result;
}

/// All that stands under the return point; false if the ini file leaves the test out.
bool mrTest::runSteps() {
    m_result = MR_OK;
    m_currentResult = MR_NOT_RUN;
    mrForgetLeftState();
    m_tool = g_tool;
    if (m_info.m_regMark.found("Ibs")) {
        m_tool.m_ibs = true;
    }
    g_trace.clearTexts();
    if (!mrTraced("setIniSection", [this] { return setIniSection(m_name); })) {
        return false;
    }
    mrTraced("beginTest", [this] { beginTest(); });
    m_outLevel = g_ostrm.outLevel();
    m_date.start();
    putTestTitle();
    if (!leavableStep("canStart", [this] { return canStart(); })) {
        writeTestError("-- Can't start timing\n");
        m_currentResult = MR_DATA_FAIL;
    } else if (m_cache && m_pCacheIter == nullptr) {
        writeTestError(mrString("-- Can't run In-Outof-Cache timing: no program support for function ") +
                       m_name + "\n");
    } else {
        mrTraced("parmsFromIstrm", [this] { parmsFromIstrm(); });
        putTableName();
        measureAll();
    }
    mrTraced("flushStart", [this] { flushStart(); });
    return true;
}

void mrTest::putTestTitle() {
    const auto title = mrTraced("testTitle", [this] { return mrReportTestTitle(this); });
    mrTraced("g_ostrm<<testTitle", [&] {
        g_ostrm << MSG_ERR;
        g_ostrm << title;
        g_ostrm << MSG_END;
    });
    mrTraced("g_ustrm<<testTitle", [&] { g_ustrm << title; });
}

void mrTest::measureAll() {
    if (g_istrm.iniWrite() || mrNameLines::m_nameExit) {
        m_currentResult = MR_OK;
        return;
    }
    outputRegInfo();
    mrTraced("loopData", [this] { loopData(); });
}

/// After a signal nothing between the fault and here was unwound, so what the next test relies on is put
/// right here. Blocks stay behind: their owners know them still, and give them back when they are used again.
void mrTest::catchException(const mrException& exception) {
    m_currentResult = MR_EXCEPTION;
    mrStop::endCombination();
    mrResetPriority();
    mrRestoreAfterCall();
    g_ostrm.setOutLevel(m_outLevel);
    g_cstrm.tableFlush();
    restoreLeftState();
    writeTestError(exception.msg() + " in " + g_trace.getCurName() + "\n");
    reportLostBlocks();
}

int mrTest::endLost(const mrString& lostBy, std::time_t start) {
    beginTest();
    m_date.startedAt(start);
    g_ustrm << mrReportTestTitle(this);
    writeTestError(mrException::lostProcess(lostBy).msg() + "\n");
    m_currentResult = MR_EXCEPTION;
    finish();
    return m_result;
}

/// Puts right what a function under test left changed, and tells it once a test.
void mrTest::restoreLeftState() {
    mrRestoreSignals();
    const mrString names = mrLeftStateToTell();
    if (!names.empty()) {
        g_ostrm << MSG_WARN << "-- Left changed by the function, put right: " << names << "\n" << MSG_END;
    }
}

void mrTest::finish() {
    m_result = m_currentResult;
    m_date.stop();
    mrTraced("testResult", [this] {
        const mrReportTestResult result(this);
        g_ostrm << result;
        g_ustrm << result;
        g_ostrm.flush();
        // Between two tests the wait for the disk disturbs no measurement.
        g_cstrm.sync();
        g_ustrm.sync();
    });
    mrTraced("endTest", [this] { endTest(); });
    g_turns.endTest(m_name, mrResultWord(m_result));
    g_journal.endTest(m_result, mrResultWord(m_result));
}

bool mrTest::readParameters() {
    bool selected = true;
    try {
        _g_signal.guard([&] {
            selected = setIniSection(m_name);
            if (selected) {
                beginTest();
                canStart();
                parmsFromIstrm();
                flushStart();
                endTest();
            }
        });
    } catch (const mrException&) {
        // a crash is for the run to tell
    }
    return selected;
}

void mrTest::startAndStop() {
    const OutputLevel level = g_ostrm.outLevel();
    g_ostrm.setOutLevel(MSG_ERR);
    try {
        _g_signal.guard([this] {
            beginTest();
            canStart();
            flushStart();
            endTest();
        });
    } catch (const mrException& exception) {
        writeTestError(exception.msg() + " in startAndStop of " + m_name + " test\n");
    }
    g_ostrm.setOutLevel(level);
}
