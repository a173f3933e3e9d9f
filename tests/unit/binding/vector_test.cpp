#include "zyvector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <vector>

#include "support/captured_output.h"
#include "test/mrmemory.h"
#include "test/mrtest.h"

namespace {

/// Built as a suite's vectors are, before the framework's globals.
zyVector early("zylsHash_16u32u", 1);

using Values = std::vector<double>;

/// All components.
Values valuesOf(const zyVector& vector) {
    Values values;
    for (int i = 0; i < vector.m_len; ++i) {
        double re = 0;
        double im = 0;
        vector.getIndex(i, re, im);
        values.push_back(re);
        if ((vector.m_type & zyTypeComplex) != 0) {
            values.push_back(im);
        }
    }
    return values;
}

constexpr double TwoTo63 = 9223372036854775808.0;

TEST(Vector, ServesBeforeTheFrameworkIsBuiltAndAfterItsEnd) {
    CapturedOutput output(MSG_ERR | MSG_MEM);
    EXPECT_EQ(early.m_type, zy16u);
    ASSERT_TRUE(early.createVector(3, -1));
    EXPECT_EQ(valuesOf(early), (Values{2, 2, 2}));
    static volatile void* memory = early.m_data;  // goes with the process
    ASSERT_NE(memory, nullptr);
    mrFreeAll();
    const std::string before = output.text();
    early.deleteVector();
    EXPECT_EQ(early.getDataConst(), nullptr);
    EXPECT_EQ(early.m_len, 0);
    EXPECT_EQ(output.text(), before);
}

TEST(Vector, TakesTypeAndChannelsOfAnArgument) {
    zyVector vector("zyliCopy_8u32f_C3AC4R", zyArgDst);
    EXPECT_EQ(vector.m_type, zy32f);
    EXPECT_EQ(str(vector.m_func), "_32f_AC4");
    vector.init("_8u16sc_C3", 2);
    EXPECT_EQ(str(vector.m_func), "_16sc_C3");
    ASSERT_TRUE(vector.createVector(5, 0));
    EXPECT_EQ(str(vector.objectInfo()), "Vector 16sc len=5");
    EXPECT_EQ(vector.size(), 20);
    EXPECT_EQ(static_cast<void*>(vector.m_views.m_16sc), vector.m_data);
    EXPECT_EQ(vector.m_views.m_16s, nullptr);
    vector.init(zy8u);
    EXPECT_EQ(vector.getPointerAt(0), nullptr);
    EXPECT_EQ(vector.m_views.m_16sc, nullptr);
    EXPECT_EQ(zyVector::item("_64fc_"), 16);
    EXPECT_EQ(zyVector::item("zylsConvertUTF_16u8u"), 2);
}

TEST(Vector, RefusesWhatCannotBeAllocated) {
    static constexpr struct {
        zyType type;
        int len;
        const char* bytes;
    } rows[] = {{zy8u, 0, "0"},
                {zy32f, -3, "-12"},
                {zy64fc, INT_MAX, "34359738352"},
                {0, 5, "0"},
                {zy8u | zyTypeComplex, 5, "0"}};
    for (const auto& row : rows) {
        CapturedOutput output(MSG_ERR);
        zyVector vector(row.type);
        EXPECT_FALSE(vector.createVector(row.len, SetZero, 0, 0));
        EXPECT_EQ(output.text(), std::string("-- Memory fail: can't allocate ") + row.bytes + " bytes\n");
        EXPECT_EQ(vector.m_len, 0);
    }
}

TEST(Vector, MisalignsByBytesOrElements) {
    mrSetVectorAlign(3);
    for (const bool byByte : {true, false}) {
        mrSetAlignByByte(byByte);
        mrTest::m_vectorNum = 0;
        zyVector vector(zy16s);
        ASSERT_TRUE(vector.createVector(2, SetMin, 0, 0));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(vector.m_data) % 64, byByte ? 3u : 6u);
        EXPECT_EQ(valuesOf(vector), (Values{-32768, -32768}));
        mrObject* owner = nullptr;
        EXPECT_TRUE(mrMallocInfo(vector.m_data, nullptr, &owner));
        EXPECT_EQ(owner, &vector);
    }
    mrSetVectorAlign(0);
    mrSetAlignByByte(true);
}

