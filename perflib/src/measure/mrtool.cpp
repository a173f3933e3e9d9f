#include "measure/mrtool.h"

#include <climits>

#include "measure/mrturns.h"
#include "stream/mrostream.h"
#include "stream/mrtrace.h"

namespace {

// For the old kind of entry, which wants the tool itself.
mrTool* _pTool = nullptr;
FuncOld _funcOld = nullptr;

mrResult _funcLoop(int n, long long* clocks) {
    const mrResult result = _funcOld(*_pTool, n);
    *clocks = _pTool->m_numClocks * mrCpuTicker::getClockFactor();
    return result;
}

int atLeastOne(int value) { return value > 1 ? value : 1; }

int shifted(int value, int count, bool left) {
    const auto bits = static_cast<unsigned>(value);
    const unsigned places = static_cast<unsigned>(count) & 31u;
    return static_cast<int>(left ? bits << places : bits >> places);
}

constexpr int TimingLine = 845;
constexpr int LongestAccuracy = 18;

}  // namespace

void mrTool::reset() { mrToolFigures::operator=(mrToolFigures()); }

mrResult mrTool::timing(FuncOld old) {
    _funcOld = old;
    _pTool = this;
    return timing(_funcLoop, nullptr, nullptr, nullptr);
}

mrResult mrTool::timing(FuncLoop loop, FuncStat stat, FuncCall call, FuncCall init) {
    reset();
    if (loop == nullptr && stat == nullptr && call == nullptr) {
        g_ostrm << MSG_ERR
                << " Internal test problem: The test cannot execute standard timing.\n"
                   " No one of funcLoop, funcStat or funcCall is registered in the test.\n"
                << MSG_END_FLUSH;
        return MR_FAIL;
    }
    m_funcLoop = loop;
    m_funcStat = stat;
    m_funcCall = call;
    m_funcInit = init;
    if (g_turns.driven()) {
        // The entries are noted for the driver. A test may correct its figure after this: what it makes of
        // one clock tells how.
        m_funcClocks = 1.0;
        return m_result = MR_OK;
    }
    switch (m_method) {
        case MR_METHOD_LOOP:
            if (loop != nullptr || call != nullptr) {
                mrTraced("customLoopTiming", [this] { customLoopTiming(); });
            } else {
                g_ostrm << MSG_ERR
                        << " ATTENTION! The test cannot execute Manual loop timing.\n"
                           " Statistic timing will be run instead.\n"
                        << MSG_END;
                setMethodStat(m_manualLoops, 0);
                return timing(nullptr, stat, nullptr, init);
            }
            break;
        case MR_METHOD_STAT:
            if (stat != nullptr || call != nullptr) {
                mrTraced("statisticTiming", [this] { statisticTiming(); });
            } else {
                g_ostrm << MSG_ERR
                        << " ATTENTION! The test cannot execute Statistic timing.\n"
                           " Manual loop timing will be run instead.\n"
                        << MSG_END;
                setMethodLoop(m_statCalls);
                return timing(loop, nullptr, nullptr, init);
            }
            break;
        case MR_METHOD_AUTO:
            mrTraced("autoTiming", [this] { autoLoopTiming(); });
            break;
        case MR_METHOD_BEST:
            mrTraced("iterativeTiming", [this] { bestTiming(m_bestStart, m_bestStop, m_bestMinClocks); });
            break;
        default:
            m_result = mrInternalFail(TimingLine);
    }
    return m_result;
}

void mrTool::setMethodLoop(int loops) {
    m_method = MR_METHOD_LOOP;
    m_manualLoops = atLeastOne(loops);
}

void mrTool::setMethodStat(int calls, long long clocks) {
    m_method = MR_METHOD_STAT;
    m_statCalls = calls;
    m_statClocks = clocks;
}

void mrTool::setMethodBest(int start, int stop, long long minClocks) {
    m_method = MR_METHOD_BEST;
    m_bestStart = atLeastOne(start);
    const long long least = static_cast<long long>(start) * 8;
    m_bestStop = least > stop ? static_cast<int>(least < INT_MAX ? least : INT_MAX) : stop;
    m_bestMinClocks = minClocks;
}

bool mrTool::getMethodLoop(int& loops) const {
    if (m_method != MR_METHOD_LOOP) {
        return false;
    }
    loops = m_manualLoops;
    return true;
}

bool mrTool::getMethodStat(int& calls, long long& clocks) const {
    if (m_method != MR_METHOD_STAT) {
        return false;
    }
    calls = m_statCalls;
    clocks = m_statClocks;
    return true;
}

bool mrTool::getMethodBest(int& start, int& stop, long long& minClocks) const {
    if (m_method != MR_METHOD_BEST) {
        return false;
    }
    start = m_bestStart;
    stop = m_bestStop;
    minClocks = m_bestMinClocks;
    return true;
}

void mrTool::setLoopFactor(int factor) {
    if (factor == 0) {
        m_factorStart = 0;
        m_factorStop = 0;
        return;
    }
    int start = 0;
    int stop = 0;
    long long minClocks = 0;
    getAutoParameters(start, stop, minClocks);
    const bool left = factor < 0;
    const int count = left ? static_cast<int>(0u - static_cast<unsigned>(factor)) : factor;
    m_factorStart = shifted(start, count, left);
    m_factorStop = shifted(stop, count, left);
}

void mrTool::updateResult(mrResult result) {
    if (result > m_result) {
        m_result = result;
        m_info = mrResultString(result);
    }
}

mrString mrTool::getAccuracyStr(double accuracy) {
    const double percent = accuracy * 100.0;
    return mrFormat(percent < 0.1 ? "%.2f%c" : "%.1f%c", percent, '%').substr(0, LongestAccuracy);
}

void writeInfo(mrString& text) {
    if (g_ostrm.beginMessage(MSG_INFO)) {
        g_ostrm << text;
        g_ostrm.endMessage();
    }
    text = "";
}

void writeError() {
    if (g_ostrm.outLevel() < MSG_INFO) {
        g_ostrm << MSG_ERR << MSG_END_FLUSH;
    }
}

mrResult mrInternalFail(int line) {
    g_ostrm << MSG_ERR << "MR internal fail: file perflib/src/mrtool, line " << mrText(line) << "\n"
            << MSG_END_FLUSH;
    return MR_FAIL;
}

mrString clockStr(long long clocks) {
    auto value = static_cast<double>(clocks);
    mrString zeros;
    while (value > 2147483647.0) {
        value /= 10.0;
        zeros << "0";
    }
    return mrText(static_cast<int>(value)) + zeros;
}
