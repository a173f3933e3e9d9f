#include <gtest/gtest.h>

#include "session/mrbinding.h"
#include "support/captured_output.h"
#include "support/recorded_processor.h"
#include "system/mrfeatureflags.h"
#include "system/mrinfotest.h"

namespace {

/// Registers as makers' manuals give them for such processors, oldest first.
const ProcessorRecord Records[] = {
    // Leaf 1 is the highest, and answers for all that are not there.
    {"GenuineZorva", "", 1, 0, {{1, 0, {0x435, 0, 0, 0x3}}}},
    // Leaf 2 has descriptors that would read as caches without end.
    {"GenuineZorva", "", 2, 0, {{1, 0, {0x686, 2, 0, 0x383f9ff}}, {2, 0, {0x3020101, 0, 0, 0xc040882}}}},
    // Another maker's: the second level in an extended leaf.
    {"TinyCoreLtd.",
     "Tiny 733",
     1,
     0x80000006,
     {{1, 0, {0x698, 0, 0, 0x381b93f}}, {0x80000006, 0, {0, 0x8800880, 0x408120, 0}}}},
    // Two threads, before leaf 4.
    {"GenuineZorva",
     "         Zorva(R) CPU 3.06GHz",
     2,
     0x80000004,
     {{1, 0, {0xf29, 0x20809, 0x4400, 0xbfebfbff}}, {2, 0, {0x665b5001, 0, 0, 0x7b7040}}}},
    // Four cores: leaf 11 counts what leaves 1 and 4 only have room for.
    {"GenuineZorva",
     "Zorva(R) Quad CPU @ 3.60GHz",
     0x16,
     0x80000008,
     {{1, 0, {0x906e9, 0x100800, 0x7ffafbbf, 0xbfebfbff}},
      {4, 0, {0x1c004121, 0x1c0003f, 0x3f, 0}},
      {4, 1, {0x1c004122, 0x1c0003f, 0x3f, 0}},
      {4, 2, {0x1c004143, 0xc0003f, 0x3ff, 0}},
      {4, 3, {0x1c03c163, 0x3c0003f, 0x1fff, 0x6}},
      {11, 0, {1, 2, 0x100, 0}},
      {11, 1, {4, 8, 0x201, 0}},
      {0x80000006, 0, {0, 0, 0x1006040, 0}}}},
    // Another maker's: the extended family counts, leaves 4 and 11 are there and empty.
    {"NorthwindCPU",
     "Northwind CPU 1700, its name as long as can be",
     0xd,
     0x8000001f,
     {{1, 0, {0x800f11, 0x100800, 0x7ed8320b, 0x178bfbff}}, {0x80000006, 0, {0, 0, 0x2006140, 0}}}},
};

/// What the library answers, by the test.
class CpuInfo : public testing::Test {
  protected:
    CpuInfo() {
        status = 0;
        zyl_GetCpuFeatures = [](Zyl64u* mask, Zyl32u*) {
            *mask = 0x1000000303;
            return status;
        };
        zyl_GetEnabledCpuFeatures = []() -> Zyl64u { return 0x1; };
        zyl_GetStatusString = [](int) { return "any text"; };
        zyl_GetMaxCacheSizeB = [](int* size) {
            *size = 12345;
            return status;
        };
    }
    ~CpuInfo() override {
        zyl_GetCpuFeatures = nullptr;
        zyl_GetEnabledCpuFeatures = nullptr;
        zyl_GetStatusString = nullptr;
        zyl_GetMaxCacheSizeB = nullptr;
    }

    /// What the test prints of that processor where only errors pass.
    static std::string printed(const ProcessorRecord& record) {
        const RecordedProcessor processor(record);
        __mrZorvaCpuTest test(nullptr, nullptr, "__mrZorvaCpu", "perflib/src/mr", "__mrZorvaCpuTest/CPU");
        CapturedOutput output(MSG_ERR);
        mrTest::m_currentResult = MR_NOT_RUN;
        test.loopData();
        EXPECT_EQ(mrTest::m_currentResult, MR_OK);
        return output.text();
    }

