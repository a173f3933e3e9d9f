#pragma once

#include <algorithm>

#include "mr.h"
#include "timing/mrclock.h"
#include "zytest.h"

/// The two timing loops of the suites, written once. A suite writes the body, `tcall_F`, and where a call
/// changes its own input also `tinit_F`; both are known at compile time and inlined, so that between two
/// clock reads stands the library call with its arguments and nothing else.

/// In front of the body entries of a suite.
#define ZY_ENTRY [[gnu::always_inline]] inline

/// For functions that leave their input alone.
ZY_ENTRY int zyNoInit() { return 0; }

constexpr Zyl64u zyLongestTime = 0x7FFFFFFFFFFFFFFF;

/// Keeps a turn of a counted loop that would otherwise be optimised away, and orders memory around it.
ZY_ENTRY void zyKeepTurn() { asm volatile("" ::: "memory"); }

/// Loop method: the best single call of `numLoops`. The status is that of the last call; a failing one does
/// not end the loop.
template <int (*Call)(), int (*Init)()>
mrResult zyTimeLoop(int numLoops, long long* ticks, const char* name) {
    Init();
    int status = Call();
    Zyl64u best = zyLongestTime;
    const Zyl64u first = zyl_StartCpuClocks();
    if (numLoops == 0) {
        best = std::min(best, zyl_StopCpuClocks() - first);
    } else {
        for (int i = 0; i < numLoops; ++i) {
            Init();
            const Zyl64u start = zyl_StartCpuClocks();
            status = Call();
            const Zyl64u stop = zyl_StopCpuClocks();
            best = std::min(best, stop - start);
        }
        zyl_StopCpuClocks();
    }
    *ticks = static_cast<long long>(best);
    return zyTest::checkStatus(status, name);
}

/// The cost of one turn of the counted loop, with what the loop holds besides the call.
template <int (*Init)()>
long long zyLoopOverhead() {
    constexpr int Passes = 100;
    constexpr int Turns = 100;
    Zyl64u least = zyLongestTime;
    for (int pass = 0; pass < Passes; ++pass) {
        const Zyl64u start = zyl_StartCpuClocks();
        for (int i = 0; i < Turns; ++i) {
            Init();
            zyKeepTurn();
        }
        least = std::min(least, zyl_StopCpuClocks() - start);
    }
    return static_cast<long long>(least) / Turns;
}

/// Statistic method: blocks of `step` calls until both the least number of calls and the least total time are
/// reached; the time of one call in the best block, less the cost of the loop. A negative status ends it at
/// once, and its block does not count.
template <int (*Call)(), int (*Init)()>
mrResult zyTimeStat(int* numLoops, long long* ticks, int step, const char* name) {
    zyl_StartCpuClocks();
    const long long overhead = zyLoopOverhead<Init>();
    zyl_StartCpuClocks();
    const int block = std::max(step, 1);
    int done = 0;
    Zyl64u total = 0;
    Zyl64u least = zyLongestTime;
    int kept = 0;
    while (done < *numLoops || static_cast<long long>(total) * mrCpuTicker::getClockFactor() < *ticks) {
        int status = 0;
        const Zyl64u start = zyl_StartCpuClocks();
        for (int i = 0; i < block; ++i) {
            status = Call();
            Init();
            zyKeepTurn();
        }
        const Zyl64u interval = zyl_StopCpuClocks() - start;
        total += interval;
        least = std::min(least, interval);
        if (status != 0) {
            kept = status;
        }
        if (status < 0) {
            break;
        }
        done += block;
    }
    *numLoops = done;
    const long long time = static_cast<long long>(least) / block;
    // A call that costs no more than the loop keeps its time: the correction must not take a figure to zero.
    *ticks = time > overhead ? time - overhead : time;
    return zyTest::checkStatus(kept, name);
}

// Registration. The mark in the name says how the timed body is made up:
//   ZY_REG    one call of F
//   ZY_REG_I  one call of F, and tinit puts its input back
//   ZY_REG_X  F followed by its inverse; tcall_F ignores both statuses and returns 0
// Each joins names: it defines the entries tim_F_loop and tim_F_stat and registers a test of class Class in
// reg_F.

#define ZY_REG(Class, F) ZY_REG_TEST(Class, F, zyNoInit, nullptr, "ZY_REG")
#define ZY_REG_I(Class, F, tinit) ZY_REG_TEST(Class, F, tinit, tinit, "ZY_REG_I")
#define ZY_REG_X(Class, F) ZY_REG_TEST(Class, F, zyNoInit, nullptr, "ZY_REG_X")

#define ZY_REG_TEST(Class, F, timedInit, tinit, mark)                                         \
    mrResult tim_##F##_loop(int numLoops, long long* ticks) {                                 \
        return zyTimeLoop<tcall_##F, timedInit>(numLoops, ticks, #F);                         \
    }                                                                                         \
    mrResult tim_##F##_stat(int* numLoops, long long* ticks, int step) {                      \
        return zyTimeStat<tcall_##F, timedInit>(numLoops, ticks, step, #F);                   \
    }                                                                                         \
    [[maybe_unused]] const bool reg_##F =                                                     \
        mrRegTest(new Class(tcall_##F, tinit, tim_##F##_loop, tim_##F##_stat, #F, SourceFile, \
                            #Class "//" mark)) != 0;
