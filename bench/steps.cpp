// A library whose functions take a known time: none, or a chain in which each step waits for the one before.

#include "steps.h"

// Each call goes on with the value of the one before, or calls would overlap.
static unsigned value = 3;

template <int Count>
static int chain() {
    multiply<Count>(value);
    return 0;
}

int stepsNone() { return 0; }
int steps10() { return chain<10>(); }
int steps100() { return chain<100>(); }
int steps1000() { return chain<1000>(); }
