// One finished measurement as text: the console line, the line of the performance table, and the figures
// behind both.

#include "job/mrregistry.h"
#include "job/mrtest.h"
#include "stream/mrcstream.h"
#include "stream/mrtrace.h"

namespace {

constexpr int AccuracyWidth = 5;
constexpr int CommentWidth = 10;
constexpr int FigureWidth = 9;
constexpr double SmallestPlain = 0.0001;
constexpr double LargestPlain = 10000000.0;

/// Decimals that keep three significant digits visible.
int decimalsFor(double value) {
    double limit = 100.0;
    int decimals = 0;
    while (decimals < 6 && value < limit) {
        limit /= 10.0;
        ++decimals;
    }
    return decimals;
}

mrString figure(mrString text) { return text.padLeft(FigureWidth); }

void addItem(mrString& list, bool present, const char* item) {
    if (present) {
        list << (list.empty() ? "" : ", ") << item;
    }
}

}  // namespace

double mrTest::performance(bool flops) {
    const double clocks = m_tool.m_funcClocks;
    if (!flops) {
        const double divisor = getDivisor();
        return divisor != 0.0 ? clocks / divisor : 0.0;
    }
    return isFloatFunction() && clocks != 0.0 ? getFlops() * mrCpuTicker::getFreq() / clocks : 0.0;
}

mrString mrTest::formatClocks(double value) {
    if (value <= 0.0) {
        return "";
    }
    if (!(value >= SmallestPlain && value <= LargestPlain)) {
        return mrFormat("%.3e", value);
    }
    return mrFormat("%.*f", decimalsFor(value), value);
}

mrString mrTest::getComment() {
    if (m_deprecated) {
        return "deprecated";
    }
    return m_pCacheIter != nullptr ? m_pCacheIter->getComment() + " " + m_tool.m_comment : m_tool.m_comment;
}

mrString mrTest::testResultString() {
    mrString line;
    if (m_tool.m_method == MR_METHOD_AUTO || m_tool.m_method == MR_METHOD_BEST) {
        line << "  acc=" << mrTool::getAccuracyStr(m_tool.m_accuracy).padRight(AccuracyWidth);
    }
    line << "  " << m_tool.m_comment.padRight(CommentWidth);
    line << "  perf=" << figure(mrText(m_tool.m_funcClocks)) << "/" << figure(mrText(getDivisor())) << "="
         << figure(perfString(false)) << " clocks";
    return line;
}

mrString mrTest::regInfo() {
    mrString text = "   Test has been registered";
    if (!m_info.m_regMark.empty()) {
        text << " by " << m_info.m_regMark << " macro";
    }
    mrString entries;
    addItem(entries, m_funcLoop != nullptr, "loopMethod");
    addItem(entries, m_funcStat != nullptr, "statMethod");
    addItem(entries, m_funcOld != nullptr, "oldMethod");
    addItem(entries, m_funcCall != nullptr, "funcCall");
    if (entries.empty()) {
        return text << " without any function to call.\n No standard timing method is available";
    }
    addItem(entries, m_funcInit != nullptr, "funcInit");
    return text << " with " << entries << ".\n   " << measuredEntry() << " is called for measuring.";
}

/// The word for the entry that the method calls. Under Auto it names the loop entry though the main run goes
/// through the statistic one: listings have always said so.
const char* mrTest::measuredEntry() const {
    if (m_funcOld != nullptr) {
        return "oldMethod";
    }
    if (m_funcCall != nullptr && m_tool.m_setAndUse) {
        return "funcCall with Set&Use";
    }
    if (m_funcCall != nullptr && m_funcLoop == nullptr && m_funcStat == nullptr) {
        return "funcCall";
    }
    const int method = m_tool.m_method;
    const bool byCalls = (method == MR_METHOD_AUTO || method == MR_METHOD_BEST) && m_tool.m_callMode;
    if (method == MR_METHOD_STAT || byCalls) {
        return m_funcStat != nullptr ? "statMethod" : "loopMethod";
    }
    return m_funcLoop != nullptr ? "loopMethod" : "statMethod";
}

bool mrTest::isHotLine() {
    if (g_pHotList == nullptr) {
        return false;
    }
    for (const mrString& hot : *g_pHotList) {
        if (m_name == hot) {
            return true;
        }
    }
    return false;
}

void mrTest::parmsToOstrm() {
    for (const mrParameter* parm : m_parms) {
        parm->toOStream(g_ostrm);
    }
}

