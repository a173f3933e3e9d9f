// The Auto and Iterative methods: find by doubling how often an entry must run for its figure to be trusted,
// and say how far it can be trusted. Accuracy is agreement of successive figures, not truth.

#include <climits>
#include <cmath>
#include <vector>

#include "measure/mrcontrolstatus.h"
#include "measure/mrtool.h"
#include "stream/mrostream.h"
#include "stream/mrtrace.h"

namespace {

constexpr int AutoStartLoops = 1;
constexpr int AutoStopLoops = 2048;
constexpr long long AutoMinClocks = 10000;
constexpr int PriorAttempts = 2;
constexpr double EarlyStop = 0.01;
constexpr int SimpleMeasurements = 3;
constexpr int StatusMeasurements = 6;
constexpr double StatusTolerance = 2.0;
constexpr int FirstGrowth = 4;
constexpr int ZeroRescue = 10;
constexpr int ShortCallBlock = 100;

/// A count times a factor, held at the largest int.
int scaled(int count, long long factor) {
    if (factor > 0 && count > INT_MAX / factor) {
        return INT_MAX;
    }
    return static_cast<int>(count * factor);
}

/// The smallest power of two not below `ratio`, 0 for 0.
long long powerOfTwoFor(long long ratio) {
    constexpr long long Largest = 1LL << 31;
    long long power = ratio > 0 ? 1 : 0;
    while (power < ratio && power < Largest) {
        power *= 2;
    }
    return power;
}

mrString resultLine(mrResult result) {
    return mrString("        result     = ") + mrResultString(result) + "\n";
}

mrString accuracyLine(double accuracy) {
    return mrString("        accuracy   = ") + mrTool::getAccuracyStr(accuracy) + "\n";
}

void writeLine(mrString text) { writeInfo(text); }

}  // namespace

void mrTool::getAutoParameters(int& start, int& stop, long long& minClocks) const {
    start = AutoStartLoops;
    stop = AutoStopLoops;
    minClocks = AutoMinClocks;
}

void mrTool::autoLoopTiming() {
    int start = 0;
    int stop = 0;
    long long minClocks = 0;
    getAutoParameters(start, stop, minClocks);
    bestTiming(m_factorStart != 0 ? m_factorStart : start, m_factorStop != 0 ? m_factorStop : stop,
               minClocks);
}

void mrTool::bestTiming(int startLoops, int maxLoops, long long minClocks) {
    m_watchStatus = m_ibs;
    if (m_funcStat == nullptr && m_funcCall == nullptr) {
        m_callMode = false;
    }
    mrString text = "    Auto method: start\n        minClocks  = ";
    text << clockStr(minClocks) << "\n";
    writeInfo(text);
    int loops = startLoops;
    int stop = maxLoops;
    if (!priorMeasurement(loops, stop, minClocks)) {
        return;
    }
    if (m_numLoops < stop && !iterateMeasurement(scaled(m_numLoops, FirstGrowth), stop)) {
        return;
    }
    finishTiming();
}

/// Rough measurements until the reading is long enough; false if the method ends here.
bool mrTool::priorMeasurement(int& loops, int& stop, long long minClocks) {
    for (int attempt = 1; attempt <= PriorAttempts; ++attempt) {
        mrString text = "    Prior Measurement: \n        ";
        text << countLabel() << "   = " << loops << "\n";
        writeInfo(text);
        const mrResult r = startIterations(loops, minClocks);
        text << "        numClocks  = " << m_numClocks << "\n"
             << "        funcClocks = " << m_funcClocks << "\n"
             << resultLine(r);
        writeInfo(text);
        if (r == MR_ACCURACY_FAIL && attempt < PriorAttempts) {
            loops = scaled(loops, ZeroRescue);
            stop = scaled(stop, ZeroRescue);
        } else if (r == MR_ACCURACY_FAIL) {
            failTiming();
            return false;
        } else if (mrIsFail(r)) {
            m_result = r;
            writeLine("    Auto method: exit\n");
            return false;
        } else if (r == MR_BAD_ACCURACY && attempt < PriorAttempts) {
            const long long factor = powerOfTwoFor(2 * minClocks / m_numClocks);
            loops = scaled(loops, factor);
            stop = scaled(stop, factor);
        } else if (r != MR_BAD_ACCURACY) {
            break;
        }
    }
    return true;
}

