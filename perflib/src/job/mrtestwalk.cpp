// The walk over the combinations of parameter values, and what each leaves as its result.

#include <algorithm>

#include "job/mrtest.h"
#include "job/mrteststep.h"
#include "machine/mrstop.h"
#include "measure/mrturns.h"
#include "parameter/mrmemory.h"
#include "stream/mrcstream.h"
#include "stream/mrjournal.h"
#include "stream/mrtrace.h"

namespace {

constexpr OutputLevel PerfLevel = MSG_ERR | MSG_WARN | MSG_PERF;
constexpr OutputLevel WarnLevel = MSG_ERR | MSG_WARN;

}  // namespace

void mrTest::loopData() {
    m_first = true;
    m_withoutMemory = false;
    const mrString trace = g_trace.text();
    g_cstrm.identicalLinesStart(m_numParmsColm);
    bool constantsOpen = true;
    do {
        g_trace.setText(trace);
        m_vectorNum = 0;
        if (!mrTraced("canContinue", [this] { return canContinue(); })) {
            reportEmptyWalk();
            break;
        }
        m_first = false;
        mrStop::beginCombination();
        measureCombination(constantsOpen);
        leavableStep("flushData", [this] { flushData(); });
        mrStop::endCombination();
        g_journal.at({g_cstrm.lineCount(), m_vectorShift});
    } while (!mrIsFail(m_currentResult) && !mrStop::asked() && !g_turns.leavesTest());
    if (m_withoutMemory) {
        // Counts at every console level, as the line that told it shows at every level.
        raiseResult(MR_DATA_NOTE);
    }
    closeTable();
}

/// Builds the data of one combination, times it and puts the result out. A combination without data is passed
/// over.
void mrTest::measureCombination(bool& constantsOpen) {
    const int refused = mrRefusedBlocks();
    if (!leavableStep("initData", [this] { return initData(); })) {
        m_withoutMemory = m_withoutMemory || mrRefusedBlocks() != refused;
        return;
    }
    if (constantsOpen) {
        outputConst();
        constantsOpen = false;
    }
    if (m_pCacheIter != nullptr && !m_pCacheIter->validateSize()) {
        m_cacheRetry = true;
        return;
    }
    putTextParms(MSG_PERF);
    if (m_tool.m_setAndUse) {
        mrTraced("reserveAllVectors", [] { reserveAllVectors(); });
    }
    if (m_hot == MR_HOT_ONLY && !isHotLine()) {
        g_ostrm << "  measuring is omitted: not hot line\n";
        return;
    }
    if (g_turns.driven()) {
        raiseResult(countedResult(takeTurns()));
        return;
    }
    const mrResult result = timeCombination();
    raiseResult(countedResult(result));
    outputResult(result);
}

mrResult mrTest::timeCombination() {
    printAllMemoryBlocks("before function calls");
    m_outLevel = g_ostrm.outLevel();
    initCtrlStatus();
    if (m_outLevel == WarnLevel) {
        // Only for the timing itself: the result line is written at the user's own level again.
        g_ostrm.setOutLevel(PerfLevel);
    }
    const mrResult timed = mrTraced("runTiming", [this] { return runTiming(); });
    g_ostrm.setOutLevel(m_outLevel);
    restoreLeftState();
    if (timed != MR_NOT_RUN) {
        printAllMemoryBlocks("after function calls");
    } else {
        writeTestError("-- Internal test problem: runTiming() function returns undefined result\n");
        raiseResult(MR_FAIL);
    }
    return std::max(timed, checkCtrlStatus());
}

void mrTest::reportEmptyWalk() {
    if (m_first) {
        writeTestError("-- One of argument list for timing is empty\n");
        raiseResult(MR_DATA_FAIL);
    }
    if (m_currentResult == MR_NOT_RUN) {
        writeTestError("-- Fail while initialization of function data\n");
        raiseResult(MR_DATA_FAIL);
    }
}

void mrTest::closeTable() {
    g_cstrm.linePostponeOut(m_numParmsColm + m_numResultColm);
    if (g_cstrm.identicalLinesStop()) {
        g_ostrm << MSG_WARN << "-- Notice: duplicate lines in performance table (csv-file)\n" << MSG_END;
        raiseResult(countedResult(MR_DATA_NOTE));
    }
}

bool mrTest::canContinue() {
    if (m_parms.empty()) {
        return m_first;
    }
    if (m_pCacheIter != nullptr && m_cacheRetry) {
        return retryCache();
    }
    if (m_first) {
        return std::all_of(m_parms.begin(), m_parms.end(),
                           [](mrParameter* parm) { return parm->firstValue(); });
    }
    for (auto wheel = m_parms.end(); wheel != m_parms.begin();) {
        --wheel;
        if ((*wheel)->nextValue()) {
            return true;
        }
        (*wheel)->firstValue();
    }
    return false;
}

bool mrTest::retryCache() {
    m_cacheRetry = false;
    if (m_pCacheIter->repeatValue()) {
        return true;
    }
    g_ostrm << MSG_ERR;
    m_pCacheIter->outputInfo();
    putTextParms();
    g_ostrm << "-- Fail to allocate " << m_pCacheIter->getComment() << " data\n" << MSG_END;
    raiseResult(MR_DATA_FAIL);
    return false;
}

mrResult mrTest::runTiming() {
    if (m_funcLoop == nullptr && m_funcStat == nullptr && m_funcCall == nullptr) {
        return m_funcOld != nullptr ? m_tool.timing(m_funcOld) : MR_NOT_RUN;
    }
    return m_tool.timing(m_funcLoop, m_funcStat, m_funcCall, m_funcInit);
}

void mrTest::setTimingResult(double clocks, mrString comment) {
    m_tool.setFuncTicks(clocks);
    m_tool.m_comment = comment;
}

mrResult mrTest::checkCtrlStatus() {
    bool bad87 = false;
    bool badSSX = false;
    const bool bad = badCtrlStatus(bad87, badSSX);
    if (bad) {
        m_bad87 = m_bad87 || bad87;
        m_badSSX = m_badSSX || badSSX;
        printCtrlStatus(bad87, badSSX);
    }
    clearCtrlStatus();
    return bad ? MR_BAD_STATUS : MR_NOT_RUN;
}

void mrTest::raiseResult(int result) { m_currentResult = std::max(m_currentResult, result); }

int mrTest::countedResult(int result) {
    return mrIsNote(result) && g_ostrm.outLevel() <= MSG_ERR ? MR_OK : result;
}