void mrTest::funcToCstrm() { g_cstrm << m_name; }

void mrTest::parmsToCstrm() {
    for (const mrParameter* parm : m_parms) {
        parm->toCStream(g_cstrm);
    }
}

void mrTest::parmsNameToCstrm() {
    for (const mrParameter* parm : m_parms) {
        parm->nameToCStream(g_cstrm);
    }
}

void mrTest::resultToCstrm(mrResult) {
    g_cstrm << getComment();
    g_cstrm << perfString(false);
    g_cstrm << getUnit();
    g_cstrm << mrText(m_tool.m_funcClocks / mrCpuTicker::getFreq());
    g_cstrm << perfString(true);
    g_cstrm << (isHotLine() ? "Hot" : "");
}

void mrTest::putTextParms(MessageLevel level) {
    if (!g_ostrm.beginMessage(level)) {
        return;
    }
    if (m_pCacheIter != nullptr) {
        g_ostrm << m_pCacheIter->getComment() << ":";
    }
    mrTraced("parmsToOstrm", [this] {
        parmsToOstrm();
        g_ostrm << "\n";
    });
    g_ostrm.endMessage();
}

void mrTest::putTextError(mrResult result) {
    if (result <= MR_OK) {
        return;
    }
    g_ostrm << (mrIsFail(result) ? MSG_ERR : MSG_WARN) << "-- " << mrResultString(result)
            << " on test parameters:\n";
    putTextParms();
    g_ostrm << MSG_END;
}

void mrTest::putTextResult(mrResult result) {
    if (result < MR_OK || mrIsFail(result) || !g_ostrm.beginMessage(result == MR_OK ? MSG_PERF : MSG_WARN)) {
        return;
    }
    if (result != MR_OK) {
        g_ostrm << "-- performance:\n";
    }
    g_ostrm << testResultString() << "\n";
    g_ostrm.endMessage();
}

void mrTest::putTableParms() {
    mrTraced("funcToCstrm", [this] { funcToCstrm(); });
    mrTraced("parmsToCstrm", [this] { parmsToCstrm(); });
    g_cstrm.setNextColmIndex(m_numParmsColm);
}

void mrTest::putResultLine(mrResult result) {
    putTableParms();
    mrTraced("resultToCstrm", [&] { resultToCstrm(result); });
}

void mrTest::putTableResult(mrResult result) {
    putResultLine(result);
    g_cstrm.lineOut(m_numParmsColm + m_numResultColm);
}

void mrTest::putTableResult_Deprecated(mrResult result) {
    if (setDeprecatedFlag(true)) {
        putResultLine(result);
        g_cstrm.linePostpone();
    }
    setDeprecatedFlag(false);
}

bool mrTest::setDeprecatedFlag(bool flag) {
    m_deprecated = flag;
    bool any = false;
    for (mrParameter* parm : m_parms) {
        if (!flag) {
            parm->setDeprecatedFlag(false);
        } else if (parm->isDeprecatedParm()) {
            if (!parm->setDeprecatedFlag(true)) {
                return false;
            }
            any = true;
        }
    }
    return any;
}

void mrTest::putTableName() {
    if (m_name.beginsWith("__mr")) {
        return;
    }
    if ((mrNameLines::m_nameMode & MR_NAMES_IN_TABLE) != 0) {
        putTableNameLine();
    }
    if ((mrNameLines::m_nameMode & MR_NAMES_IN_FILE) != 0) {
        mrToNameTable([this] { putTableNameLine(); });
    }
}

void mrTest::putTableNameLine() {
    funcToCstrm();
    parmsNameToCstrm();
    g_cstrm.setNextColmIndex(m_numParmsColm);
    g_cstrm << "parmNames";
    g_cstrm.lineOut(m_numParmsColm + m_numResultColm);
}

void mrTest::outputResult(mrResult result) {
    if (result == MR_NOT_RUN) {
        return;
    }
    putTextError(result);
    putTextResult(result);
    if (!mrIsFail(result)) {
        putTableResult(result);
        putTableResult_Deprecated(result);
    }
}

void mrTest::outputConst() {
    mrTraced("constToOstrm", [this] { constToOstrm(); });
}

void mrTest::outputRegInfo() {
    if (g_ostrm.beginMessage(MSG_PERF)) {
        g_ostrm << regInfo() << "\n";
        g_ostrm.endMessage();
    }
}

int mrTest::printAllMemoryBlocks(mrString) { return 0; }
