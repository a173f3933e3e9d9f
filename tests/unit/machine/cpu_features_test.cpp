#include "machine/mrcpufeatures.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(CpuFeatures, AddUpLabels) {
    static constexpr std::pair<const char*, unsigned long long> rows[] = {
        {"AVX2,AES", 0x85df}, {"xyz,AVX2,", 0x81df},     {"avx2", 0}, {"AVX2 ", 0}, {"WIDEVEC", 0x80000000},
        {"AVX", 0x1df},       {"D21,D22", 0x110f3feddf}, {"", 0},
    };
    for (const auto& [list, mask] : rows) {
        EXPECT_EQ(mrCpuFeatures::cpuFeatures(list), mask) << list;
    }
}

TEST(CpuFeatures, FirstRowOfAMaskWins) {
    EXPECT_EQ(str(mrCpuFeatures::cpuLabel(0x3)), "SSE");
    EXPECT_EQ(str(mrCpuFeatures::cpuName(0x6cdf)), "D7 library version");
    EXPECT_EQ(str(mrCpuFeatures::cpuLabel(0x2)), "Undefined");
}

}  // namespace
