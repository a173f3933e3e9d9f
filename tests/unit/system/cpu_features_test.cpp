#include "system/mrcpufeatures.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(CpuFeatures, AddUpLabels) {
    static constexpr struct {
        const char* list;
        unsigned long long mask;
    } rows[] = {
        {"AVX2,AES", 0x85df}, {"xyz,AVX2,", 0x81df},     {"avx2", 0},
        {"AVX2 ", 0},         {"WIDEVEC", 0x80000000},   {"AVX512_FP16", 0x1000000000},
        {"AVX", 0x1df},       {"D21,D22", 0x110f3feddf}, {"", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(mrCpuFeatures::cpuFeatures(row.list), row.mask) << row.list;
    }
}

TEST(CpuFeatures, FirstRowOfAMaskWins) {
    EXPECT_EQ(str(mrCpuFeatures::cpuLabel(0x3)), "SSE");
    EXPECT_EQ(str(mrCpuFeatures::cpuName(0x7)), "Streaming SIMD Extensions 2");
    EXPECT_EQ(str(mrCpuFeatures::cpuName(0x6cdf)), "D7 library version");
    EXPECT_EQ(str(mrCpuFeatures::cpuLabel(0x2)), "Undefined");
    EXPECT_EQ(str(mrCpuFeatures::cpuName(0x2)), "Unknown processor");
}

/// A slip in a mask or a row out of place breaks one of the sums that the table is made of.
TEST(CpuFeatures, CodePathsAreMadeOfFeatures) {
    unsigned long long features = 0;
    for (int i = 0; i < mrCpuFeatures::NumFeatures; ++i) {
        features |= mrCpuFeatures::cpuFeatureArray[i].mask;
    }
    for (int i = mrCpuFeatures::NumFeatures; i < mrCpuFeatures::NumRows; ++i) {
        const mrCpuFeatures::Row& row = mrCpuFeatures::cpuFeatureArray[i];
        EXPECT_EQ(row.label, "D" + std::to_string(i - mrCpuFeatures::NumFeatures));
        EXPECT_EQ(row.mask & ~features, 0u) << row.label;
    }
    // All bits but the system's leave for AVX and two that no feature has.
    EXPECT_EQ(features, 0x1dffffedff);
}

TEST(CpuFeatures, ListThemselvesForTheHelp) {
    const std::string list = str(mrCpuFeatures::optimizedList());
    EXPECT_EQ(list.find("MMX      : optimized for Multimedia Extensions\nSSE      : optimized for "), 0u);
    EXPECT_NE(list.find("\nAVX512_BITALG: optimized for Advanced"), std::string::npos);
    EXPECT_NE(list.find("\nD22      : optimized for D22 library version\n"), std::string::npos);
    EXPECT_EQ(str(mrCpuFeatures::listLine({"PX", 0, "any"})), "PX       : non optimized code\n");
    EXPECT_EQ(str(mrCpuFeatures::listLine({"PX", 1, "Technology of no path"})), "");
}

}  // namespace
