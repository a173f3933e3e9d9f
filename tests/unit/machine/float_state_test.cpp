#include "machine/mrfloat.h"

#include <gtest/gtest.h>

#include "session/mr.h"
#include "support/captured_output.h"
#include "support/float_flags.h"

namespace {

TEST(FloatState, NamesItsFlags) {
    const KeptFloatState kept;
    mrString texts;
    for (const unsigned word : {0x00U, 0x20U, 0x28U, 0x1FU}) {
        mrSSX ssx;
        ssx.start();
        setFlagsSSX(word);
        ssx.stop();
        texts << ssx.strExceptionState() << (ssx.badStatus() ? "bad; " : "; ");
        EXPECT_EQ(str(ts87Base::strSW(word | 0x3800)), str(ssx.strExceptionState()));
    }
    EXPECT_EQ(str(texts),
              "Ok; _Inexact ; ?Overflow _Inexact bad; "
              "?Invalid ?Denormal ?Zerodivide ?Overflow ?Underflow bad; ");
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
    const mrSSX copy = ssx;
    ssx.clear();
    EXPECT_FALSE(ssx.badStatus());
    EXPECT_EQ(str(copy.strExceptionState()), "?Overflow _Inexact ");
    mr87 x87;
    x87.init();
    asm volatile("fld1\n\tfchs\n\tfsqrt\n\tfstp %%st(0)" : :);
    x87.stop();
    x87.start();
    EXPECT_EQ(zylFpuSsx4TS(3, 0, 0) & 0x3F, 0U) << "what a function left pending fires in the framework";
    x87.stop();
    EXPECT_EQ(str(x87.strSW()), "?Invalid ");
    EXPECT_TRUE(x87.badStatus());
}

TEST(FloatState, EachCombinationStartsFromTheDefaults) {
    const KeptFloatState kept;
    zylFpuSsx4TS(1, 0xC00, 0xF3F);
    zylFpuSsx4TS(5, 0x603F, 0xFFFF & ~0x1F80U);
    const auto words = [] {
        mrTest::initCtrlStatus();
        return str(ts87Base::strCW(controlWord87()) + "/ " + tsSSXBase().strCW(wordSSX()));
    };
    const std::string defaults =
        "Near 53 Invalid Denormal Overflow Underflow Inexact / "
        "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero ";
    EXPECT_EQ(words(), defaults);
    is_W_flagUsed = true;
    EXPECT_EQ(words(), defaults) << "what the key unmasks waits for the next combination";
    EXPECT_EQ(words(), "Near 53 Inexact / Near Inexact FlushToZero ");
    is_W_flagUsed = false;
}

}  // namespace