/// Doubling, and simple measurements where the agreement is not good at once; false if the method ends here.
bool mrTool::iterateMeasurement(int next, int stop) {
    do {
        mrString text = "    Iteration Measurement: \n        startLoops = ";
        text << next << "\n"
             << "        maxLoops   = " << stop << "\n";
        writeInfo(text);
        mrResult r = continueIterations(next, stop);
        text << "        stopLoops  = " << m_numLoops << "\n"
             << "        stopClocks = " << m_numClocks << "\n"
             << accuracyLine(m_accuracy) << "        funcClocks = " << m_funcClocks << "\n"
             << resultLine(r);
        writeInfo(text);
        if (r == MR_BAD_STATUS) {
            avoidBadStatus();
            return true;
        }
        if (r != MR_ACCURACY_FAIL) {
            if (m_accuracy <= EarlyStop) {
                return true;
            }
            writeLine("    Simple Measurements: \n");
            r = repeatTiming(m_numLoops, SimpleMeasurements);
        }
        if (r == MR_ACCURACY_FAIL) {
            // With one clock a tick no count is below the factor, so a reading of zero always ends the
            // method. So does a call that fails at once: no multiple of 0 loops is a count.
            if (m_numLoops == 0 || mrCpuTicker::getClockFactor() <= next) {
                failTiming();
                return false;
            }
            next = scaled(next, ZeroRescue);
            stop = scaled(stop, ZeroRescue);
        } else if (r == MR_BAD_ACCURACY) {
            next = scaled(m_numLoops, FirstGrowth);
        } else {
            return true;
        }
    } while (m_numLoops < stop);
    return true;
}

void mrTool::failTiming() {
    m_result = MR_ACCURACY_FAIL;
    writeLine("    Auto method: exit\n");
    writeError();
}

void mrTool::finishTiming() {
    m_comment << (m_callMode ? "nCalls=" : "nLps=") << m_numLoops;
    if (m_accuracy > m_reqAccuracy) {
        const mrString accuracy = getAccuracyStr(m_accuracy);
        m_comment << " acc=" << accuracy;
        if (m_result < MR_BAD_ACCURACY) {
            m_result = MR_BAD_ACCURACY;
            m_info << "actual accuracy = " << accuracy;
        }
    }
    writeLine("    Auto method: stop\n");
}

bool mrTool::watchedBadStatus() const {
    bool bad87 = false;
    bool badSSX = false;
    return m_watchStatus && mrControlStatus::badCtrlStatus(bad87, badSSX);
}

/// Measures again with half the loops, in the hope that the status stays clean; the last figures stand either
/// way.
void mrTool::avoidBadStatus() {
    mrControlStatus::printBadCtrlStatus();
    g_ostrm << MSG_WARN << "-- Attempting to avoid bad control status\n" << MSG_END;
    writeLine("    Reduce loops to avoid bad ctrl status.\n    Simple Measurements: \n");
    mrControlStatus::clearCtrlStatus();
    const mrResult r = repeatTiming(m_numLoops, StatusMeasurements);
    if (r != MR_BAD_STATUS && m_accuracy <= StatusTolerance * m_reqAccuracy) {
        g_ostrm << MSG_WARN << "-- Attempt is successful\n" << MSG_END;
        return;
    }
    writeLine("    Cannot avoid bad ctrl status\n");
    g_ostrm << MSG_WARN << "-- Attempt fails: " << MSG_END;
    g_ostrm << MSG_WARN
            << (r == MR_BAD_STATUS ? "Bad control status repeats.\n" : "Accuracy is unsatisfactory.\n")
            << MSG_END;
}

mrResult mrTool::startIterations(int loops, long long minClocks) {
    m_numLoops = loops;
    mrTraced("runTimFunc", [this] { runTimFunc(m_numLoops, &m_funcClocks, true); });
    m_funcClocks /= m_numLoops;
    if (mrIsFail(m_result)) {
        return m_result;
    }
    if (m_funcClocks <= 0.0) {
        return MR_ACCURACY_FAIL;
    }
    return m_funcClocks * m_numLoops < static_cast<double>(minClocks) ? MR_BAD_ACCURACY : MR_OK;
}

