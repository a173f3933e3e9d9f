// The clock pair before a library is bound: the framework's own reads of the time-stamp counter, fenced so
// that neither earlier work sinks into the timed stretch nor timed work leaks out of it.

#include <x86intrin.h>

#include "machine/mrlibrary.h"

namespace {

Zyl64u startTsc() {
    _mm_lfence();
    const Zyl64u ticks = __rdtsc();
    _mm_lfence();
    return ticks;
}

Zyl64u stopTsc() {
    _mm_lfence();
    return __rdtsc();
}

}  // namespace

constinit ZylClocksFunc zyl_StartCpuClocks = startTsc;
constinit ZylClocksFunc zyl_StopCpuClocks = stopTsc;
