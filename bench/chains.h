#pragma once

/// Bodies of a known length: chains in which each multiplication waits for the one before, also that of the
/// call before. The value stays in a register that the code around leaves alone, since a way through memory
/// would take longer than the shortest body.
template <int Count, int Times = 1>
[[gnu::always_inline]] inline int chain() {
    for (int i = 0; i < Times; ++i) {
        asm volatile(
            ".rept %c0\n\t"
            "imul %%r11d, %%r11d\n\t"
            ".endr"
            :
            : "i"(Count)
            : "r11", "cc");
    }
    return 0;
}

/// X(name, multiplications, times): about as many clocks as the name says, at 2.3 clocks a multiplication.
/// The longest is a loop, as its code would not fit into the nearest cache.
#define FOR_EACH_CHAIN(X) \
    X(chain4, 2, 1)       \
    X(chain30, 13, 1)     \
    X(chain170, 75, 1)    \
    X(chain1500, 663, 1)  \
    X(chain20000, 442, 20)
