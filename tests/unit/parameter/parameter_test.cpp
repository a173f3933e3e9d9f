#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "parameter/mrdefault.h"
#include "stream/mristream.h"
#include "support/captured_output.h"

namespace {

/// What reading prints.
std::string reading(mrParameter& parm, const char* value) {
    CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
    mrIStream source;
    source.dataList().set(parm.name(), value);
    parm.fromIStream(source);
    return output.text();
}

TEST(Parameter, ReadsWhileActive) {
    mrDefault<int> parm(5, "Count", "");
    EXPECT_EQ(reading(parm, "abc"), "-Invalid value of Count = abc\n Count = 5\n");
    EXPECT_EQ(reading(parm, ""), " Count = 0\n");
    parm.setActive(false);
    EXPECT_EQ(reading(parm, "9"), " Count = 0\n");
}

TEST(Parameter, SurvivesASignal) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the jump leaks the texts of the frames that it leaves";
#endif
    struct Failing : mrDefault<int> {
        int validItem(mrString) override { return std::raise(SIGSEGV); }
    } parm;
    parm.init(5, "Count", "");
    EXPECT_EQ(reading(parm, "9"), "-Illegal storage access.\n Count = 5\n");
}

TEST(Parameter, ShiftAndAlignmentAreFoldedAndNeverEmpty) {
    DefaultShift shift(512, "Shift", "");
    DefaultAlign align(0, "Align", "");
    using Row = std::tuple<const char*, int, int>;
    for (const auto& [text, folded, below] :
         {Row("100", 64, 36), Row("-100", -128, -36), Row("0x3F", 0, 63)}) {
        shift.translate(text);
        align.translate(text);
        EXPECT_EQ(shift.value(), folded) << text;
        EXPECT_EQ(align.value(), below) << text;
    }
    EXPECT_EQ(reading(shift, ""), "-Invalid value of Shift = \n Shift = 0\n");
}

}  // namespace
