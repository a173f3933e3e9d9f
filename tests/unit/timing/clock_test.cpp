#include "timing/mrclock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "support/captured_output.h"
#include "support/recorded_processor.h"
#include "timing/mrident.h"
#include "timing/mrpriority.h"

namespace {

TEST(Clock, TakesTheNearestKnownRate) {
    static constexpr struct {
        int measured, nominal;
    } rows[] = {
        {2393, 2400}, {3500, 3500}, {2450, 2400},  // as near to 2500, but that comes later
        {2451, 2500}, {59, 60},     {58, 58},     {3060, 3060}, {3154, 3060}, {3155, 3155},
        {4060, 4060}, {4500, 4500}, {50, 50},     {0, 0},       {1165, 1165}, {1031, 1031},
        {1030, 1000}, {2515, 2500}, {2516, 2530}, {-5, -5},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(mrCpuTicker::nominalFreq(row.measured), row.nominal) << row.measured;
    }
}

TEST(Clock, KeepsTheFrequencyMeasured) {
    const int before = mrCpuTicker::m_freqMHz;
    mrCpuTicker::m_freqMHz = 2345;
    EXPECT_EQ(mrCpuTicker::getFreq(), 2345);
    mrCpuTicker::m_freqMHz = before;
}

/// Every field as text, in order.
std::string fields(const ProcessorRecord& record) {
    const RecordedProcessor processor(record);
    tamarinIdent id = {};
    EXPECT_EQ(zyl_get_tamarin_ident(&id), 0);
    const int values[] = {id.family,        id.stepping, id.model, id.type,   id.features, id.leaf2EAX,
                          id.leaf2EDX,      id.mmx,      id.sse,   id.sse2,   id.htt,      id.sse3,
                          id.lm64,          id.ssse3,    id.cores, id.sse41,  id.sse42,    id.extendedFamily,
                          id.extendedModel, id.movbe,    id.avx,   id.osxsave};
    std::string text;
    for (const int value : values) {
        text += std::to_string(value) + " ";
    }
    return text;
}

TEST(Ident, TakesTheBitsOfTheLeaves) {
    // Signature: extended family 0xAB, extended model 0xC, family 9, model 0xD, stepping 7, bit 12 set.
    constexpr Zyl32u Signature = 0x0ABC19D7;
    static const struct {
        const char* what;
        ProcessorRecord record;
        const char* fields;
    } rows[] = {
        {"no flag",
         {"ZorvaGenuine",
          "",
          4,
          0x80000001,
          {{1, 0, {Signature, 0, 0, 0}}, {2, 0, {11, 1, 1, 22}}, {4, 0, {0x03FFFFFF, 0, 0, 0}}}},
         "9 7 13 3 0 11 22 0 0 0 0 0 0 0 1 0 0 171 12 0 0 0 "},
        {"all flags",
         {"ZorvaGenuine",
          "",
          4,
          0x80000001,
          {{1, 0, {0, 0, ~0U, ~0U}}, {4, 0, {0xFC000000, 0, 0, 0}}, {0x80000001, 0, {0, 0, 0, ~0U}}}},
         "0 0 0 0 -1 0 0 1 1 1 1 1 1 1 64 1 1 0 0 1 1 1 "},
        {"every other flag of EDX",
         {"ZorvaGenuine",
          "",
          2,
          0x80000001,
          {{1, 0, {0, 0, 0, 1U << 23 | 1U << 26}}, {0x80000001, 0, {0, 0, 0, 1U << 29}}}},
         "0 0 0 0 75497472 0 0 1 0 1 0 0 1 0 1 0 0 0 0 0 0 0 "},
        {"the others",
         {"ZorvaGenuine", "", 2, 0, {{1, 0, {0, 0, 0, 1U << 25 | 1U << 28}}}},
         "0 0 0 0 301989888 0 0 0 1 0 1 0 0 0 1 0 0 0 0 0 0 0 "},
        {"some flags of ECX",
         {"ZorvaGenuine", "", 2, 0, {{1, 0, {0, 0, 1U << 0 | 1U << 19 | 1U << 22 | 1U << 28, 0}}}},
         "0 0 0 0 0 0 0 0 0 0 0 1 0 0 1 1 0 0 0 1 1 0 "},
        {"the others",
         {"ZorvaGenuine", "", 2, 0, {{1, 0, {0, 0, 1U << 9 | 1U << 20 | 1U << 27, 0}}}},
         "0 0 0 0 0 0 0 0 0 0 0 0 0 1 1 0 1 0 0 0 0 1 "},
        {"leaves beyond the highest read as if they were not there",
         {"ZorvaGenuine",
          "",
          3,
          0x80000000,
          {{1, 0, {1, 0, 0, 0}},
           {3, 0, {~0U, ~0U, ~0U, ~0U}},
           {4, 0, {~0U, 0, 0, 0}},
           {0x80000001, 0, {0, 0, 0, ~0U}}}},
         "0 1 0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 "},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(fields(row.record), row.fields) << row.what;
    }
}

/// Ends the process with the priority that a level sets, counted from 20.
[[noreturn]] void exitWithPriority(int level) {
    mrSetPriority(level);
    std::_Exit(20 + getpriority(PRIO_PROCESS, 0));
}

TEST(PriorityDeathTest, ChangesForRootAlone) {
    const int before = getpriority(PRIO_PROCESS, 0);
    mrResetPriority();  // nothing was set
    mrSetPriority(MR_PRIORITY_KEEP);
    mrResetPriority();
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), before);
    EXPECT_EXIT(exitWithPriority(MR_PRIORITY_KEEP), testing::ExitedWithCode(20 + before), "");
    // Down is allowed to everybody by the system, but not done.
    EXPECT_EXIT(exitWithPriority(MR_PRIORITY_LOW), testing::ExitedWithCode(getuid() == 0 ? 30 : 20 + before),
                "");
}

}  // namespace