TEST(Vector, StoresConstantsByTruncation) {
    const struct {
        zyType type;
        double re, im;
        Values stored;
    } rows[] = {
        {zy8u, 300, 0, {44}},
        {zy8u, -1.9, 0, {255}},
        {zy8s, 200, 0, {-56}},
        {zy32u, 4294967295.5, 0, {4294967295.0}},
        {zy32s, 1e300, 0, {-1}},
        {zy64u, 1e300, 0, {2 * TwoTo63}},
        {zy64u, -5, 0, {0}},
        {zy64s, -1e300, 0, {-TwoTo63}},
        {zy64s, -7.5, 0, {-7}},
        {zy16u, NAN, 0, {0}},
        {zy32f, 0.1, 9, {static_cast<double>(0.1f)}},
        {zy16sc, -3.5, 70000, {-3, 4464}},
        {zy64fc, 0.1, -0.2, {0.1, -0.2}},
    };
    for (const auto& row : rows) {
        zyVector vector(row.type);
        ASSERT_TRUE(vector.createVector(1, SetValue, row.re, row.im));
        EXPECT_EQ(valuesOf(vector), row.stored) << str(vector.objectInfo()) << " of " << row.re;
    }
}

TEST(Vector, ModesFillWithinTheTypesLimits) {
    const double max32f =
        static_cast<double>(static_cast<float>(0.4 * std::sqrt(static_cast<double>(FLT_MAX))));
    const double max64f = 0.4 * std::sqrt(DBL_MAX);
    const struct {
        zyType type;
        Values byDefault, max, min;
    } rows[] = {
        {zy8u, {2}, {255}, {0}},
        {zy64u, {2}, {TwoTo63}, {0}},
        {zy16uc, {2, 2}, {65535, 65535}, {0, 0}},
        {zy32f, {static_cast<double>(1.00001f)}, {max32f}, {-max32f}},
        {zy64fc, {1.00001, 1.00001}, {max64f, max64f}, {-max64f, -max64f}},
    };
    for (const auto& row : rows) {
        zyVector vector(row.type);
        ASSERT_TRUE(vector.createVectorExt(1, 0, SetMax, 0, 0));
        EXPECT_EQ(valuesOf(vector), row.max) << str(vector.objectInfo());
        vector.setVector(SetMin, 0, 0);
        EXPECT_EQ(valuesOf(vector), row.min) << str(vector.objectInfo());
        vector.setVector(SetDefault, 5, 5);
        EXPECT_EQ(valuesOf(vector), row.byDefault) << str(vector.objectInfo());
        vector.setVector(static_cast<SetMode>(8), 5, 5);
        EXPECT_EQ(valuesOf(vector), row.byDefault);
    }
    zyVector wide(zy64sc);  // exact where a double is not
    ASSERT_TRUE(wide.createVector(1, SetMax, 0, 0));
    EXPECT_EQ(str(wide.getString()), " (     9223372036854775807,     9223372036854775807)");
}

TEST(Vector, SetsSingleElements) {
    zyVector vector(zy16sc);
    vector.setIndex(0, SetOne, 0, 0);
    ASSERT_TRUE(vector.createVector(7, SetZero, 0, 0));
    constexpr SetMode modes[] = {SetMax, SetMin, SetRamp, SetValue, SetDefault, SetOne};
    for (int i = 0; i < 6; ++i) {
        vector.setIndex(i, modes[i], 5, 9);
    }
    EXPECT_EQ(valuesOf(vector), (Values{32767, 0, -32768, 0, 5, 0, 5, 9, 2, 2, 1, 0, 0, 0}));
    vector.setIndex(6, SetRandomRange, 100, 200);
    EXPECT_NEAR(vector.getIndex(6), 150, 50);
}

