// The Auto method finds by itself how often an entry must run for its figure to be trusted, and says how
// far it can be trusted. The Iterative method is the same with a start, a stop and least clocks that the
// user gives.
//
// 1. Prior measurement: at most two rough measurements, from the start count on, until the reading is long
//    enough, which is when its raw clocks reach the least clocks. One that is too short scales start and
//    stop so that the next should read twice the least clocks.
// 2. Iteration: from four times that count on, the count doubles until two successive figures agree to the
//    requested accuracy or the stop is passed. A test with a statistic entry makes one statistic
//    measurement in place of all that; it finds its number of calls itself.
// 3. Simple measurements: unless those two figures agree to 1%, the count is measured some times more. The
//    least figure stands, and the spread is the accuracy. Too wide a spread leads back to the iteration,
//    with four times the count, as long as the count is below the stop.
//
// The finish writes the count, and the accuracy if it is not the one requested. Only readings of no clocks,
// and an entry that fails in the prior measurement, end the method without it. Where the control status is
// watched, a bad one ends the iteration, and half the loops are measured instead.
//
// Accuracy is a fraction, and means that figures agree with each other, not that they are true. In the
// iteration it is the difference of two successive figures over their mean; in simple measurements the
// largest distance of a figure from their mean, over that mean; 0 for a statistic measurement, which is
// taken as exact; 1 as long as nothing has been compared.
//
// The scale is odd. A figure is the clocks of one call, raw clocks over loops. In simple measurements only
// the first figure, that of the iteration, is one; those that follow are the raw clocks of all loops. So
// their spread hardly ever meets the accuracy requested: the method raises the count until the iteration
// agrees to 1% or the stop ends it, and the least figure is the first one. A loop entry that gives its best
// single call is divided by the loops all the same, so its figure falls as the count rises. Figures of all
// builds were measured so.

#include <climits>
#include <cmath>
#include <vector>

#include "measure/mrautotexts.h"
#include "measure/mrcontrolstatus.h"
#include "measure/mrtool.h"
#include "stream/mrtrace.h"

namespace {

constexpr int AutoStartLoops = 1;           // loops
constexpr int AutoStopLoops = 2048;         // loops, before the prior measurement scales them
constexpr long long AutoMinClocks = 10000;  // raw clocks of a reading
constexpr int PriorAttempts = 2;            // measurements
constexpr int ZeroRescue = 10;              // times the count, after a reading of no clocks
constexpr int ReadingAim = 2;               // times the least clocks, after a reading that is too short
constexpr int Growth = 4;                   // times the count, on the way into the iteration
constexpr double EarlyStop = 0.01;          // accuracy, a fraction
constexpr int SimpleMeasurements = 3;       // figures, that of the iteration among them
constexpr int StatusMeasurements = 6;       // the same, after a bad control status
constexpr double StatusTolerance = 2.0;     // times the requested accuracy
constexpr int ShortCallBlock = 100;         // calls timed as one
constexpr int ShortCall = 100;              // timer resolutions, up to half of which is a short call
constexpr double LeastLengthUnit = 100.0;   // microseconds in one of m_numMilliseconds

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

/// What simple measurements come to.
struct Spread {
    double best;      ///< the least figure
    double accuracy;  ///< a fraction, 1 where the mean is no clocks
};

Spread spreadOf(const std::vector<double>& figures) {
    double sum = 0.0;
    double best = figures.front();
    for (const double figure : figures) {
        sum += figure;
        best = std::fmin(best, figure);
    }
    const double mean = sum / static_cast<double>(figures.size());
    if (!(mean > 0.0)) {
        return {best, 1.0};
    }
    double farthest = 0.0;
    for (const double figure : figures) {
        farthest = std::fmax(farthest, std::fabs(figure - mean) / mean);
    }
    return {best, farthest};
}

}  // namespace

/// The counts that are still to be tried. Both ends are scaled together.
struct mrTool::LoopRange {
    int next;  ///< loops of the next measurement
    int stop;  ///< loops from which on the count is not raised

    void scale(long long factor) {
        next = scaled(next, factor);
        stop = scaled(stop, factor);
    }
};

/// What comes next.
enum class mrTool::Phase {
    Iteration,
    Finish,  ///< the figures stand
    GivenUp  ///< the result is a fail, and that is told
};

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
    mrAutoTexts(*this).start(minClocks);
    LoopRange range = {startLoops, maxLoops};
    Phase phase = priorMeasurement(range, minClocks);
    while (phase == Phase::Iteration) {
        phase = iterateMeasurement(range);
    }
    if (phase == Phase::Finish) {
        finishTiming();
    }
}

