#include "job/mrtest.h"

#include <algorithm>
#include <climits>

#include "job/mrconditions.h"
#include "job/mrregistry.h"
#include "job/mrtestreport.h"
#include "job/mrteststep.h"
#include "machine/mrfloat.h"
#include "machine/mrleftstate.h"
#include "machine/mrpriority.h"
#include "machine/mrsignal.h"
#include "machine/mrstop.h"
#include "measure/mrturns.h"
#include "parameter/mrmemory.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "stream/mrtrace.h"

namespace {

constexpr OutputLevel PerfLevel = MSG_ERR | MSG_WARN | MSG_PERF;
constexpr OutputLevel WarnLevel = MSG_ERR | MSG_WARN;
constexpr int ShiftWrap = 32768;

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
    return conditions.tobeRun(this) && (m_hot != 2 || mrTest::isHotLine());
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
}

bool mrTest::setIniSection(mrString name) {
    mrIniFile* ini = g_istrm.iniFile();
    if (m_pressing && ini != nullptr && !ini->sectionExist(name)) {
        return false;
    }
    if (g_istrm.iniWrite()) {
        ini->write(name);
    }
    g_istrm.setIniSection(name);
    return true;
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

void mrTest::raiseResult(int result) { m_currentResult = std::max(m_currentResult, result); }

int mrTest::countedResult(int result) {
    return mrIsNote(result) && g_ostrm.outLevel() <= MSG_ERR ? MR_OK : result;
}

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
    if (m_hot == 2 && !isHotLine()) {
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

void* mrTest::allocate(int size, int align, mrObject* object) {
    int offset = align;
    if (align < 0) {
        offset = mrGetAlignSrc() && m_vectorNum != 0 ? 0 : -(mrGetVectorAlign() * align);
    }
    void* block = mrMalloc(size, offset, m_vectorShift, object != nullptr ? object : MEM_OBJECT_IS_BUFFER);
    if (block == nullptr) {
        return nullptr;
    }
    ++m_vectorNum;
    const long long next = static_cast<long long>(m_vectorShift) + mrGetVectorShift();
    m_vectorShift = next >= ShiftWrap ? 0 : static_cast<int>(std::max<long long>(next, INT_MIN));
    return block;
}

void mrTest::deallocate(void* block) { mrFree(block); }

int mrTest::reserveAllVectors() { return mrReserveAllCopies(); }

int mrTest::resetAllVectors() { return mrRestoreAllCopies(); }

void mrTest::regCacheParm(mrIterator<int>& size, mrObject* object, mrCacheCheck check) {
    if (m_cache && m_pCacheIter == nullptr) {
        m_pCacheIter = std::make_unique<mrCacheIteratorInt>(size, object, check);
        m_parms.append(m_pCacheIter.get());
    } else {
        m_parms.append(&size);
    }
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
