#include <cpuid.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "../../../zylch/core/dispatch.h"
#include "zylcore.h"

namespace {

constexpr char kKey[] = "rawcpuid";
constexpr unsigned kFlags = 0x3F;
constexpr unsigned kZeroDivide = 0x4;

// Read before main: the state in which others find the library when they call it that early.
const Zyl64u g_enabledAtStart = zylGetEnabledCpuFeatures();
const int g_pathAtStart = zylCodePath;

Zyl64u processorMask() {
    Zyl64u mask = 0;
    EXPECT_EQ(zylGetCpuFeatures(&mask, nullptr), zylStsNoErr);
    return mask;
}

/// The flags that the system reports of the first processor.
std::set<std::string> systemFlags() {
    std::ifstream in("/proc/cpuinfo");
    std::string line;
    while (std::getline(in, line) && line.rfind("flags", 0) != 0) {
    }
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
}

TEST(CpuFeatures, MaskAgreesWithWhatTheSystemReports) {
    const std::set<std::string> flags = systemFlags();
    if (flags.empty())
        GTEST_SKIP() << "no flags in /proc/cpuinfo";
    // By place in the mask; a null stands for a bit that is never set. The system may deny "mpx" to a
    // processor that has it.
    static constexpr const char* names[] = {
        "mmx",           "sse",        "sse2",       "pni",           "ssse3",
        "movbe",         "sse4_1",     "sse4_2",     "avx",           "avx",
        "aes",           "pclmulqdq",  nullptr,      "rdrand",        "f16c",
        "avx2",          "adx",        "rdseed",     "3dnowprefetch", "sha_ni",
        "avx512f",       "avx512cd",   "avx512er",   "avx512pf",      "avx512bw",
        "avx512dq",      "avx512vl",   "avx512vbmi", "mpx",           "avx512_4fmaps",
        "avx512_4vnniw", nullptr,      "avx512ifma", nullptr,         "avx512_vpopcntdq",
        "avx512_bitalg", "avx512_fp16"};
    const Zyl64u mask = processorMask();
    Zyl64u left = mask;
    for (const char* name : names) {
        const bool reported = name != nullptr && flags.count(name) != 0;
        if (name == nullptr || std::string("mpx") != name) {
            EXPECT_EQ((left & 1) != 0, reported) << (name != nullptr ? name : "unused bit");
        }
        left >>= 1;
    }
    EXPECT_EQ(left, 0U);
}

TEST(CpuFeatures, GatewayIsTheInstructionAndOverwritesHalfTheKey) {
    static constexpr Zyl32u leaves[][2] = {{0, 0}, {4, 0},          {4, 1},         {4, 3},
                                           {7, 0}, {0x80000001, 0}, {0x80000002, 0}};
    for (const auto& [leaf, subLeaf] : leaves) {
        Zyl32u expected[4] = {};
        __cpuid_count(leaf, subLeaf, expected[0], expected[1], expected[2], expected[3]);
        Zyl64u key = 0;
        std::memcpy(&key, kKey, sizeof key);
        Zyl32u registers[4] = {leaf, 0xFFFF, subLeaf, 0xFFFF};
        ASSERT_EQ(zylGetCpuFeatures(&key, registers), zylStsNoErr);
        EXPECT_EQ(std::memcmp(registers, expected, sizeof expected), 0) << leaf << "/" << subLeaf;
        EXPECT_NE(std::memcmp(&key, kKey, 4), 0);
        EXPECT_EQ(std::memcmp(reinterpret_cast<char*>(&key) + 4, kKey + 4, 4), 0);
    }
}

TEST(CpuFeatures, NullsAreRefused) {
    Zyl32u registers[4] = {};
    EXPECT_EQ(zylGetCpuFeatures(nullptr, registers), zylStsNullPtrErr);
    Zyl64u key = 0;
    std::memcpy(&key, kKey, sizeof key);
    EXPECT_EQ(zylGetCpuFeatures(&key, nullptr), zylStsNullPtrErr);
    EXPECT_EQ(zylGetMaxCacheSizeB(nullptr), zylStsNullPtrErr);
    EXPECT_EQ(zylGetNumThreads(nullptr), zylStsNullPtrErr);
}

class CodePath : public testing::Test {
  protected:
    void TearDown() override { zylInit(); }
};

TEST_F(CodePath, IsPlainBeforeTheFirstCall) {
    EXPECT_EQ(g_enabledAtStart, 0U);
    EXPECT_EQ(g_pathAtStart, zylPathPlain);
}

TEST_F(CodePath, FollowsTheMask) {
    static constexpr struct {
        Zyl64u mask;
        int path;
    } rows[] = {
        {0x1, zylPathPlain},    {0x3, zylPathPlain},   {0x7, zylPathSse2},
        {0x4, zylPathSse2},     {0x73DF, zylPathSse2}, {0x81DF, zylPathAvx2},
        {0x8000, zylPathPlain}, {0x8004, zylPathAvx2}, {0xF0EDDF, zylPathAvx2},
    };
    for (const auto& row : rows) {
        if ((row.mask & ~processorMask()) != 0)
            continue;
        EXPECT_EQ(zylSetCpuFeatures(row.mask), zylStsNoErr);
        EXPECT_EQ(zylGetEnabledCpuFeatures(), row.mask);
        EXPECT_EQ(zylCodePath, row.path) << std::hex << row.mask;
    }
    EXPECT_EQ(zylInit(), zylStsNoErr);
    EXPECT_EQ(zylGetEnabledCpuFeatures(), processorMask());
}

TEST_F(CodePath, RefusedMaskChangesNothing) {
    constexpr Zyl64u sse2 = 0x7;
    ASSERT_EQ(zylSetCpuFeatures(sse2), zylStsNoErr);
    // The bit 0x80000000 belongs to no processor.
    for (const Zyl64u mask : {Zyl64u{0}, Zyl64u{0x80000000}, Zyl64u{0x80000003}, ~Zyl64u{0}}) {
        EXPECT_EQ(zylSetCpuFeatures(mask), zylStsNotSupportedErr) << std::hex << mask;
        EXPECT_EQ(zylGetEnabledCpuFeatures(), sse2);
        EXPECT_EQ(zylCodePath, zylPathSse2);
    }
}

/// Gives back the floating-point state that a test has changed.
class FloatingPointState : public testing::Test {
  protected:
    void SetUp() override {
        asm volatile("fnstcw %0" : "=m"(m_control));
        asm volatile("stmxcsr %0" : "=m"(m_ssx));
    }
    void TearDown() override { restore(); }
    void restore() const {
        asm volatile("fninit\n\tfldcw %0" : : "m"(m_control));
        asm volatile("ldmxcsr %0" : : "m"(m_ssx));
    }