TEST(Vector, RampsWrapOrStay) {
    const struct {
        zyType type;
        double a, b, step;
        bool wrap;
        Values values;
    } rows[] = {
        {zy8u, 0, 3, 1, true, {0, 1, 2, 3, 0, 1}},
        {zy8u, 0, 3, 2, false, {0, 2, 3, 3, 3, 3}},
        {zy8u, -10, 3, 1, true, {0, 1, 2, 3, 0, 1}},
        {zy8s, 126, 500, 1, true, {126, 127, 126, 127, 126, 127}},
        {zy16s, 0, 9, 2.5, true, {0, 2, 5, 7, 0, 2}},
        {zy64f, 0, 1, 0.5, true, {0, 0.5, 1, 0, 0.5, 1}},
    };
    zyVector vector;
    for (const auto& row : rows) {
        vector.init(row.type);
        ASSERT_TRUE(vector.createVector(6, 0));
        vector.setSequence(row.a, row.b, row.step, row.wrap);
        EXPECT_EQ(valuesOf(vector), row.values) << &row - rows;
    }
    vector.init(zy8u);
    ASSERT_TRUE(vector.createVector(100, SetRamp, 0, 10));
    EXPECT_EQ(vector.getIndex(10), 10);
    EXPECT_EQ(vector.getIndex(11), 0);
    ASSERT_TRUE(vector.createVector(5, 0));
    vector.setSequence(0, 40);
    EXPECT_EQ(valuesOf(vector), (Values{0, 10, 20, 30, 40}));
    vector.init(zy32fc);
    ASSERT_TRUE(vector.createVector(1, 0));
    vector.setSequence(7, 9);
    EXPECT_EQ(valuesOf(vector), (Values{7, 0}));
}

TEST(Vector, ChirpKeepsWithinTheType) {
    zyVector vector(zy8u);
    ASSERT_TRUE(vector.createVector(4, 0));
    vector.setJaehne(1000);
    EXPECT_EQ(valuesOf(vector),
              (Values{127, 176, 255, 78}));  // 127.5 + 127.5 * sin of 0, 1/8, 4/8, 9/8 of pi
    vector.setJaehne(-1);
    EXPECT_EQ(vector.getIndex(2), 255);
    vector.init(zy8s);
    ASSERT_TRUE(vector.createVector(4, 0));
    vector.setJaehne();
    EXPECT_EQ(valuesOf(vector), (Values{0, 48, 127, -48}));
    vector.init(zy64fc);
    ASSERT_TRUE(vector.createVector(2, 0));
    vector.setJaehne();
    const Values values = valuesOf(vector);
    EXPECT_EQ(values[0], 0);
    EXPECT_NEAR(values[2], std::sqrt(0.5), 1e-15);
    EXPECT_EQ(values[2], values[3]);
}

TEST(Vector, RandomNumbersAreThoseOfTheSeed) {
    zyVector vector(zy32u);
    zyVector::m_seed = 7;
    ASSERT_TRUE(vector.createVector(32, SetRandomRange, 0, 1114111));
    const Values first = valuesOf(vector);
    EXPECT_EQ(Values(first.begin(), first.begin() + 4), (Values{251783, 144886, 486582, 198339}));
    ASSERT_TRUE(vector.createVector(128, SetRandomRange, 0, 1114111));
    EXPECT_EQ(vector.getIndex(0), 820868);  // goes on from the 32 numbers before
    EXPECT_EQ(vector.getIndex(3), 1088821);
    ASSERT_TRUE(vector.createVector(32, 0));
    vector.setRandom(0, 1114111, 7);
    EXPECT_EQ(valuesOf(vector), first);
    const std::uint32_t seed = zyVector::m_seed;
    vector.setDataRandom(vector.m_data, 0, 0, 1);
    EXPECT_EQ(zyVector::m_seed, seed);
}

