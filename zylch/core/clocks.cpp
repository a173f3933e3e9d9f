#include "zylcore.h"

// The fences order the processor, the "memory" clobbers the compiler. LFENCE waits until everything before it
// has been carried out; RDTSCP waits for what stands before it, but lets later work start early.

namespace {

Zyl64u joined(unsigned low, unsigned high) { return static_cast<Zyl64u>(high) << 32 | low; }

}  // namespace

Zyl64u zylStartTsc() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("lfence\n\trdtsc" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}

Zyl64u zylStopTsc() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("lfence\n\trdtsc\n\tlfence" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}

Zyl64u zylStartTscp() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("lfence\n\trdtscp" : "=a"(low), "=d"(high) : : "ecx", "memory");
    return joined(low, high);
}

Zyl64u zylStopTscp() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("rdtscp\n\tlfence" : "=a"(low), "=d"(high) : : "ecx", "memory");
    return joined(low, high);
}

Zyl64u zylGetCpuClocks() {
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("rdtsc" : "=a"(low), "=d"(high) : : "memory");
    return joined(low, high);
}
