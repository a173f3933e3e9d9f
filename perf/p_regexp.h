#pragma once

/// What the suites of regular expressions share.

#include "parameter/mrmemory.h"
#include "zylch.h"
#include "zytest.h"

inline const Zyl8u* bytes(const mrString& text) { return reinterpret_cast<const Zyl8u*>(text.c_str()); }

/// Gives back what a state was compiled into.
inline void freeState(void*& state) {
    mrFree(state);
    state = nullptr;
}

/// Compiles a pattern into a new block, which takes the place of `state`. A pattern that does not compile
/// leaves none and ends the walk; the rows measured before stand.
inline bool compilePattern(const char* pattern, const char* options, void*& state) {
    freeState(state);
    int size = 0;
    if (zylsRegExpGetSize(pattern, &size) != 0) {
        return false;
    }
    state = mrMalloc(size, 0, 0, nullptr);
    int errorOffset = 0;
    if (state == nullptr || zylsRegExpInit(pattern, options, state, &errorOffset) != 0) {
        freeState(state);
        return false;
    }
    return true;
}

/// Clocks per call, each of which works on one pattern.
class zyPatternTest : public zyTest {
  public:
    using zyTest::zyTest;

    double getDivisor() override { return 1.0; }
    mrString getUnit() override { return "pattern"; }
};
