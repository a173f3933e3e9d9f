#include <gtest/gtest.h>

#include <climits>

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
    EXPECT_EQ(text.rfind("bc"), 4);
    EXPECT_EQ(text.rfind("abcabca"), mrString::npos);
    EXPECT_FALSE(text.beginsWith("abcabcd"));
    EXPECT_EQ(str(text.substr(7)), "");
    EXPECT_EQ(str(text.substr(4, 9)), "bc");
    EXPECT_EQ(str(text.substr(4, -1)), "");
}

TEST(String, TrimLeavesTheCarriageReturnBehind) {
    static constexpr const char* rows[][2] = {
        {" \t\rabc \t", "abc"}, {"abc \r ", "abc \r"}, {" \r\t", ""}, {"          ten blanks", "ten blanks"}};
    for (const auto& [untrimmed, trimmed] : rows) {
        mrString text = untrimmed;
        text.trim();
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

/// A text, the value it makes of `before`, and whether that is a failure.
template <class T>
struct Reading {
    const char* text;
    T value;
    bool failed;
};

template <class T, std::size_t Count>
void expectReadings(T before, const Reading<T> (&rows)[Count]) {
    for (const auto& row : rows) {
        mrString text = row.text;
        T value = before;
        value << text;
        EXPECT_EQ(value, row.value) << '"' << row.text << '"';
        EXPECT_EQ(text.failed(), row.failed) << '"' << row.text << '"';
    }
}

TEST(String, ReadsValues) {
    static constexpr Reading<int> numbers[] = {{"0X1f", 31, false}, {" 0x1F", 0, false}, {"12abc", 12, false},
                                               {"-5", -5, false},   {"  42", 42, false}, {" \t", -77, false},
                                               {"abc", -77, true},  {"-0x10", 0, false}};
    static constexpr Reading<bool> answers[] = {
        {"Yes", true, false}, {" y ", true, false},    {"1", true, false}, {"FALSE", false, false},
        {"0", false, false},  {"never", false, false}, {"", false, true},  {"10", false, true}};
    expectReadings(-77, numbers);
    expectReadings(true, answers);
    expectReadings<long long>(-77, {{"0x7FFFFFFFFFFFFFFF", LLONG_MAX, false}, {"-7 ms", -7, false}});
    expectReadings<double>(-77, {{"-1.5e3 clocks", -1500, false}, {"fast", -77, true}, {"", -77, false}});
}

}  // namespace