TEST(Vector, RandomNumbersFillTheirRange) {
    const struct {
        zyType type;
        double a, b, lo, hi;
    } rows[] = {
        {zy16u, -1000, 1000, 0, 1000}, {zy16u, 1000, 1e6, 1000, 65535}, {zy8s, 5, 5, -128, 127},
        {zy64f, 5, 5, -1, 1},          {zy16sc, 10, 20, 10, 20},        {zy64s, 3, 3, -TwoTo63, TwoTo63},
    };
    for (const auto& row : rows) {
        zyVector vector(row.type);
        ASSERT_TRUE(vector.createVector(2000, SetRandomRange, row.a, row.b));
        const Values values = valuesOf(vector);
        const auto [least, most] = std::minmax_element(values.begin(), values.end());
        const double middle = (row.hi + row.lo) / 2;
        const double reach = (row.hi - row.lo) / 2;
        EXPECT_TRUE(*least >= row.lo && *least <= middle - 0.8 * reach) << *least << " of " << row.lo;
        EXPECT_TRUE(*most <= row.hi && *most >= middle + 0.8 * reach) << *most << " of " << row.hi;
    }
    zyVector vector(zy16s);
    ASSERT_TRUE(vector.createVector(50, 0));
    vector.setRandom(1, 1);
    EXPECT_EQ(valuesOf(vector), Values(50, 1));
}

TEST(Vector, PutsTheSavedCopyBack) {
    zyVector vector(zy16s);
    EXPECT_FALSE(vector.reserveCopy());
    ASSERT_TRUE(vector.createVector(3, SetValue, 5, 0));
    EXPECT_FALSE(vector.setReservedCopy());
    EXPECT_EQ(vector.getIndex(2), 5);
    for (const int value : {7, 9}) {  // the second copy replaces the first
        vector.setConst(value, 0);
        EXPECT_TRUE(vector.reserveCopy());
        vector.setConst(1, 0);
        EXPECT_TRUE(vector.setReservedCopy());
        EXPECT_EQ(valuesOf(vector), Values(3, value));
    }
    ASSERT_TRUE(vector.createVector(4, 0));
    EXPECT_FALSE(vector.setReservedCopy());  // went with the data it was taken of
}

TEST(Vector, PrintsColumns) {
    static constexpr struct {
        zyType type;
        double re, im;
        const char* text;
    } rows[] = {
        {zy8u, 255, 0, " 255"},
        {zy16u, 65535, 0, " 65535"},
        {zy32u, 4294967295.0, 0, " 4294967295"},
        {zy64u, TwoTo63, 0, "     9223372036854775808"},
        {zy8s, -128, 0, " -128"},
        {zy16s, -1, 0, "     -1"},
        {zy32s, -2147483648.0, 0, " -2147483648"},
        {zy64s, -TwoTo63, 0, "    -9223372036854775808"},
        {zy32f, 1.25, 0, "          1.25"},
        {zy64f, 0.1, 0, "                 0.1"},
        {zy16uc, 1, 65535, " (     1, 65535)"},
        {zy8sc, -1, 2, " (   -1,    2)"},
        {zy16sc, -1, 2, " (     -1,      2)"},
        {zy32sc, -1, 2, " (          -1,           2)"},
        {zy64sc, -1, 2, " (                      -1,                       2)"},
        {zy32fc, 1.0 / 3, 2, " (      0.333333,             2)"},
        {zy64fc, 1.0 / 3, 2, " (      0.333333333333,                   2)"},
    };
    for (const auto& row : rows) {
        zyVector vector(row.type);
        EXPECT_EQ(str(vector.getString()), "");
        ASSERT_TRUE(vector.createVector(2, SetValue, row.re, row.im));
        EXPECT_EQ(str(vector.getString()), std::string(row.text) + row.text);
    }
    EXPECT_EQ(str(zyVector::getByteString("\x01\xAB", 2)), " 01 AB");
    EXPECT_EQ(str(zyVector::getByteString(nullptr, 3)), "");
}

}  // namespace
