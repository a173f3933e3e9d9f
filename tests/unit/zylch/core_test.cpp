#include <cpuid.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "../../../zylch/core/dispatch.h"
#include "support/program.h"
#include "zylcore.h"

namespace {

// Read before main: the state in which others find the library when they call it that early.
const Zyl64u g_enabledAtStart = zylGetEnabledCpuFeatures();
const int g_pathAtStart = zylCodePath;

Zyl64u processorMask() {
    Zyl64u mask = 0;
    EXPECT_EQ(zylGetCpuFeatures(&mask, nullptr), zylStsNoErr);
    return mask;
}

TEST(CpuFeatures, MaskAgreesWithWhatTheSystemReports) {
    std::ifstream in("/proc/cpuinfo");
    std::string line;
    while (std::getline(in, line) && line.rfind("flags", 0) != 0) {
    }
    std::istringstream words(line);
    const std::set<std::string> flags{std::istream_iterator<std::string>(words), {}};
    if (flags.empty() || emulated()) {
        GTEST_SKIP() << "no flags in /proc/cpuinfo, or those of another processor than the program sees";
    }
    // By place in the mask; "none" stands for a bit that is never set. The system may deny "mpx" to a
    // processor that has it.
    std::istringstream names(
        "mmx sse sse2 pni ssse3 movbe sse4_1 sse4_2 avx avx aes pclmulqdq none rdrand f16c avx2 "
        "adx rdseed 3dnowprefetch sha_ni avx512f avx512cd avx512er avx512pf avx512bw avx512dq avx512vl "
        "avx512vbmi mpx avx512_4fmaps avx512_4vnniw none avx512ifma none avx512_vpopcntdq avx512_bitalg "
        "avx512_fp16");
    Zyl64u left = processorMask();
    for (std::string name; names >> name; left >>= 1) {
        if (name != "mpx") {
            EXPECT_EQ(left & 1, flags.count(name)) << name;
        }
    }
    EXPECT_EQ(left, 0U);
}

TEST(CpuFeatures, GatewayIsTheInstructionAndOverwritesHalfTheKey) {
    static constexpr Zyl32u leaves[][2] = {{0, 0}, {4, 3}, {0x80000002, 0}};
    for (const auto& [leaf, subLeaf] : leaves) {
        Zyl32u expected[4] = {};
        __cpuid_count(leaf, subLeaf, expected[0], expected[1], expected[2], expected[3]);
        char key[] = "rawcpuid";
        Zyl64u mask = 0;
        std::memcpy(&mask, key, sizeof mask);
        EXPECT_EQ(zylGetCpuFeatures(&mask, nullptr), zylStsNullPtrErr);
        Zyl32u registers[4] = {leaf, 0xFFFF, subLeaf, 0xFFFF};
        ASSERT_EQ(zylGetCpuFeatures(&mask, registers), zylStsNoErr);
        EXPECT_EQ(std::memcmp(registers, expected, sizeof expected), 0) << leaf << "/" << subLeaf;
        std::memcpy(key, &mask, sizeof mask);
        EXPECT_NE(std::string(key, 4), "rawc");
        EXPECT_EQ(std::string(key + 4), "puid");
    }
}

TEST(CodePath, IsPlainAtFirstAndFollowsTheMask) {
    EXPECT_EQ(g_enabledAtStart, 0U);
    EXPECT_EQ(g_pathAtStart, zylPathPlain);
    static constexpr struct {
        Zyl64u mask;
        int path;
    } rows[] = {
        {0x3, zylPathPlain},    {0x7, zylPathSse2},    {0x73DF, zylPathSse2},
        {0x8000, zylPathPlain}, {0x8004, zylPathAvx2}, {0xF0EDDF, zylPathAvx2},
    };
    for (const auto& row : rows) {
        if ((row.mask & ~processorMask()) != 0) {
            continue;
        }
        EXPECT_EQ(zylSetCpuFeatures(row.mask), zylStsNoErr);
        // Refused, and nothing changes. The bit 0x80000000 belongs to no processor.
        for (const Zyl64u refused : {Zyl64u{0}, Zyl64u{0x80000003}, ~Zyl64u{0}}) {
            EXPECT_EQ(zylSetCpuFeatures(refused), zylStsNotSupportedErr) << std::hex << refused;
        }
        EXPECT_EQ(zylGetEnabledCpuFeatures(), row.mask);
        EXPECT_EQ(zylCodePath, row.path) << std::hex << row.mask;
    }
    EXPECT_EQ(zylInit(), zylStsNoErr);
    EXPECT_EQ(zylGetEnabledCpuFeatures(), processorMask());
}

/// Gives back the floating-point state that a test has changed.
class FloatingPointState : public testing::Test {
  protected:
    FloatingPointState() { asm volatile("fnstcw %0\n\tstmxcsr %1" : "=m"(m_control), "=m"(m_ssx)); }
    ~FloatingPointState() override { restore(); }
    void restore() const { asm volatile("fninit\n\tfldcw %0\n\tldmxcsr %1" : : "m"(m_control), "m"(m_ssx)); }

    unsigned short m_control = 0;
    unsigned m_ssx = 0;
};

// A reserved bit would be a fault of the instruction.
TEST_F(FloatingPointState, SetLeavesReservedBitsAndThoseOutsideTheMask) {
    zylFpuSsx4TS(5, 0xFFFF1F80, ~0U);
    const unsigned all = zylFpuSsx4TS(6, 0, 0);
    zylFpuSsx4TS(5, 0xFFFF, 0x8015);
    const unsigned some = zylFpuSsx4TS(6, 0, 0);
    zylFpuSsx4TS(7, 0, 0);
    const unsigned cleared = zylFpuSsx4TS(6, 0, 0);
    restore();
    EXPECT_EQ(all, 0x1F80U);
    EXPECT_EQ(some, 0x9F95U);
    EXPECT_EQ(cleared, 0x9F80U);
}

TEST_F(FloatingPointState, PendingExceptionDoesNotFire) {
    // A division of the x87 unit by zero, unmasked: the next waiting instruction would be a signal.
    for (const int clearing : {1, 4}) {
        zylFpuSsx4TS(1, 0x3B, 0x3F);
        asm volatile("fld1\n\tfldz\n\tfdivrp");
        const unsigned pending = zylFpuSsx4TS(3, 0, 0);
        zylFpuSsx4TS(clearing, 0, 0);
        const unsigned cleared = zylFpuSsx4TS(3, 0, 0);
        restore();
        EXPECT_EQ(pending & 0x3F, 4U);
        EXPECT_EQ(cleared & 0x3F, 0U) << "op " << clearing;
    }
}

TEST(Clocks, RiseFromReadToRead) {
    // The bare instruction between them bounds the reads on both sides.
    Zyl64u last = 0;
    for (int i = 0; i < 100; ++i) {
        for (const auto& clock : {zylStartTsc, zylStopTsc, zylGetCpuClocks}) {
            const Zyl64u before = __builtin_ia32_rdtsc();
            EXPECT_GT(before, last);
            last = clock();
            EXPECT_GT(last, before);
        }
    }
}

}  // namespace
