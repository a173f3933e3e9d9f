#pragma once

/// Tests that run on each code path of the library.

#include <gtest/gtest.h>

#include "zylcore.h"

/// The parameter: features that are taken from the processor's mask to get to the path.
class OnEachPath : public testing::TestWithParam<Zyl64u> {
  protected:
    void SetUp() override { choose(GetParam()); }
    void TearDown() override { zylInit(); }
    static void choose(Zyl64u without) {
        Zyl64u mask = 0;
        zylGetCpuFeatures(&mask, nullptr);
        EXPECT_EQ(zylSetCpuFeatures(mask & ~without), zylStsNoErr);
    }
};

constexpr Zyl64u Without[] = {0x4, 0x8000, 0};

inline const char* pathName(const testing::TestParamInfo<Zyl64u>& of) {
    return of.param == 0x4 ? "Plain" : of.param == 0x8000 ? "Sse2" : "Best";
}
