// One measurement: an entry is chosen and called, and its raw clocks are kept. Between two clock reads stands
// nothing but the entry; tracing, texts and priority changes stay outside.

#include <algorithm>
#include <cmath>

#include "machine/mrfloat.h"
#include "machine/mrleftstate.h"
#include "machine/mrlibrary.h"
#include "machine/mrpriority.h"
#include "machine/mrsignal.h"
#include "measure/mrtool.h"
#include "parameter/mrmemory.h"
#include "stream/mrtrace.h"

namespace {

constexpr int RunLine = 273;
constexpr int CallLoopLine = 857;
constexpr int CallStatLine = 894;
constexpr int Attempts = 2;
/// Of a statistic measurement: without a call there is no figure.
constexpr int LeastCalls = 1;

/// A figure as whole clocks; what no long long holds is cut to its range.
long long wholeClocks(double figure) {
    constexpr double Limit = 9.2e18;
    return static_cast<long long>(std::fmin(std::fmax(figure, -Limit), Limit));
}

/// Calls an entry, which may be given up, and puts right what all code after it needs.
template <class Entry>
mrResult calledEntry(Entry entry) {
    const tsSignal::Leavable leavable;
    const mrResult result = entry();
    mrRestoreAfterCall();
    return result;
}

long long elapsed(Zyl64u start, Zyl64u stop) { return static_cast<long long>(stop - start); }

}  // namespace

void mrTool::ctrlStart() {
    g_ctrl87.start();
    g_ssx.start();
}

void mrTool::ctrlStop() {
    g_ctrl87.stop();
    g_ssx.stop();
}

/// Calls an entry under the process priority of -Y and with the control status watched.
template <class Entry>
mrResult mrTool::watchedCall(Entry entry) {
    ctrlStart();
    const mrControlWords words;
    g_trace.traceIn("zylFunctionCalls");
    mrSetPriority(m_priority);
    const mrResult result = calledEntry(entry);
    mrResetPriority();
    g_trace.traceOut("zylFunctionCalls");
    ctrlStop();
    words.restore();
    return result;
}

void mrTool::runTimFunc(int n, double* clocks, bool prior) {
    // A reading of no clocks at all is repeated once.
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        m_numClocks = 0;
        if (m_setAndUse && m_funcCall == nullptr) {
            m_result = MR_NOT_RUN;
            return;
        }
        updateResult(measureOnce(n, *clocks, prior));
        if (mrIsFail(m_result) || m_numClocks > 0) {
            break;
        }
    }
    m_numLoops = n;
    m_funcClocks = static_cast<double>(m_numClocks);
    *clocks = m_funcClocks;
}

mrResult mrTool::measureOnce(int& n, double least, bool prior) {
    if (!prior && (m_setAndUse || m_funcStat != nullptr)) {
        n = std::max(n, LeastCalls);
    }
    if (m_setAndUse) {
        return mrTraced("zylFunctionCalls", [&] {
            return calledEntry([&] {
                return prior ? timCall_Loop(n, &m_numClocks, true) : timCall_Stat(&n, &m_numClocks, true);
            });
        });
    }
    if (m_ibs && m_funcInit != nullptr) {
        mrTraced("initFunc call", [this] { m_funcInit(); });
    }
    return watchedCall([&] { return callEntry(n, least, prior); });
}

mrResult mrTool::callEntry(int& n, double least, bool prior) {
    if (!prior && m_funcStat != nullptr) {
        m_numClocks = wholeClocks(least);
        return m_funcStat(&n, &m_numClocks, numIntLoops);
    }
    if (m_funcLoop != nullptr) {
        return m_funcLoop(n, &m_numClocks);
    }
    return m_funcCall != nullptr ? timCall_Loop(n, &m_numClocks, false) : mrInternalFail(RunLine);
}

mrResult mrTool::takeBlocks(int calls, int blocks) {
    int count = calls * blocks;
    long long least = 0;
    const mrResult result = watchedCall([&] { return m_funcStat(&count, &least, calls); });
    updateResult(result);
    return result;
}

void mrTool::runTimFuncStat(long long clocks, int* numCalls, double* funcClocks) {
    mrResult result = MR_NOT_RUN;
    *numCalls = std::max(*numCalls, LeastCalls);
    if (m_setAndUse) {
        if (m_funcCall == nullptr) {
            m_result = MR_NOT_RUN;
            return;
        }
        result = calledEntry([&] { return timCall_Stat(numCalls, &clocks, true); });
    } else {
        result = watchedCall([&] {
            return m_funcStat != nullptr ? m_funcStat(numCalls, &clocks, numIntLoops)
                                         : timCall_Stat(numCalls, &clocks, false);
        });
    }
    // A suite's entry gives the clocks of one call already, and they are divided here once more: the method
    // has always reported so.
    *funcClocks = *numCalls != 0 ? static_cast<double>(clocks) / *numCalls : 0.0;
    updateResult(result);
}

mrResult mrTool::checkedStatus(int status) const {
    return m_pCheckStatus != nullptr ? m_pCheckStatus(status) : MR_OK;
}

mrResult mrTool::timCall_Loop(int n, long long* clocks, bool reset) {
    const FuncCall call = m_funcCall;
    const FuncCall init = m_funcInit;
    if (call == nullptr) {
        return mrInternalFail(CallLoopLine);
    }
    if (init != nullptr) {
        init();
    }
    int status = call();
    if (status < 0 && m_pCheckStatus != nullptr) {
        return m_pCheckStatus(status);
    }
    const Zyl64u start = zyl_StartCpuClocks();
    for (int i = 0; i < n; ++i) {
        if (init != nullptr) {
            init();
        }
        if (reset) {
            mrRestoreAllCopies();
        }
        const int r = call();
        if (r != 0) {
            status = r;
        }
        if (r < 0) {
            break;
        }
    }
    *clocks = elapsed(start, zyl_StopCpuClocks()) * mrCpuTicker::getClockFactor();
    return checkedStatus(status);
}

mrResult mrTool::timCall_Stat(int* numCalls, long long* clocks, bool reset) {
    const FuncCall call = m_funcCall;
    const FuncCall init = m_funcInit;
    if (call == nullptr) {
        return mrInternalFail(CallStatLine);
    }
    if (init != nullptr) {
        init();
    }
    int status = call();
    if (status < 0 && m_pCheckStatus != nullptr) {
        return m_pCheckStatus(status);
    }
    int done = 0;
    long long total = 0;
    while (done < *numCalls || total * mrCpuTicker::getClockFactor() < *clocks) {
        if (init != nullptr) {
            init();
        }
        const Zyl64u start = zyl_StartCpuClocks();
        if (reset) {
            mrRestoreAllCopies();
        }
        const int timed = call();
        total += elapsed(start, zyl_StopCpuClocks());
        // A round costs two calls and counts as one: figures of all builds were taken so.
        const int untimed = call();
        if (untimed < 0) {
            status = untimed;
            break;
        }
        status = untimed > 0 ? untimed : timed;
        ++done;
    }
    *numCalls = done;
    *clocks = total * mrCpuTicker::getClockFactor();
    return checkedStatus(status);
}