/// Rough measurements until the reading is long enough. The second one is taken as it is, unless it fails.
mrTool::Phase mrTool::priorMeasurement(LoopRange& range, long long minClocks) {
    const mrAutoTexts texts(*this);
    mrResult r = MR_BAD_ACCURACY;
    for (int attempt = 1; r != MR_OK && attempt <= PriorAttempts; ++attempt) {
        const bool last = attempt == PriorAttempts;
        texts.priorMeasurement(range.next);
        r = startIterations(range.next, minClocks);
        texts.priorResult(r);
        if (r == MR_ACCURACY_FAIL && last) {
            return failTiming();
        }
        if (r == MR_ACCURACY_FAIL) {
            range.scale(ZeroRescue);
        } else if (mrIsFail(r)) {
            m_result = r;
            texts.gaveUp();
            return Phase::GivenUp;
        } else if (r == MR_BAD_ACCURACY && !last) {
            range.scale(powerOfTwoFor(ReadingAim * minClocks / m_numClocks));
        }
    }
    return growCount(range);
}

/// Doubling, and simple measurements where the agreement is not good at once.
mrTool::Phase mrTool::iterateMeasurement(LoopRange& range) {
    const mrAutoTexts texts(*this);
    texts.iteration(range.next, range.stop);
    mrResult r = continueIterations(range.next, range.stop);
    texts.iterationResult(r);
    if (r == MR_BAD_STATUS) {
        avoidBadStatus();
        return Phase::Finish;
    }
    if (r != MR_ACCURACY_FAIL) {
        if (m_accuracy <= EarlyStop) {
            return Phase::Finish;
        }
        texts.simpleMeasurements();
        r = repeatTiming(m_numLoops, SimpleMeasurements);
    }
    switch (r) {
        case MR_ACCURACY_FAIL:
            return rescueZero(range);
        case MR_BAD_ACCURACY:
            return growCount(range);
        default:
            return Phase::Finish;
    }
}

mrTool::Phase mrTool::growCount(LoopRange& range) const {
    range.next = scaled(m_numLoops, Growth);
    return belowStop(range);
}

/// After a reading of no clocks. With one clock a tick no count is below the factor, so it always ends the
/// method. So does a call that fails at once: no multiple of 0 loops is a count.
mrTool::Phase mrTool::rescueZero(LoopRange& range) {
    if (m_numLoops == 0 || mrCpuTicker::getClockFactor() <= range.next) {
        return failTiming();
    }
    range.scale(ZeroRescue);
    return belowStop(range);
}

/// What was measured last decides, not what would come next: a doubling that starts too high is held at the
/// stop.
mrTool::Phase mrTool::belowStop(const LoopRange& range) const {
    return m_numLoops < range.stop ? Phase::Iteration : Phase::Finish;
}

mrTool::Phase mrTool::failTiming() {
    m_result = MR_ACCURACY_FAIL;
    mrAutoTexts(*this).gaveUp();
    writeError();
    return Phase::GivenUp;
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
    mrAutoTexts(*this).finished();
}

bool mrTool::watchedBadStatus() const {
    bool bad87 = false;
    bool badSSX = false;
    return m_watchStatus && mrControlStatus::badCtrlStatus(bad87, badSSX);
}

/// Measures again with half the loops, in the hope that the status stays clean; the last figures stand either
/// way.
void mrTool::avoidBadStatus() {
    const mrAutoTexts texts(*this);
    mrControlStatus::printBadCtrlStatus();
    texts.avoidingBadStatus();
    mrControlStatus::clearCtrlStatus();
    const bool repeats = repeatTiming(m_numLoops, StatusMeasurements) == MR_BAD_STATUS;
    if (!repeats && m_accuracy <= StatusTolerance * m_reqAccuracy) {
        texts.badStatusAvoided();
    } else {
        texts.badStatusStays(repeats);
    }
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
    const double leastClocks = m_numMilliseconds * LeastLengthUnit * mrCpuTicker::getFreq();
    // m_funcClocks is the best single call over the prior loops, so calls far longer than the timer's
    // resolution are timed in blocks as well.
    numIntLoops = ShortCall * tResolution / m_funcClocks >= 2.0 ? ShortCallBlock : 1;
    m_numLoops = m_minNumLoops;
    // The least clocks go in through the argument that the figure comes out of: the clocks of one call.
    double clocks = leastClocks;
    mrTraced("runTimFunc", [&] { runTimFunc(m_minNumLoops, &clocks, false); });
    if (m_funcClocks <= 0.0) {
        return MR_ACCURACY_FAIL;
    }
    m_accuracy = 0.0;
    return watchedBadStatus() ? MR_BAD_STATUS : MR_OK;
}

mrResult mrTool::repeatTiming(int numLoops, int numRepeat) {
    const mrAutoTexts texts(*this);
    // No clocks are the least clocks of a statistic entry that is measured again.
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
        texts.simpleMeasurement(slots[i]);
    }
    const Spread spread = spreadOf(slots);
    m_accuracy = spread.accuracy;
    m_funcClocks = spread.best;
    mrResult r = m_reqAccuracy < m_accuracy ? MR_BAD_ACCURACY : MR_OK;
    if (watchedBadStatus()) {
        r = MR_BAD_STATUS;
        mrControlStatus::printBadCtrlStatus();
    }
    texts.simpleResult(r);
    return r;
}
