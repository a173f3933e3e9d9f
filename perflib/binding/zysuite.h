#pragma once

#include <algorithm>

#include "job/mrregistry.h"
#include "measure/mrclock.h"
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

/// Keeps what a body has computed, and so its call: a compiler that knows the function may see that nobody
/// asks for the result, and leave the call out.
template <class T>
ZY_ENTRY void zyKeep(T value) {
    asm volatile("" : : "g"(value) : "memory");
}

// The two timed stretches are functions of their own: what their callers keep between calls, totals of 64
// bits above all, would in 32 bits go through memory around each call of the body. Here nothing lives across
// a turn but the counter and the start, and those fit into the registers that a call leaves alone.

/// Ticks of one call, clock reads included; its status into `status`.
template <int (*Call)()>
[[gnu::noinline]] Zyl64u zyTimeCall(int& status) {
    const Zyl64u start = zyl_StartCpuClocks();
    const int returned = Call();
    const Zyl64u stop = zyl_StopCpuClocks();
    status = returned;
    return stop - start;
}

/// Ticks of `turns` calls, at least one, each with its init after it; the last one's status into `status`.
template <int (*Call)(), int (*Init)()>
[[gnu::noinline]] Zyl64u zyTimeBlock(unsigned turns, int& status) {
    int returned = 0;
    const Zyl64u start = zyl_StartCpuClocks();
    do {
        returned = Call();
        Init();
        zyKeepTurn();
    } while (--turns != 0);
    const Zyl64u stop = zyl_StopCpuClocks();
    status = returned;
    return stop - start;
}

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
            best = std::min(best, zyTimeCall<Call>(status));
        }
        zyl_StopCpuClocks();
    }
    *ticks = static_cast<long long>(best);
    return zyTest::checkStatus(status, name);
}

/// The cost of one turn of a block, with what it holds besides the call.
template <int (*Init)()>
long long zyLoopOverhead() {
    constexpr int Passes = 100;
    constexpr int Turns = 100;
    Zyl64u least = zyLongestTime;
    for (int pass = 0; pass < Passes; ++pass) {
        int status = 0;
        least = std::min(least, zyTimeBlock<zyNoInit, Init>(Turns, status));
    }
    return static_cast<long long>(least) / Turns;
}

/// Statistic method: blocks of `step` calls until both the least number of calls and the least total time are
/// reached; the time of one call in the best block, less the cost of the loop. A negative status ends it at
/// once, and its block does not count.
template <int (*Call)(), int (*Init)()>
mrResult zyTimeStat(int* numLoops, long long* ticks, int step, const char* name) {
    zyl_StartCpuClocks();
    mrBlockTicks* const raw = mrBlockTicks::wanted;
    const long long overhead = raw == nullptr ? zyLoopOverhead<Init>() : 0;
    zyl_StartCpuClocks();
    const int block = std::max(step, 1);
    if (raw != nullptr) {
        int status = 0;
        raw->bareLoop = zyTimeBlock<zyNoInit, Init>(static_cast<unsigned>(block), status);
    }
    int done = 0;
    Zyl64u total = 0;
    Zyl64u least = zyLongestTime;
    int kept = 0;
    while (done < *numLoops || static_cast<long long>(total) * mrCpuTicker::getClockFactor() < *ticks) {
        int status = 0;
        const Zyl64u interval = zyTimeBlock<Call, Init>(static_cast<unsigned>(block), status);
        total += interval;
        least = std::min(least, interval);
        if (status != 0) {
            kept = status;
        }
        if (status < 0) {
            break;
        }
        done += block;
        if (raw != nullptr) {
            raw->blocks.push_back(interval);
        }
    }
    if (raw != nullptr) {
        raw->status = kept;
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
