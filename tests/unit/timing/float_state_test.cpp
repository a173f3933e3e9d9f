#include "timing/mrfloat.h"

#include <gtest/gtest.h>

#include "mr.h"
#include "support/captured_output.h"
#include "support/float_flags.h"
#include "test/mrtest.h"

namespace {

/// A processor without the unit.
class AbsentSSX : public tsSSXBase {
  public:
    AbsentSSX() { m_present = false; }
};

constexpr const char* NoUnit = "cpu has not SSX extension";

TEST(FloatState, NamesItsFlags) {
    static constexpr struct {
        unsigned word;
        const char* text;
        bool bad;
    } rows[] = {
        {0, "Ok", false},
        {0x3800, "Ok", false},  // top of the x87 stack
        {0x20, "_Inexact ", false},
        {0x28, "?Overflow _Inexact ", true},
        {0x1, "?Invalid ", true},
        {0x2, "?Denormal ", true},
        {0x3F, "?Invalid ?Denormal ?Zerodivide ?Overflow ?Underflow _Inexact ", true},
    };
    const KeptFloatState kept;
    for (const auto& row : rows) {
        EXPECT_EQ(str(ts87Base::strSW(row.word)), row.text);
        mrSSX ssx;
        ssx.start();
        setFlagsSSX(row.word & 0x3F);
        ssx.stop();
        EXPECT_EQ(str(ssx.strExceptionState()), row.text);
        EXPECT_EQ(ssx.badStatus(), row.bad) << row.text;
        ssx.start();
        EXPECT_EQ(wordSSX() & 0x3F, 0U);
    }
}

TEST(FloatState, NamesItsControlWords) {
    static constexpr struct {
        unsigned word;
        const char* text;
    } rows87[] = {
        {0x23B, "Near 53 Invalid Denormal Overflow Underflow Inexact "},
        {0x220, "Near 53 Inexact "},
        {0x37F, "Near 64 Invalid Denormal Zerodivide Overflow Underflow Inexact "},
        {0xC00, "Zero 24 "},
        {0x904, "Up Zerodivide "},  // a precision that does not exist
        {0x704, "Down 64 Zerodivide "},
    };
    for (const auto& row : rows87) {
        EXPECT_EQ(str(ts87Base::strCW(row.word)), row.text);
    }
    static constexpr struct {
        unsigned word;
        const char* text;
    } rowsSSX[] = {
        {0x9F80, "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero "},
        {0x9000, "Near Inexact FlushToZero "},
        {0x6000, "Zero NoFlushToZero "},
        {0xC03F, "Up FlushToZero "},
        {0x2200, "Down Zerodivide NoFlushToZero "},
    };
    for (const auto& row : rowsSSX) {
        EXPECT_EQ(str(tsSSXBase().strCW(row.word)), row.text);
    }
}

TEST(FloatState, AbsentUnitIsLeftAlone) {
    const KeptFloatState kept;
    const unsigned before = wordSSX() | 0x8;
    raiseOverflow();
    AbsentSSX base;
    base.clear();
    base.destroy();
    base.setDefault();
    base.enableExceptions();
    base.disableInexactException();
    EXPECT_EQ(wordSSX(), before);
    EXPECT_EQ(base.get(), 0U);
    EXPECT_EQ(str(base.strCW(0x9F80)), NoUnit);
    mrSSX ssx(std::make_unique<AbsentSSX>());
    ssx.init();
    ssx.stop();
    EXPECT_EQ(wordSSX(), before);
    EXPECT_EQ(ssx.get(), 0U);
    EXPECT_EQ(str(ssx.strExceptionState()), NoUnit);
    EXPECT_FALSE(ssx.badStatus());
}

TEST(FloatState, CollectsOverSeveralCalls) {
    const KeptFloatState kept;
    mrSSX ssx;
    ssx.init();
    for (const unsigned flag : {0x20U, 0x8U, 0x0U}) {
        ssx.start();
        setFlagsSSX(flag);
        ssx.stop();
    }
    EXPECT_EQ(str(ssx.strExceptionState()), "?Overflow _Inexact ");
    const mrSSX copy = ssx;
    ssx.clear();
    EXPECT_EQ(str(ssx.strExceptionState()), "Ok");
    EXPECT_EQ(str(copy.strExceptionState()), "?Overflow _Inexact ");

    mr87 x87;
    x87.init();
    asm volatile("fldz\n\tfchs\n\tfsqrt\n\tfld1\n\tfchs\n\tfsqrt\n\tfstp %%st(0)\n\tfstp %%st(0)" : :);
    x87.stop();
    x87.start();
    EXPECT_EQ(statusWord87() & 0x3F, 0U);
    x87.stop();
    EXPECT_EQ(str(x87.strSW()), "?Invalid ");
    EXPECT_TRUE(x87.badStatus());
    mr87 copy87;
    copy87 = x87;
    x87.clear();
    EXPECT_EQ(str(x87.strSW()), "Ok");
    EXPECT_EQ(str(copy87.strSW()), "?Invalid ");
    EXPECT_EQ(x87.getCW(), 0U);
}

TEST(FloatState, StartsEachCombinationFromTheDefaults) {
    const KeptFloatState kept;
    const auto words = [] { return std::make_pair(controlWord87() & 0xF3F, wordSSX() & 0xFFBF); };
    zylFpuSsx4TS(1, 0xF00, 0xF3F);
    zylFpuSsx4TS(5, 0x6000 | 0x1F80 | 0x3F, 0xFFBF);
    mrTest::initCtrlStatus();
    EXPECT_EQ(words(), std::make_pair(0x23BU, 0x9F80U));
    // The key's own values wait for the next combination.
    is_W_flagUsed = true;
    mrTest::initCtrlStatus();
    EXPECT_EQ(words(), std::make_pair(0x23BU, 0x9F80U));
    mrTest::initCtrlStatus();
    EXPECT_EQ(words(), std::make_pair(0x220U, 0x9000U));
    is_W_flagUsed = false;
    mrTest::clearCtrlStatus();
}

TEST(FloatState, SwitchesExceptions) {
    const KeptFloatState kept;
    ts87Base x87;
    tsSSXBase ssx;
    x87.setDefault();
    x87.enableExceptions();
    EXPECT_EQ(controlWord87() & 0x3F, 0U);
    x87.disableInexactException();
    EXPECT_EQ(controlWord87() & 0x3F, 0x20U);
    x87.disableExceptions();
    EXPECT_EQ(controlWord87() & 0x3F, 0x3FU);
    x87.disableInexactException();  // by the status word, which is clear
    EXPECT_EQ(controlWord87() & 0x3F, 0x20U);
    ssx.set(0x80, 0x1F80);
    ssx.disableInexactException();  // by the control bits
    EXPECT_EQ(wordSSX() & 0x1F80, 0x1080U);
    ssx.enableExceptions();
    EXPECT_EQ(wordSSX() & 0x1F80, 0U);
    ssx.disableExceptions();
    EXPECT_EQ(wordSSX() & 0x1F80, 0x1F80U);
}

}  // namespace
