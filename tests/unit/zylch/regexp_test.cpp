/// Regular expressions: what is matched, what is refused, what is given up, what is put in its place.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <random>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "../../support/guarded_page.h"
#include "zylch.h"

namespace {

const Zyl8u* bytesOf(const std::string& text) { return reinterpret_cast<const Zyl8u*>(text.data()); }

/// A compiled pattern in a block of exactly its size, with a word behind it that has to stay.
class Pattern {
  public:
    Pattern(const std::string& pattern, const char* options) {
        int size = 0;
        sizeStatus = zylsRegExpGetSize(pattern.c_str(), &size);
        m_block.assign(static_cast<std::size_t>(size) / sizeof(int) + 1, Guard);
        status = zylsRegExpInit(pattern.c_str(), options, m_block.data(), &errorOffset);
    }

    void* block() { return m_block.data(); }
    /// The matches as "(place,length)" each, "-" for a group that took no part, "limit" at the end of a
    /// search that was given up.
    std::string find(const std::string& text) { return find(bytesOf(text), static_cast<int>(text.size())); }
    std::string find(const Zyl8u* text, int len);

    int sizeStatus = 0;
    int status = 0;
    int errorOffset = -7;

  private:
    static constexpr int Guard = 0x7E7E7E7E;

    std::vector<int> m_block;
};

std::string Pattern::find(const Zyl8u* text, int len) {
    std::vector<ZylRegExpFind> found(100);
    int count = 100;
    const int findStatus = zylsRegExpFind_8u(text, len, block(), found.data(), &count);
    std::string all;
    for (int i = 0; i < count; ++i) {
        const ZylRegExpFind& record = found[static_cast<std::size_t>(i)];
        const auto* at = static_cast<const Zyl8u*>(record.pFind);
        EXPECT_TRUE(at != nullptr || record.lenFind == 0);
        all += at == nullptr ? "-"
                             : "(" + std::to_string(at - text) + "," + std::to_string(record.lenFind) + ")";
    }
    EXPECT_TRUE(findStatus == 0 || findStatus == zylStsRegExpLimitErr) << findStatus;
    EXPECT_EQ(m_block.back(), Guard) << "written beyond the block";
    return findStatus == 0 ? all : all + "limit";
}

/// Takes the text in front of the next tab off `line`, "%0A" for the byte of that number.
std::string takeField(std::string& line) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    std::string field = line.substr(0, end);
    line.erase(0, end + 1);
    for (std::size_t at = 0; (at = field.find('%', at)) != field.npos; ++at)
        field.replace(at, 3, 1, static_cast<char>(std::stoi(field.substr(at + 1, 2), nullptr, 16)));
    return field;
}

TEST(RegExp, FindsOrRefuses) {
    const GuardedPage page;
    std::ifstream rows(METRIG_SOURCE_DIR "/tests/unit/zylch/regexp_finds.txt");
    int count = 0;
    for (std::string row; std::getline(rows, row);) {
        if (row.starts_with('#'))
            continue;
        SCOPED_TRACE(row);
        ++count;
        const std::string expression = takeField(row);
        const std::string options = takeField(row);
        const std::string text = takeField(row);
        Pattern pattern(expression, options.empty() ? nullptr : options.c_str());
        if (pattern.status == zylStsRegExpPatternErr) {
            EXPECT_EQ("bad at " + std::to_string(pattern.errorOffset), row);
            // The size is told without the options.
            EXPECT_EQ(pattern.sizeStatus, options.empty() ? zylStsRegExpPatternErr : 0);
            continue;
        }
        EXPECT_EQ(std::tuple(pattern.status, pattern.sizeStatus, pattern.errorOffset), std::tuple(0, 0, -1));
        const int len = static_cast<int>(text.size());
        for (Zyl8u* at : {page.atFront(0), page.atBack(len, 0)}) {
            std::copy(text.begin(), text.end(), at);
            const std::string found = pattern.find(at, len);
            EXPECT_EQ(found.empty() ? "none" : found, row);
        }
    }
    EXPECT_EQ(count, 46);
}

TEST(RegExp, HasLimitsOfDepthAndLength) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '(') + std::string(depth, ')'); };
    EXPECT_EQ(Pattern(nested(100), "").status, 0);
    EXPECT_EQ(Pattern(nested(101), "").errorOffset, 100);
    EXPECT_EQ(Pattern(std::string(65536, 'a'), "").errorOffset, 65535);
}

// Patterns that need exponential time, or memory for each turn of a loop, must come to an end.
TEST(RegExp, RunawaysAreGivenUp) {
    EXPECT_EQ(Pattern("(a*)*b", "").find(std::string(2000, 'a')), "limit");
    EXPECT_EQ(Pattern("(?:a|b)*c", "").find(std::string(1500000, 'a')), "limit");
    EXPECT_EQ(Pattern("(?:){9999999}", "").find("a"), "limit");
    EXPECT_EQ(Pattern("c|(?:a|b)*c", "g").find("c" + std::string(1500000, 'a')), "(0,1)limit");
    EXPECT_EQ(Pattern("(((a)*?c|a))", "").find(std::string(1500000, 'a')), "limit");
    // These only look alike.
    EXPECT_EQ(Pattern("(?:a|b)*c", "g").find(std::string(1300000, 'a') + "cbc"), "(0,1300001)(1300001,2)");
    EXPECT_EQ(Pattern("(((a)*?c|a))", "").find(std::string(200000, 'a')), "(0,1)(0,1)(0,1)-");
    EXPECT_EQ(Pattern("[ab]*.*c", "s").find(std::string(200000, 'a') + "c"), "(0,200001)");
}