    unsigned short m_control = 0;
    unsigned m_ssx = 0;
};

TEST_F(FloatingPointState, SetChangesTheBitsUnderTheMaskOnly) {
    static constexpr struct {
        int set;
        int get;
        unsigned start;
        unsigned value;
        unsigned mask;
        unsigned expected;
    } rows[] = {
        {1, 2, 0x037F, 0x0400, 0x0C00, 0x077F},  {1, 2, 0x037F, 0, 0x0300, 0x007F},
        {1, 2, 0x037F, 0xFFFF, 0, 0x037F},       {1, 2, 0x0F7F, 0x023B, 0x0F3F, 0x027B},
        {5, 6, 0x1F80, 0x8000, 0x8000, 0x9F80},  {5, 6, 0xFFBF, 0, 0x3F, 0xFF80},
        {5, 6, 0x1FBF, 0x9F80, 0xFFBF, 0x9F80},  {5, 6, 0x1FC0, 0x9F80, 0xFFBF, 0x9FC0},
        {5, 6, 0x1FC0, 0xFFFF1F80, ~0U, 0x1F80}, {7, 6, 0xFFFF, 0, 0, 0xFFC0},
    };
    for (const auto& row : rows) {
        const bool x87 = row.get == 2;
        zylFpuSsx4TS(x87 ? 1 : 5, row.start, 0xFFFF);
        const unsigned before = zylFpuSsx4TS(row.get, 0, 0);
        const unsigned result = zylFpuSsx4TS(row.set, row.value, row.mask);
        const unsigned after = zylFpuSsx4TS(row.get, 0, 0);
        restore();
        EXPECT_EQ(before, row.start);
        EXPECT_EQ(result, 0U);
        EXPECT_EQ(after, row.expected) << "op " << row.set << std::hex << " mask " << row.mask;
    }
}

TEST_F(FloatingPointState, PendingExceptionDoesNotFire) {
    // A division of the x87 unit by zero, unmasked: the next waiting instruction would be a signal.
    for (const int clearing : {1, 4}) {
        zylFpuSsx4TS(1, 0x3F & ~kZeroDivide, kFlags);
        asm volatile("fld1\n\tfldz\n\tfdivrp");
        const unsigned pending = zylFpuSsx4TS(3, 0, 0);
        const unsigned control = zylFpuSsx4TS(2, 0, 0);
        zylFpuSsx4TS(clearing, 0, 0);
        const unsigned cleared = zylFpuSsx4TS(3, 0, 0);
        const unsigned kept = zylFpuSsx4TS(2, 0, 0);
        restore();
        EXPECT_EQ(pending & kFlags, kZeroDivide);
        EXPECT_EQ(cleared & kFlags, 0U) << "op " << clearing;
        EXPECT_EQ(kept, control);
    }
}

TEST(Status, TextIsOneLineForAnyStatus) {
    const auto check = [](int status) {
        const char* text = zylGetStatusString(status);
        ASSERT_NE(text, nullptr) << status;
        EXPECT_STRNE(text, "") << status;
        EXPECT_EQ(std::strchr(text, '\n'), nullptr) << status;
    };
    for (int status = -200; status <= 200; ++status)
        check(status);
    check(INT_MIN);
    check(INT_MAX);
}

TEST(Status, NamedOnesHaveTextsOfTheirOwn) {
    std::set<std::string> texts = {zylGetStatusString(-999), zylGetStatusString(999)};
    const std::array statuses = {
        zylStsNoErr,          zylStsNoRoomNote,     zylStsThreadsNote,     zylStsBadArgErr,
        zylStsSizeErr,        zylStsNullPtrErr,     zylStsNotSupportedErr, zylStsRegExpPatternErr,
        zylStsRegExpLimitErr, zylStsRegExpStateErr,
    };
    for (const int status : statuses)
        EXPECT_TRUE(texts.insert(zylGetStatusString(status)).second) << status;
}

TEST(Threads, OneIsAllThereIs) {
    static constexpr int rows[][2] = {{1, zylStsNoErr},
                                      {2, zylStsThreadsNote},
                                      {INT_MAX, zylStsThreadsNote},
                                      {0, zylStsSizeErr},
                                      {-1, zylStsSizeErr}};
    for (const auto& [number, status] : rows) {
        EXPECT_EQ(zylSetNumThreads(number), status) << number;
        int threads = 0;
        EXPECT_EQ(zylGetNumThreads(&threads), zylStsNoErr);
        EXPECT_EQ(threads, 1);
    }
}

TEST(Clocks, RiseFromReadToRead) {
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    __get_cpuid(0x80000001, &eax, &ebx, &ecx, &edx);
    const bool hasTscp = (edx >> 27 & 1) != 0;
    Zyl64u last = 0;
    const auto expectLater = [&last](Zyl64u now) {
        EXPECT_GT(now, last);
        last = now;
    };
    // The bare instruction between them bounds each read on both sides. The fenced reads keep the others in
    // order.
    for (int i = 0; i < 100; ++i) {
        expectLater(__builtin_ia32_rdtsc());
        expectLater(zylStartTsc());
        expectLater(zylStopTsc());
        expectLater(zylGetCpuClocks());
        if (hasTscp) {
            expectLater(zylStartTscp());
            expectLater(zylStopTscp());
        }
    }
}

/// Bytes of the largest cache that the system reports, 0 if it reports none.
long long largestCacheOfSystem() {
    namespace fs = std::filesystem;
    long long largest = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/sys/devices/system/cpu/cpu0/cache", error)) {
        std::ifstream in(entry.path() / "size");
        long long kilobytes = 0;
        if (in >> kilobytes)
            largest = std::max(largest, kilobytes * 1024);
    }
    return largest;
}

TEST(CacheSize, IsThatOfTheLargestCache) {
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    if (largestCacheOfSystem() == 0 || __get_cpuid_count(4, 0, &eax, &ebx, &ecx, &edx) == 0 ||
        (eax & 0x1F) == 0)
        GTEST_SKIP() << "the system or leaf 4 does not tell";
    int size = 0;
    EXPECT_EQ(zylGetMaxCacheSizeB(&size), zylStsNoErr);
    EXPECT_EQ(size, largestCacheOfSystem());
}

}  // namespace
