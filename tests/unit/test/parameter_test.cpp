#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "output/mristream.h"
#include "support/captured_output.h"
#include "test/mrdefault.h"

namespace {

/// What reading prints; `value` null stands for no source but the default.
std::string reading(mrParameter& parm, const char* value) {
    CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
    mrIStream source;
    if (value != nullptr) {
        source.dataList().set(parm.name(), value);
    }
    parm.fromIStream(source);
    return output.text();
}

TEST(Parameter, ReadsWhileActive) {
    mrDefault<int> parm(5, "Count", "");
    EXPECT_EQ(reading(parm, nullptr), " Count = 5\n");
    EXPECT_EQ(reading(parm, "7"), " Count = 7\n");
    EXPECT_EQ(reading(parm, "abc"), "-Invalid value of Count = abc\n Count = 7\n");
    EXPECT_EQ(reading(parm, ""), " Count = 0\n");
    parm.setActive(false);
    EXPECT_EQ(reading(parm, "9"), " Count = 0\n");
}

/// Reading it runs into a signal.
class Failing : public mrDefault<int> {
  public:
    using mrDefault::mrDefault;
    int validItem(mrString) override { return std::raise(SIGSEGV); }
};

TEST(Parameter, SurvivesASignal) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the jump leaks the texts of the frames that it leaves";
#endif
    Failing parm(5, "Count", "");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(reading(parm, "9"), "-Illegal storage access.\n Count = 5\n");
    }
}

TEST(Parameter, ShiftAndAlignmentAreFoldedAndNeverEmpty) {
    DefaultShift shift(512, "Shift", "");
    DefaultAlign align(0, "Align", "");
    static constexpr struct {
        const char* text;
        int shift, align;
    } rows[] = {{"100", 64, 36}, {"-100", -128, -36}, {"64", 64, 0}, {"0x3F", 0, 63}};
    for (const auto& row : rows) {
        shift.translate(row.text);
        align.translate(row.text);
        EXPECT_EQ(shift.value(), row.shift) << row.text;
        EXPECT_EQ(align.value(), row.align) << row.text;
    }
    EXPECT_EQ(reading(shift, ""), "-Invalid value of Shift = \n Shift = 0\n");
}

}  // namespace
