#include "text/mrparse.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(Parse, CutsWords) {
    static constexpr const char* rows[][3] = {
        // text, separators, words
        {"a,,b", ",", "[a][b]"},
        {",, ,", ", ", ""},
        {"say \"a b\"", " ", "[say][\"a][b\"]"},
        {"\"a\"\"b\"", " \"", "[a\"b]"},
        {"abc\"def\"ghi", " \"", "[abc][def][ghi]"},
        {"a \"never closed, b", ", \"", "[a][never closed, b]"},
        {"\"\"\"\"", " \"", "[\"]"},
        {"\"a\" b", "\"", "[a][ b]"},
    };
    for (const auto& [text, separators, expected] : rows) {
        mrStringList words;
        words.append("left over");
        const int count = mrString(text).parse(words, separators);
        EXPECT_EQ(count, words.size());
        std::string joined;
        for (const mrString& word : words) {
            joined += "[" + str(word) + "]";
        }
        EXPECT_EQ(joined, expected) << text << " at " << separators;
    }
}

}  // namespace
