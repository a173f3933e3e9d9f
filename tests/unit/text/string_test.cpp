#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "support/captured_output.h"
#include "text/mrstring.h"

namespace {

using namespace std::string_literals;

TEST(String, BufferGrowsInStepsOfSixteen) {
    EXPECT_EQ(mrString(nullptr).length(), 0);
    EXPECT_EQ(mrString(nullptr).capacity(), 16);
    mrString text = "123456789012345";
    EXPECT_EQ(text.capacity(), 16);
    text << 'x';
    EXPECT_EQ(text.capacity(), 32);
    EXPECT_EQ(str(text), "123456789012345x");
    text.free();
    EXPECT_EQ(text.capacity(), 0);
    text << "again";
    EXPECT_EQ(str(text), "again");
}

TEST(String, TakesItselfAsSource) {
    mrString text = "0123456789abcdef";
    const mrString& same = text;
    text = same;
    EXPECT_EQ(str(text), "0123456789abcdef");
    text.assign(text.c_str() + 8);
    text.assign(text.c_str() + 2);  // keeps the buffer
    EXPECT_EQ(str(text), "abcdef");
    text += text;
    text += text;  // crosses the buffer's end
    EXPECT_EQ(str(text), "abcdefabcdefabcdefabcdef");
    text = text.substr(20);
    EXPECT_EQ(str(text), "cdef");
}

TEST(String, ComparesSignedBytesThenLengths) {
    EXPECT_EQ(mrString("abd").compare("abc"), 1);
    EXPECT_EQ(mrString("abc").compare("abd"), -1);
    EXPECT_EQ(mrString("\x80").compare("a"), -1);
    EXPECT_EQ(mrString("abcde").compare("ab"), 3);
    EXPECT_EQ(mrString("").compare("ab"), -2);
    EXPECT_EQ(mrString("ab").compare("ab"), 0);
    mrString nul = "ab";
    nul << '\0' << "c";
    EXPECT_EQ(nul.compare("ab"), 2);
    EXPECT_TRUE(nul == mrString("ab"));
    EXPECT_EQ(str(nul + nul), "ab\0cab\0c"s);
}

TEST(String, ResizeFillsOnlyWhereSomethingStood) {
    mrString text = "abc";
    text.resize(5, 'x');
    EXPECT_EQ(str(text), "abcxx");
    text.resize(40, '.');
    EXPECT_EQ(str(text), "abcxx" + std::string(35, '.'));
    text.resize(2, 'x');
    EXPECT_EQ(str(text), "ab");
    text.growBy(2);
    EXPECT_EQ(str(text), "ab\0\0"s);
    mrString empty;
    empty.resize(3, 'x');
    EXPECT_EQ(str(empty), "\0\0\0"s);
    EXPECT_EQ(str(mrString().padRight(3)), "   ");
    EXPECT_EQ(str(mrString("7").padLeft(3)), "  7");
    EXPECT_EQ(str(mrString("long").padLeft(3)), "long");
}

TEST(String, FindsAndCuts) {
    const mrString text = "abcabc";
    EXPECT_EQ(text.find("bc", 0), 1);
    EXPECT_EQ(text.find("bc", 2), 4);
    EXPECT_EQ(text.find("bc", 5), mrString::npos);
    EXPECT_EQ(text.find("", 4), 4);
    EXPECT_EQ(text.rfind("bc"), 4);
    EXPECT_EQ(text.rfind(""), 6);
    EXPECT_EQ(text.rfind("abcabca"), mrString::npos);
    EXPECT_TRUE(text.found("cab"));
    EXPECT_FALSE(text.found("cc"));
    EXPECT_TRUE(text.beginsWith("abc"));
    EXPECT_FALSE(text.beginsWith("abcabcd"));
    EXPECT_EQ(str(text.substr(2)), "cabc");
    EXPECT_EQ(str(text.substr(6)), "");
    EXPECT_EQ(str(text.substr(7)), "");
    EXPECT_EQ(str(text.substr(4, 9)), "bc");
    EXPECT_EQ(str(text.substr(4, -1)), "");
}

TEST(String, TrimLeavesTheCarriageReturnBehind) {
    static constexpr struct {
        const char* text;
        const char* trimmed;
    } rows[] = {
        {" \t\rabc \t", "abc"},
        {"abc\r", "abc\r"},
        {"abc \r ", "abc \r"},
        {" \r\t", ""},
        {"                    twenty blanks", "twenty blanks"},
    };
    for (const auto& row : rows) {
        mrString text = row.text;
        text.trim();
        EXPECT_EQ(str(text), row.trimmed) << '"' << row.text << '"';
    }
}

TEST(String, TakesFileNamesApart) {
    static constexpr struct {
        const char* path;
        const char* dir;
        const char* name;
        const char* title;
    } rows[] = {
        {"a.b.c", "", "a.b.c", "a.b"}, {"x\\y/z", "x\\y/", "z", "z"},    {"x/y\\z.t", "x/y\\", "z.t", "z"},
        {"dir/", "dir/", "", ""},      {"/d.d/.rc", "/d.d/", ".rc", ""}, {"", "", "", ""},
    };
    for (const auto& row : rows) {
        const mrString path = row.path;
        EXPECT_EQ(str(path.getFileDir()), row.dir) << row.path;
        EXPECT_EQ(str(path.getFileName()), row.name) << row.path;
        EXPECT_EQ(str(path.getFileTitle()), row.title) << row.path;
    }
}

TEST(String, WritesValues) {
    EXPECT_EQ(str(mrText(INT_MIN)), "-2147483648");
    EXPECT_EQ(str(mrText(LLONG_MIN)), "-9223372036854775808");
    EXPECT_EQ(str(mrText(1ull << 63)), "-9223372036854775808");
    EXPECT_EQ(str(mrText(1234.5)), "1.23e+03");
    EXPECT_EQ(str(mrText(0.5f)), "0.5");
    EXPECT_EQ(str(mrText(true) + mrText(false)), "yesno");
    EXPECT_EQ(str(mrText(static_cast<void*>(nullptr))), "NULL");
    EXPECT_EQ(str(mrText(reinterpret_cast<void*>(std::intptr_t{0x1F}))), "1F");
    EXPECT_EQ(str(mrText(reinterpret_cast<void*>(std::intptr_t{-1}))), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(mrFormat("%5000d", 1).length(), 5000);
}

constexpr int Before = -77;

TEST(String, ReadsIntegers) {
    static constexpr struct {
        const char* text;
        int value;
        bool failed;
    } rows[] = {
        {"0x1F", 31, false},   {"0X1f", 31, false}, {" 0x1F", 0, false}, {"12abc", 12, false},
        {"-5", -5, false},     {"  42", 42, false}, {"", Before, false}, {" \t", Before, false},
        {"abc", Before, true}, {"-0x10", 0, false}, {"0", 0, false},
    };
    for (const auto& row : rows) {
        mrString text = row.text;
        int value = Before;
        value << text;
        EXPECT_EQ(value, row.value) << '"' << row.text << '"';
        EXPECT_EQ(text.failed(), row.failed) << '"' << row.text << '"';
        long long wide = Before;
        wide << text;
        EXPECT_EQ(wide, row.value) << '"' << row.text << '"';
    }
    mrString text = "0x7FFFFFFFFFFFFFFF";
    long long wide = 0;
    EXPECT_EQ(wide << text, LLONG_MAX);
    text = "1f";
    void* pointer = &wide;
    EXPECT_EQ(pointer << text, reinterpret_cast<void*>(std::intptr_t{1}));
    text = "";
    EXPECT_EQ(pointer << text, &wide);
}

TEST(String, ReadsFloatingNumbers) {
    mrString text = "-1.5e3 clocks";
    double value = 0;
    EXPECT_EQ(value << text, -1500.0);
    float narrow = 0;
    EXPECT_EQ(narrow << text, -1500.0f);
    text = "fast";
    EXPECT_EQ(value << text, -1500.0);
    EXPECT_TRUE(text.failed());
    text = "";
    EXPECT_EQ(value << text, -1500.0);
    EXPECT_FALSE(text.failed());
}

TEST(String, ReadsBoolByItsFirstLetter) {
    static constexpr struct {
        const char* text;
        bool value;
        bool failed;
    } rows[] = {
        {"Yes", true, false},    {"TRUE", true, false},   {" y ", true, false}, {"1", true, false},
        {"No", false, false},    {"false", false, false}, {"0", false, false},  {"yellow", true, false},
        {"never", false, false}, {"", false, true},       {"2", false, true},   {"10", false, true},
    };
    for (const auto& row : rows) {
        mrString text = row.text;
        bool value = true;
        value << text;
        EXPECT_EQ(value, row.value) << '"' << row.text << '"';
        EXPECT_EQ(text.failed(), row.failed) << '"' << row.text << '"';
    }
}

const int flags[] = {1, 4, 8};
const mrString flagNames[] = {"a", "b", "zylFast"};

TEST(String, JoinsAndReadsFlags) {
    EXPECT_EQ(str(mrString::flagString(5, flags, flagNames, 3)), "a|b");
    EXPECT_EQ(str(mrString::flagString(0, flags, flagNames, 3)), "0");
    EXPECT_EQ(str(mrString::flagString(2, flags, flagNames, 3)), "2");
    static constexpr struct {
        const char* text;
        int value;
    } rows[] = {{"a b,XX", 5}, {"A|zyl;b", 13}, {"fast", 8},     {"fa", 8},
                {"ast", 0},    {"", 0},         {"zylFaster", 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(mrString::flagValue(row.text, flags, flagNames, 3, 3), row.value) << row.text;
    }
}

TEST(String, NamesEnumerations) {
    const int values[] = {7, 9, 7};
    const mrString names[] = {"MR_AUTO", "MR_MANUAL", "again"};
    EXPECT_EQ(str(mrString::enumString(7, values, names, 3)), "MR_AUTO");
    EXPECT_EQ(str(mrString::enumString(8, values, names, 3)), "8");
    EXPECT_EQ(mrString::enumValue("man", values, names, 3, 3), 9);
    EXPECT_EQ(mrString::enumValue("mr_", values, names, 3, 3), 7);
    EXPECT_EQ(mrString::enumValue("", values, names, 3, 3), 7);
    EXPECT_EQ(mrString::enumValue("man", values, names, 3, 0), 0);
    EXPECT_EQ(mrString::enumValue("a", values, names, 0, 0), 0);
}

}  // namespace
