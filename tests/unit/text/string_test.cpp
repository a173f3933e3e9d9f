#include <gtest/gtest.h>

#include "support/captured_output.h"
#include "text/mrstring.h"

namespace {

using namespace std::string_literals;

TEST(String, BufferGrowsAndTakesItselfAsSource) {
    mrString text = "0123456789abcde";
    text << 'f';
    EXPECT_EQ(text.capacity(), 32);
    text.assign(text.c_str() + 8);
    text.assign(text.c_str() + 2);  // keeps the buffer
    EXPECT_EQ(str(text), "abcdef");
    text += text;
    text += text;  // crosses the buffer's end
    EXPECT_EQ(str(text), "abcdefabcdefabcdefabcdef");
    text.free();
    text << "again";
    EXPECT_EQ(str(text), "again");
}

TEST(String, ComparesSignedBytesThenLengths) {
    EXPECT_EQ(mrString("\x80").compare("a"), -1);
    EXPECT_EQ(mrString("abcde").compare("ab"), 3);
    mrString nul = "ab";
    nul << '\0' << "c";
    EXPECT_EQ(nul.compare("ab"), 2);
    EXPECT_EQ(str(nul + nul), "ab\0cab\0c"s);
}

TEST(String, FindsAndCuts) {
    const mrString text = "abcabc";
    EXPECT_EQ(text.find("bc", 2), 4);
    EXPECT_EQ(text.find("bc", 5), mrString::npos);
    EXPECT_EQ(text.rfind("abcabca"), mrString::npos);
    EXPECT_FALSE(text.beginsWith("abcabcd"));
    EXPECT_EQ(str(text.substr(4, 9) + text.substr(4, -1)), "bc");
}

TEST(String, TrimLeavesTheCarriageReturnBehindAndTheMarkOfFailure) {
    static constexpr const char* rows[][2] = {
        {" \t\rabc \t", "abc"}, {"abc \r ", "abc \r"}, {" \r\t", ""}, {"          ten blanks", "ten blanks"}};
    for (const auto& [untrimmed, trimmed] : rows) {
        mrString text = untrimmed;
        text.setFailed(true);
        mrString copy;
        copy = text;
        EXPECT_FALSE(mrString(text).failed() || copy.failed());
        text.trim();
        EXPECT_TRUE(text.failed());
        EXPECT_EQ(str(text), trimmed) << '"' << untrimmed << '"';
    }
}

TEST(String, TakesFileNamesApart) {
    // folder, name and title of the first
    static constexpr const char* rows[][4] = {
        {"a.b.c", "", "a.b.c", "a.b"}, {"x\\y/z", "x\\y/", "z", "z"},    {"x/y\\z.t", "x/y\\", "z.t", "z"},
        {"dir/", "dir/", "", ""},      {"/d.d/.rc", "/d.d/", ".rc", ""}, {"", "", "", ""},
    };
    for (const auto& [path, dir, name, title] : rows) {
        EXPECT_EQ(str(mrString(path).getFileDir()), dir) << path;
        EXPECT_EQ(str(mrString(path).getFileName()), name) << path;
        EXPECT_EQ(str(mrString(path).getFileTitle()), title) << path;
    }
}

/// The value that a text makes of `value`.
template <class T>
std::string reading(T value, const char* text) {
    mrString source = text;
    value << source;
    return (source.failed() ? "failed " : "") + str(mrFormat("%g", static_cast<double>(value)));
}

TEST(String, ReadsValues) {
    static constexpr const char* numbers[][2] = {
        {"0X1f", "31"}, {" 0x1F", "0"}, {"12abc", "12"},       {"-5", "-5"},
        {"  42", "42"}, {" \t", "-77"}, {"abc", "failed -77"}, {"-0x10", "0"},
    };
    for (const auto& [text, value] : numbers) {
        EXPECT_EQ(reading(-77, text), value) << text;
    }
    static constexpr const char* answers[][2] = {
        {"Yes", "1"}, {" y ", "1"},   {"1", "1"},       {"FALSE", "0"},
        {"0", "0"},   {"never", "0"}, {"", "failed 0"}, {"10", "failed 0"},
    };
    for (const auto& [text, value] : answers) {
        EXPECT_EQ(reading(true, text), value) << text;
    }
    EXPECT_EQ(reading(-77LL, "0x7FFFFFFFFFFFFFFF"), reading(0.0, "9223372036854775807"));
    EXPECT_EQ(reading(-77LL, "-7 ms"), "-7");
    EXPECT_EQ(reading(-77.0, "-1.5e3 clocks"), "-1500");
    EXPECT_EQ(reading(-77.0, "fast"), "failed -77");
    EXPECT_EQ(reading(-77.0, ""), "-77");
}

}  // namespace
