#pragma once

/// Faults as a function under test has them. Plain code for them would be undefined, and a compiler may do
/// without it.

inline void badStore() {
    volatile char* address = nullptr;
    asm volatile("movb $0, (%0)" : : "r"(address) : "memory");
}

inline void badInstruction() { asm volatile("ud2"); }
