#include "text/mrparse.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

/// The words, each in brackets.
std::string wordsOf(const char* text, const char* separators) {
    mrStringList words;
    words.append("left over");
    const int count = mrString(text).parse(words, separators);
    EXPECT_EQ(count, words.size());
    std::string joined;
    for (const mrString& word : words) {
        joined += "[" + str(word) + "]";
    }
    return joined;
}

TEST(Parse, CutsWords) {
    static constexpr struct {
        const char* text;
        const char* separators;
        const char* words;
    } rows[] = {
        {"a,,b", ",", "[a][b]"},
        {" a b ", " ", "[a][b]"},
        {"", ",", ""},
        {",, ,", ", ", ""},
        {"a b", "", "[a b]"},
        {"say \"a b\"", " ", "[say][\"a][b\"]"},
        {"one \"two three\",four", ", \"", "[one][two three][four]"},
        {"\"a\"\"b\"", " \"", "[a\"b]"},
        {"\"\"", "\"", ""},
        {"x \"\" y", " \"", "[x][y]"},
        {"abc\"def\"ghi", " \"", "[abc][def][ghi]"},
        {"a \"never closed, b", ", \"", "[a][never closed, b]"},
        {"a \"", " \"", "[a]"},
        {"\"\"\"\"", " \"", "[\"]"},
        {"\"a\" b", "\"", "[a][ b]"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(wordsOf(row.text, row.separators), row.words) << row.text << " at " << row.separators;
    }
}

TEST(Parse, CountsWordsBeyondTheTargets) {
    mrString a = "old", b = "old", c = "old";
    EXPECT_EQ(mrString("x=1=2").parse(a, b, "="), 3);
    EXPECT_EQ(str(a), "x");
    EXPECT_EQ(str(b), "1");
    EXPECT_EQ(mrString("x").parse(a, b, c, "="), 1);
    EXPECT_EQ(str(a), "x");
    EXPECT_EQ(str(b), "");
    EXPECT_EQ(str(c), "");
    // A text may be cut into itself.
    EXPECT_EQ(a.parse(a, b, "="), 1);
    EXPECT_EQ(str(a), "x");
}

}  // namespace
