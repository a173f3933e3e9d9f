#pragma once

/// Faults as a function under test has them. Plain code for them would be undefined, and a compiler may do
/// without it.

inline void badStore() {
    volatile char* address = nullptr;
    asm volatile("movb $0, (%0)" : : "r"(address) : "memory");
}

inline void badInstruction() { asm volatile("ud2"); }

inline void integerDivide() {
    asm volatile("xorl %%edx, %%edx\n\tmovl $1, %%eax\n\tdivl %0" : : "r"(0) : "eax", "edx", "cc");
}

/// A fault where zero divide is not masked.
inline void x87Divide() { asm volatile("fld1\n\tfldz\n\tfdivrp\n\tfwait\n\tfstp %%st(0)" : :); }

[[gnu::noinline]] inline int useUpTheStack(volatile int* depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(*depth);
    // Always true, but only at run time.
    return *depth >= 0 ? useUpTheStack(depth) + room[0] : room[0];
}

inline void stackOverflow() {
    volatile int depth = 0;
    useUpTheStack(&depth);
}
