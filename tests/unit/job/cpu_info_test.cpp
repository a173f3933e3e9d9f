#include <gtest/gtest.h>

#include "job/mrinfotest.h"
#include "machine/mrlibrary.h"
#include "support/captured_output.h"
#include "support/golden.h"
#include "support/recorded_processor.h"

namespace {

/// Registers as makers' manuals give them for such processors.
const ProcessorRecord Records[] = {
    // No extended leaves; leaf 1 is the highest, and answers for all that are not there.
    {"GenuineZorva", "", 1, 0, {{1, 0, {0x435, 0, 0, 0x3}}}},
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
      {4, 1, {0x1c03c163, 0x3c0003f, 0x1fff, 0x6}},
      {11, 0, {1, 2, 0x100, 0}},
      {11, 1, {4, 8, 0x201, 0}}}},
    // With AVX-512; the third level has 11 ways.
    {"GenuineZorva",
     "Zorva(R) Server CPU @ 2.50GHz",
     0x16,
     0x80000008,
     {{1, 0, {0x50654, 0x400800, 0x7ffefbff, 0xbfebfbff}},
      {4, 0, {0x7c004143, 0x3c0003f, 0x3ff, 0}},
      {4, 1, {0x7c0fc163, 0x280003f, 0xdfff, 0x4}},
      {7, 0, {0, 0xd39ffffb, 0, 0}}}},
    // Another maker's: the second level in an extended leaf, the extended family counts, leaves 4 and 11 are
    // there and empty.
    {"NorthwindCPU",
     "Northwind CPU 1700",
     0xd,
     0x8000001f,
     {{1, 0, {0x800f11, 0x100800, 0x7ed8320b, 0x178bfbff}}, {0x80000006, 0, {0, 0, 0x2006140, 0}}}},
    // A cache that says 2 GB ends the walk through them.
    {"GenuineZorva",
     "",
     4,
     0,
     {{4, 0, {0x143, 0xc0003f, 0x3ff, 0}},
      {4, 1, {0x163, 0xffc0003f, 0x7fff, 0}},
      {4, 2, {0x183, 0x3c0003f, 0x1fff, 0}}}},
};

TEST(CpuInfo, DescribesProcessors) {
    static int status;  // the library's answer about its features
    zyl_GetCpuFeatures = [](Zyl64u* mask, Zyl32u*) {
        *mask = 0x1000100303;
        return status;
    };
    zyl_GetEnabledCpuFeatures = []() -> Zyl64u { return 0x1; };
    zyl_GetStatusString = [](int) { return "any text"; };
    zyl_GetMaxCacheSizeB = [](int*) { return -2; };
    std::string text;
    for (const ProcessorRecord& record : Records) {
        const RecordedProcessor processor(record);
        status = &record == Records ? -2 : 0;
        __mrZorvaCpuTest test(nullptr, nullptr, "__mrZorvaCpu", "perflib/src/mr", "__mrZorvaCpuTest/CPU");
        CapturedOutput output(MSG_ERR);
        mrTest::m_currentResult = MR_NOT_RUN;
        test.loopData();
        EXPECT_EQ(mrTest::m_currentResult, MR_OK);
        text += output.text() + "    (largest cache " + std::to_string(mrGetMaxCacheSizeB()) + ")\n";
    }
    expectGolden("unit/job/golden/cpu_info.txt", text);
    zyl_GetCpuFeatures = nullptr;
    zyl_GetEnabledCpuFeatures = nullptr;
    zyl_GetStatusString = nullptr;
    zyl_GetMaxCacheSizeB = nullptr;
}

}  // namespace