    static inline int status = 0;
};

TEST_F(CpuInfo, DescribesProcessorsOfAllAges) {
    static constexpr struct {
        int processor;
        const char* part;
    } rows[] = {
        {0, "Largest Standard Function 0x00000001\n    Largest Extended Function 0x00000435\n    Vendor-ID"},
        {0, "Family   0x04\n    Model    0x03\n    Stepping 0x05\n    Type     0x00\n    Brand ID 0x00\n"},
        {0, "Technology is not supported\n    Logical Processors 0    - Number of"},
        {0, "number of processor cores per package\n\n    Extended L2"},
        {1, "Model    0x08\n    Stepping 0x06\n    Type     0x00\n    Brand ID 0x02\n"},
        {1, "number of processor cores per package\n\n    Extended L2"},
        {2,
         "\n    ATTENTION! It is not Genuine Zorva processor.\n    Information below may be inadequate.\n"
         "    Vendor-ID      TinyCoreLtd.\n    Brand String   Tiny 733\n"},
        {2, "Size Kb       64\n    L2 Cache Line Size     32\n    L2 Cache Associativity 16-Way\n"},
        {4, "Family   0x06\n    Model    0x9E\n    Stepping 0x09\n"},
        {4,
         "Logical Processors 8    - Number of logical processors per physical package\n"
         "    Cores per Package  4    - Maximum number of processor cores per package\n"
         "\n    Cache Type Data Cache\n    Cache Level       1   \n    Cache Size Kb     32  \n"
         "    Threads Sharing   2    - Maximum number of threads sharing this cache\n"
         "    Number of Sets    64  \n    Line Size         64   - System coherency line size\n"
         "    Line Partitions   1    - Physical line partitions\n"
         "    Associativity     8    - Ways of associativity\n    Self Initializing cache level\n"
         "\n    Cache Type Instruction Cache\n"},
        {4, "Unified Cache\n    Cache Level       2   \n    Cache Size Kb     256 \n"},
        {4, "Cache Size Kb     8192\n    Threads Sharing   16   - "},
        {4,
         "cache level\n    Cache is inclusive to lower cache levels\n\n    Extended L2 Cache Features\n\n"},
        {5, "ATTENTION"},
        {5, "Family   0x17\n    Model    0x01\n"},
        {5, "Logical Processors 16   - "},
        {5,
         "number of processor cores per package\n\n    Extended L2 Cache Features\n\n    L2 Cache Size Kb    "
         "   512\n"},
    };
    for (const auto& row : rows) {
        const std::string text = printed(Records[row.processor]);
        EXPECT_NE(text.find(row.part), std::string::npos) << row.part << "\nis missing in\n" << text;
    }
}

TEST_F(CpuInfo, KeepsItsLayout) {
    const std::string text = printed(Records[3]);
    EXPECT_EQ(
        text.substr(0, text.find("zylCPUID_SSE2")),
        "    Zorva(R) Processor Identification\n    Got by CPUID Instruction Functions\n"
        "    Largest Standard Function 0x00000002\n    Largest Extended Function 0x80000004\n"
        "    Vendor-ID      GenuineZorva\n    Brand String            Zorva(R) CPU 3.06GHz\n"
        "\n    Processor Identification Signature\n\n"
        "    Family   0x0F\n    Model    0x02\n    Stepping 0x09\n    Type     0x00\n    Brand ID 0x09\n"
        "\n    Multi Threading Features\n\n    Hyper-Threading Technology is supported\n"
        "    Logical Processors 2    - Number of logical processors per physical package\n"
        "    Cores per Package  1    - Maximum number of processor cores per package\n"
        "\n    Extended L2 Cache Features\n\n    L2 Cache Size Kb       0\n"
        "    L2 Cache Line Size     0\n    L2 Cache Associativity Disabled\n"
        "\n    Feature Flags\n    got by zylGetCpuFeatures & zylGetEnabledCpuFeatures\n\n"
        "    Features            CPU  Enabled  \n"
        "    zylCPUID_MMX        +    +        Multimedia Extensions         \n"
        "    zylCPUID_SSE        +    -        Streaming SIMD Extensions     \n    ");
    EXPECT_NE(text.find("\n    zylCPUID_AVX        +    -        Advanced Vector Extensions instruction set\n"
                        "    zylAVX_ENABLEDBYOS  +    -        "),
              std::string::npos);
    EXPECT_NE(text.find("\n    zylCPUID_AVX2       -    -        "), std::string::npos);
    EXPECT_NE(text.find("\n    zylCPUID_AVX512_FP16+    -        "), std::string::npos);
}

TEST_F(CpuInfo, ReportsAStatusInPlaceOfTheFlags) {
    status = -2;
    const std::string text = printed(Records[0]);
    EXPECT_NE(text.find("\n\n--ZYL FAIL. status = -2: any text\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("zylCPUID_"), std::string::npos) << text;
}

TEST_F(CpuInfo, LargestCacheIsTheLibrarysOrThatOfLeaf4) {
    // The third description says 2 GB, which ends the walk.
    const ProcessorRecord senseless{"GenuineZorva",
                                    "",
                                    4,
                                    0,
                                    {{4, 0, {0x143, 0xc0003f, 0x3ff, 0}},
                                     {4, 1, {0x121, 0xc0003f, 0x3f, 0}},
                                     {4, 2, {0x163, 0xffc0003f, 0x7fff, 0}},
                                     {4, 3, {0x183, 0x3c0003f, 0x1fff, 0}}}};
    const std::pair<const ProcessorRecord*, int> rows[] = {{&Records[0], 0},
                                                           {&Records[1], 0},
                                                           {&Records[4], 8 << 20},
                                                           {&Records[5], 0},
                                                           {&senseless, 256 << 10}};
    for (const auto& [record, size] : rows) {
        const RecordedProcessor processor(*record);
        status = 0;
        EXPECT_EQ(mrGetMaxCacheSizeB(), 12345);
        status = -2;
        EXPECT_EQ(mrGetMaxCacheSizeB(), size);
    }
}

TEST_F(CpuInfo, FlagsStandAtTheirBits) {
    const RecordedProcessor processor(Records[5]);
    for (const char* name :
         {"FPU", "CMOV", "MMX", "SSE2", "HTT", "SSE3", "FMA", "SSE4.2", "AES", "AVX", "RDRRAND"}) {
        ASSERT_NE(mrFindFeatureFlag(name), nullptr) << name;
        EXPECT_TRUE(mrHasFeature(*mrFindFeatureFlag(name))) << name;
    }
    for (const char* name :
         {"PSN", "DS", "IA64", "PBE", "VMX", "CNXT-ID", "PDCM", "DCA", "x2APIC", "Zorva(R)64", "LAHF"}) {
        ASSERT_NE(mrFindFeatureFlag(name), nullptr) << name;
        EXPECT_FALSE(mrHasFeature(*mrFindFeatureFlag(name))) << name;
    }
}

}  // namespace
