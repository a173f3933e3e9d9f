// The rate of the tick counter. The time of day turns a second over at the same moment for all, but it can be
// set, the process can be stopped and a busy machine can let it wait; so a second clock watches.

#include "measure/mrtickrate.h"

#include <algorithm>
#include <cmath>

#include "stream/mrostream.h"

namespace {

constexpr double Tolerance = 0.01;
constexpr int MostRounds = 6;
/// A time of day that was set back does not turn; nobody waits longer for it.
constexpr double LongestTurn = 1.0 + 2 * Tolerance;

double steadySeconds() {
    timespec now = {};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) {
        clock_gettime(CLOCK_MONOTONIC, &now);
    }
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// A read of the ticks, and the steady clock on both sides of it.
struct Moment {
    double before;
    Zyl64u ticks;
    double after;

    explicit Moment(const mrRateClocks& clocks)
        : before(clocks.steady()), ticks(clocks.ticks()), after(clocks.steady()) {}
};

struct Round {
    Zyl64u ticks = 0;
    double deviation = HUGE_VAL;  ///< from one second, the worst that the steady clock allows

    bool isGood() const { return deviation <= Tolerance; }
};

/// Ticks until the time of day has gone on by a second, which it does sooner after a first turn than after
/// any other moment.
Round waitForTurn(const mrRateClocks& clocks) {
    const Moment start(clocks);
    const std::time_t second = clocks.seconds();
    while (std::difftime(clocks.seconds(), second) < 1.0 && clocks.steady() - start.after < LongestTurn) {
    }
    const Moment stop(clocks);
    return {stop.ticks - start.ticks,
            std::max(std::fabs(stop.after - start.before - 1.0), std::fabs(stop.before - start.after - 1.0))};
}

void reportDisturbed(double deviation) {
    g_ostrm << MSG_WARN << mrFormat("-- Tick frequency may be wrong by %.0f%%", deviation * 100.0)
            << ": no second of its measurement was undisturbed\n"
            << MSG_END_FLUSH;
}

}  // namespace

const mrRateClocks mrSystemClocks = {zylGetCpuClocks, [] { return std::time(nullptr); }, steadySeconds};

int mrMeasureMHz(const mrRateClocks& clocks) {
    Round best;
    Round other;
    bool atTurn = false;
    for (int i = 0; i < MostRounds && !other.isGood(); ++i) {
        // The first round only finds the turn of a second; the ones after it last a full second each.
        if (!atTurn) {
            waitForTurn(clocks);
        }
        const Round round = waitForTurn(clocks);
        atTurn = round.isGood();
        if (best.isGood() && atTurn) {
            other = round;
        } else if (round.deviation < best.deviation) {
            best = round;
        }
    }
    if (!best.isGood()) {
        reportDisturbed(best.deviation);
    }
    // One that stands alone counts twice.
    const auto second = static_cast<float>(best.ticks);
    const auto third = static_cast<float>(other.isGood() ? other.ticks : best.ticks);
    const float sum = second + third;
    return static_cast<int>(static_cast<double>(sum) / 1000000.0 * 0.5);
}
