#pragma once

/// A chain in which each multiplication waits for the one before.
template <int Count>
[[gnu::always_inline]] inline void multiply(unsigned& value) {
    asm volatile(
        ".rept %c1\n\t"
        "imul %0, %0\n\t"
        ".endr"
        : "+r"(value)
        : "i"(Count));
}

/// Bodies behind the boundary of a shared object, by the number of their dependent multiplications. All
/// return 0.
int stepsNone();
int steps10();
int steps100();
int steps1000();
