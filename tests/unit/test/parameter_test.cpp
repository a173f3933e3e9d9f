#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "output/mrcstream.h"
#include "output/mristream.h"
#include "support/captured_output.h"
#include "test/mrdefault.h"

namespace {

/// A parameter that stands in a column of its own, or has its value quoted.
class Placed : public mrDefault<int> {
  public:
    Placed(int value, int column, bool quoted) : mrDefault(value, "placed", ""), m_column(column) {
        m_flags = quoted ? QuotedValue : 0;
    }
    int colmIndex() const override { return m_column; }

  private:
    int m_column;
};

std::string columnOf(const mrParameter& parm, int column) {
    mrCStream table;
    parm.toCStream(table);
    mrString text;
    EXPECT_TRUE(table.getColm(column, text));
    return str(text) + (table.nextColm() == 1 ? "" : " placed");
}

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

TEST(Parameter, PlainOneIsAWalkOfOneValue) {
    mrParameter parm("name", "");
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(parm.firstValue());
        EXPECT_FALSE(parm.nextValue());
    }
    EXPECT_FALSE(parm.isDeprecatedParm());
    EXPECT_EQ(parm.colmIndex(), -1);
    EXPECT_EQ(str(parm.prompt()), "name");
    EXPECT_EQ(str(parm.description()), "name = ");
}

TEST(Parameter, ReadsOnceAndDescribesItself) {
    mrDefault<int> parm(5, "Count", "number of items");
    EXPECT_EQ(str(parm.prompt()), "number of items");
    EXPECT_EQ(reading(parm, nullptr), " Count = 5\n");
    EXPECT_EQ(reading(parm, "7"), " Count = 7\n");
    EXPECT_EQ(reading(parm, "abc"), "-Invalid value of Count = abc\n Count = 7\n");
    EXPECT_EQ(reading(parm, ""), " Count = 0\n");
    parm.setActive(false);
    EXPECT_EQ(reading(parm, "9"), " Count = 0\n");
    parm.init(3, "", "");
    EXPECT_EQ(reading(parm, "9"), "");
    EXPECT_EQ(parm.value(), 3);
}

TEST(Parameter, AnswerShowsAtAnyLevel) {
    char answer[] = "8\n";
    mrIStream source;
    source.setIStream(new i_stream(fmemopen(answer, 2, "r")));
    CapturedOutput output(MSG_ERR);
    testing::internal::CaptureStdout();
    mrDefault<int> parm(5, "Count", "");
    parm.fromIStream(source);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n Count [5] = ");
    EXPECT_EQ(output.text(), " Count = 8\n");
    EXPECT_EQ(g_ostrm.outLevel(), MSG_ERR);
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
        int shift;
        int align;
    } rows[] = {{"100", 64, 36}, {"-100", -128, -36}, {"64", 64, 0}, {"0x3F", 0, 63}};
    for (const auto& row : rows) {
        shift.translate(row.text);
        align.translate(row.text);
        EXPECT_EQ(shift.value(), row.shift) << row.text;
        EXPECT_EQ(align.value(), row.align) << row.text;
    }
    EXPECT_EQ(reading(shift, ""), "-Invalid value of Shift = \n Shift = 0\n");
    EXPECT_THROW(align.translate(" "), mrException);
    EXPECT_EQ(align.value(), 63);
}

TEST(Parameter, MapTakesBeginningsOfNames) {
    mrMapDefault<int> unit(1, "AlignBy", "");
    unit[0] = "byte";
    unit[1] = "element";
    unit[2] = "bytes";
    unit[1] = "Element";
    EXPECT_EQ(str(unit.prompt()), "AlignBy {byte|Element|bytes}");
    static constexpr struct {
        const char* text;
        int value;
    } rows[] = {{"b", 0}, {"BY", 0}, {"Element", 1}, {"e", 1}, {"bytes", 2}, {"", 0}};
    for (const auto& row : rows) {
        unit.translate(row.text);
        EXPECT_EQ(unit.value(), row.value) << row.text;
    }
    EXPECT_EQ(reading(unit, "elements"), "-Invalid value of AlignBy = elements\n AlignBy = byte\n");
}

TEST(Parameter, DeprecatedValueShowsItsOldText) {
    mrDefault<int> parm(3, "Mode", "");
    parm.addDeprecated(2, "two");
    parm.addDeprecated(3, "three");
    EXPECT_TRUE(parm.isDeprecatedParm());
    EXPECT_TRUE(parm.setDeprecatedFlag(true));
    EXPECT_EQ(columnOf(parm, 0), "three");
    EXPECT_FALSE(parm.setDeprecatedFlag(false));
    EXPECT_EQ(columnOf(parm, 0), "3");
    parm.translate("4");
    EXPECT_FALSE(parm.setDeprecatedFlag(true));
    // Without text conversion all values look alike.
    mrDefault_NSC<int> plain(3, "Mode", "");
    plain.addDeprecated(9, "nine");
    EXPECT_TRUE(plain.setDeprecatedFlag(true));
}

TEST(Parameter, WritesItselfToListingAndTable) {
    const mrDefault<bool> named(true, "Flag", "");
    const mrDefault<bool> unnamed(true, "", "");
    CapturedOutput output(MSG_PERF);
    named.toOStream(g_ostrm);
    unnamed.toOStream(g_ostrm);
    EXPECT_EQ(output.text(), "Flag=yes ");
    EXPECT_EQ(columnOf(named, 0), "yes");
    EXPECT_EQ(columnOf(unnamed, 0), "");
    EXPECT_EQ(columnOf(Placed(5, 3, false), 3), "5 placed");
    EXPECT_EQ(columnOf(Placed(5, -1, true), 0), " \"5\"");
    mrCStream table;
    Placed(5, 3, false).nameToCStream(table);
    named.nameToCStream(table);
    mrString text;
    table.getColm(3, text);
    EXPECT_EQ(str(text), "placed");
    table.getColm(0, text);
    EXPECT_EQ(str(text), "Flag");
}

}  // namespace