mrResult mrTool::continueIterations(int startLoops, int maxLoops) {
    return m_funcStat != nullptr ? measureStatistic() : doubleLoops(startLoops, maxLoops);
}

mrResult mrTool::doubleLoops(int startLoops, int maxLoops) {
    double prev = m_funcClocks;
    m_numLoops = startLoops < maxLoops ? startLoops : maxLoops;
    for (;;) {
        mrTraced("runTimFunc", [this] { runTimFunc(m_numLoops, &m_funcClocks, false); });
        if (m_numLoops == 0) {
            return MR_ACCURACY_FAIL;
        }
        m_funcClocks /= m_numLoops;
        if (m_funcClocks <= 0.0) {
            return MR_ACCURACY_FAIL;
        }
        m_accuracy = std::fabs(m_funcClocks - prev) * 2.0 / (m_funcClocks + prev);
        if (watchedBadStatus()) {
            m_funcClocks = prev;
            m_numLoops >>= 1;
            return MR_BAD_STATUS;
        }
        if (m_accuracy <= m_reqAccuracy) {
            return MR_OK;
        }
        prev = m_funcClocks;
        if (2LL * m_numLoops > maxLoops) {
            return MR_BAD_ACCURACY;
        }
        m_numLoops *= 2;
    }
}

/// One statistic measurement stands for the whole doubling, and its figure is taken as exact.
mrResult mrTool::measureStatistic() {
    // -c counts tenths of a millisecond, whatever its help says: tables of all builds were measured so.
    double least = m_numMilliseconds * 100.0 * mrCpuTicker::getFreq();
    // m_funcClocks is the best single call over the prior loops, so calls far longer than the timer's
    // resolution are timed in blocks as well.
    numIntLoops = 100 * tResolution / m_funcClocks >= 2.0 ? ShortCallBlock : 1;
    m_numLoops = m_minNumLoops;
    mrTraced("runTimFunc", [&] { runTimFunc(m_minNumLoops, &least, false); });
    if (m_funcClocks <= 0.0) {
        return MR_ACCURACY_FAIL;
    }
    m_accuracy = 0.0;
    return watchedBadStatus() ? MR_BAD_STATUS : MR_OK;
}

mrResult mrTool::repeatTiming(int numLoops, int numRepeat) {
    std::vector<double> slots(static_cast<std::size_t>(numRepeat), 0.0);
    std::size_t first = 0;
    if (numLoops == m_numLoops) {
        // This figure is divided by the loops already and those that follow are not; the difference stays,
        // since it makes the method raise the count until the stop ends it.
        slots[first++] = m_funcClocks;
    }
    m_numLoops = numLoops;
    for (std::size_t i = first; i < slots.size(); ++i) {
        mrTraced("runTimFunc", [&] { runTimFunc(m_numLoops, &slots[i], false); });
        mrString text = "        ";
        text << countLabel() << "   = " << m_numLoops << "\n"
             << "        numClocks  = " << m_numClocks << "\n"
             << "        funcClocks = " << slots[i] << "\n";
        writeInfo(text);
    }
    double sum = 0.0;
    double best = slots.front();
    for (const double slot : slots) {
        sum += slot;
        best = std::fmin(best, slot);
    }
    const double mean = sum / numRepeat;
    m_accuracy = mean > 0.0 ? 0.0 : 1.0;
    for (const double slot : slots) {
        m_accuracy = mean > 0.0 ? std::fmax(m_accuracy, std::fabs(slot - mean) / mean) : m_accuracy;
    }
    m_funcClocks = best;
    mrResult r = m_reqAccuracy < m_accuracy ? MR_BAD_ACCURACY : MR_OK;
    if (watchedBadStatus()) {
        r = MR_BAD_STATUS;
        mrControlStatus::printBadCtrlStatus();
    }
    mrString text = accuracyLine(m_accuracy);
    text << "        bestClocks = " << m_funcClocks << "\n" << resultLine(r);
    writeInfo(text);
    return r;
}
