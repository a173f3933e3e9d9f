#include "zyvector.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "parameter/mrmemory.h"
#include "support/captured_output.h"

namespace {

/// Built as a suite's vectors are, before the framework's globals.
zyVector early("zylsHash_16u32u", 1);

using Values = std::vector<double>;

/// The elements, of complex ones the real parts.
Values valuesOf(const zyVector& vector) {
    Values values;
    for (int i = 0; i < vector.m_len; ++i) {
        values.push_back(vector.getIndex(i));
    }
    return values;
}

TEST(Vector, ServesBeforeTheFrameworkIsBuiltAndAfterItsEnd) {
    CapturedOutput output(MSG_ERR | MSG_MEM);
    ASSERT_TRUE(early.createVector(3, -1));
    static volatile void* memory = early.m_data;  // goes with the process
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(valuesOf(early), (Values{2, 2, 2}));
    mrFreeAll();
    const std::string before = output.text();
    early.deleteVector();
    EXPECT_EQ(output.text(), before);
}

TEST(Vector, RefusesWhatCannotBeAllocated) {
    static constexpr std::tuple<zyType, long long, const char*> rows[] = {
        {zy32f, -3, "-12"}, {zy8u, INT_MAX + 1LL, "2147483648"}, {0, 5, "0"}};
    for (const auto& [type, len, bytes] : rows) {
        CapturedOutput output(MSG_ERR);
        zyVector vector(type);
        EXPECT_FALSE(vector.createVector(len, SetZero, 0, 0));
        EXPECT_EQ(output.text(), std::string("-- Memory fail: can't allocate ") + bytes + " bytes\n");
    }
}

TEST(Vector, FillsWithinTheTypeAndPrintsColumns) {
    // The values given, and the text of one element.
    static constexpr std::tuple<zyType, SetMode, double, double, const char*> rows[] = {
        {zy8u, SetValue, 300, 0, "  44"},
        {zy8u, SetValue, -1.9, 0, " 255"},
        {zy16u, SetValue, NAN, 0, "     0"},
        {zy32s, SetValue, 1e300, 0, "          -1"},
        {zy64u, SetMax, 0, 0, "     9223372036854775808"},
        {zy64s, SetMax, 0, 0, "     9223372036854775807"},  // exact where a double is not
        {zy32f, SetDefault, 5, 5, "       1.00001"},
        {zy16sc, SetValue, -3.5, 70000, " (     -3,   4464)"},
        {zy32sc, SetMin, 0, 0, " ( -2147483648, -2147483648)"},
    };
    for (const auto& [type, mode, re, im, text] : rows) {
        zyVector vector(type);
        ASSERT_TRUE(vector.createVector(2, mode, re, im));
        EXPECT_EQ(str(vector.getString()), std::string(text) + text) << str(vector.objectInfo());
    }
}

TEST(Vector, RampsWrapOrStay) {
    zyVector vector(zy16s);
    ASSERT_TRUE(vector.createVector(6, 0));
    vector.setSequence(0, 50);
    EXPECT_EQ(valuesOf(vector), (Values{0, 10, 20, 30, 40, 50}));
    vector.setSequence(0, 9, 2.5, true);
    EXPECT_EQ(valuesOf(vector), (Values{0, 2, 5, 7, 0, 2}));
    vector.setSequence(0, 3, 2, false);
    EXPECT_EQ(valuesOf(vector), (Values{0, 2, 3, 3, 3, 3}));
}

TEST(Vector, RandomNumbersAreThoseOfTheSeed) {
    zyVector vector(zy32u);
    zyVector::m_seed = 7;
    ASSERT_TRUE(vector.createVector(32, SetRandomRange, 0, 1114111));
    const Values first = valuesOf(vector);
    EXPECT_EQ(Values(first.begin(), first.begin() + 4), (Values{251783, 144886, 486582, 198339}));
    vector.setRandom(0, 1114111);
    EXPECT_EQ(vector.getIndex(0), 820868);  // goes on from the 32 numbers before
    vector.setRandom(0, 1114111, 7);
    EXPECT_EQ(valuesOf(vector), first);
    vector.init(zy8s);
    zyVector::m_seed = 7;
    ASSERT_TRUE(vector.createVector(1, SetRandomRange, 5, 5));
    EXPECT_EQ(vector.getIndex(0), -70) << "equal limits stand for the range of the type";
}

TEST(Vector, PutsTheSavedCopyBack) {
    zyVector vector(zy16s);
    ASSERT_TRUE(vector.createVector(3, 0));
    EXPECT_FALSE(vector.setReservedCopy());
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

}  // namespace