std::string pick(std::minstd_rand& random, std::initializer_list<const char*> choices) {
    return choices.begin()[random() % choices.size()];
}

/// A pattern that both libraries read alike. No loops round groups, and no groups in a lookahead: the
/// reference does not unset them.
std::string somePattern(std::minstd_rand& random, int depth) {
    std::string made;
    for (std::size_t left = random() % 4; left > 0; --left) {
        const std::size_t kind = random() % 9;
        if (kind < 5 || depth == 0) {
            made += pick(random, {"a", "b", ".", "[ab]", "[^a]", "[a-c1]", "\\d", "\\w", "\\s", "\\W"}) +
                    pick(random, {"", "", "*", "+", "?", "{2}", "{1,2}", "{1,}", "*?", "+?", "??", "{0,2}?"});
        } else if (kind == 5) {
            made += pick(random, {"^", "$", "\\b", "\\B"});
        } else if (kind == 6) {
            made += pick(random, {"(?=", "(?!"}) + somePattern(random, 0) + ")";
        } else {
            made += pick(random, {"(", "(?:"}) + somePattern(random, depth - 1) + ")";
        }
    }
    return random() % 4 == 0 ? made + "|" + somePattern(random, depth) : made;
}

std::string foundByReference(const std::string& pattern, const std::string& text) {
    const std::regex reference(pattern, std::regex::ECMAScript);
    std::smatch match;
    if (!std::regex_search(text, match, reference)) {
        return "";
    }
    std::string all;
    for (std::size_t i = 0; i < match.size(); ++i) {
        all += match[i].matched
                   ? "(" + std::to_string(match.position(i)) + "," + std::to_string(match.length(i)) + ")"
                   : "-";
    }
    return all;
}

TEST(RegExp, AgreesWithTheStandardLibrary) {
    std::minstd_rand random(11);
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
        const std::string pattern = somePattern(random, 3);
        Pattern compiled(pattern, "");
        ASSERT_EQ(compiled.status, 0) << pattern;
        for (int k = 0; k < 4; ++k) {
            std::string text;
            for (std::size_t left = random() % 12; left > 0; --left) {
                text += pick(random, {"a", "b", "c", "1", " ", "\n", "_"});
            }
            EXPECT_EQ(compiled.find(text), foundByReference(pattern, text))
                << pattern << " in " << testing::PrintToString(text);
        }
    }
}

struct ReplaceCase {
    std::string pattern;
    const char* options;
    std::string text;
    std::string replacement;
    int count;
    std::string result;
};

const ReplaceCase Replaces[] = {
    {"([^ ]*) *([^ ]*)", "", "#include [stdafx.h]", "$2 $1", 1, "[stdafx.h] #include"},
    {"([A-Z])(?:-[a-z]{3}-)([0-9]*)", "g", "A-xyz-37 # B:abcd:142 # C-wxy-66 # D-qrs-93", "$1$2", 3,
     "A37 # B:abcd:142 # C66 # D93"},
    {"", "g", "ab", "-", 3, "-a-b-"},
    {"a(b)?", "", "a", "$$0 $0 $1 $2 $x $", 1, "$0 a  $2 $x $"},
};

/// Status, elements consumed, matches replaced, result.
using Replaced = std::tuple<int, int, int, std::string>;

Replaced replace(const ReplaceCase& row, int room, int capacity) {
    Pattern pattern(row.pattern, row.options);
    const Zyl8u* text = bytesOf(row.replacement);
    int size = 0;
    EXPECT_EQ(zylsRegExpReplaceGetSize(text, &size), 0);
    std::vector<int> state(static_cast<std::size_t>(size) / sizeof(int) + 1);
    EXPECT_EQ(zylsRegExpReplaceInit(text, state.data()), 0);
    const GuardedPage page;
    Zyl8u* dst = page.atBack(room, 0);
    std::vector<ZylRegExpFind> found(static_cast<std::size_t>(capacity) + 1);
    int consumed = static_cast<int>(row.text.size());
    const int status = zylsRegExpReplace_8u(bytesOf(row.text), &consumed, dst, &room, found.data(), &capacity,
                                            pattern.block(), state.data());
    return {status, consumed, capacity, std::string(dst, dst + room)};
}

// The second call has the numbers that the first returned: an exact fit.
TEST(RegExp, Replaces) {
    for (const ReplaceCase& row : Replaces) {
        const int fit = static_cast<int>(row.result.size());
        const Replaced all = {0, static_cast<int>(row.text.size()), row.count, row.result};
        EXPECT_EQ(replace(row, 2000, 1000), all) << row.pattern;
        EXPECT_EQ(replace(row, fit, row.count), all) << row.pattern;
        EXPECT_EQ(std::get<0>(replace(row, fit - 1, 1000)), zylStsNoRoomNote) << row.pattern;
    }
}

}  // namespace
