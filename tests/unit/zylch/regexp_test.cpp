/// Regular expressions: what is matched, what is refused, what is given up, what is put in its place.

#include <gtest/gtest.h>

#include <algorithm>
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
    std::string find(const std::string& text, int capacity = 100) {
        return find(bytesOf(text), static_cast<int>(text.size()), capacity);
    }
    std::string find(const Zyl8u* text, int len, int capacity);

    int sizeStatus = 0;
    int status = 0;
    int errorOffset = -7;

  private:
    static constexpr int Guard = 0x7E7E7E7E;

    std::vector<int> m_block;
};

std::string Pattern::find(const Zyl8u* text, int len, int capacity) {
    std::vector<ZylRegExpFind> found(100);
    int count = capacity;
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

using namespace std::string_literals;

// Where ECMAScript differs from other dialects the expected result is its own.
const struct {
    std::string pattern;
    const char* options;
    std::string text;
    std::string found;
} Finds[] = {
    {"", nullptr, "", "(0,0)"},
    {"", "g", "ab", "(0,0)(1,0)(2,0)"},
    {"a*", "g", "aab", "(0,2)(2,0)(3,0)"},
    // Groups: those of a turn that is over are unset, also within a loop.
    {"(z)((a+)?(b+)?(c))*", "", "zaacbbbcac", "(0,10)(0,1)(8,2)(8,1)-(9,1)"},
    {"((a)|b)*", "", "ab", "(0,2)(1,1)-"},
    {"(a*)*", "", "b", "(0,0)-"},
    {"(?:a?)*?b", "", "aab", "(0,3)"},
    {"(a){0}b", "", "ab", "(1,1)-"},
    // Quantifiers.
    {"a{2,3}", "g", "aaaaa", "(0,3)(3,2)"},
    {"(?:ab){2,3}?c", "", "abababc", "(0,7)"},
    {"a{,2}|{", "g", "a{,2}{", "(0,5)(5,1)"},
    {"a{99999999999}", "", "aaa", ""},
    // Lookahead: what it sets stays, what it might have tried otherwise is gone.
    {"(?=(a+))a*b\\1", "", "baaabac", "(3,3)(3,1)"},
    {"(.*?)a(?!(a+)b\\2c)\\2(.*)", "", "baaabaac", "(0,8)(0,2)-(3,5)"},
    {"(?!(?=(a))b)a", "", "a", "(0,1)-"},
    // Back references; to a group that took no part, and from inside.
    {"(a\\1)", "", "aa", "(0,1)(0,1)"},
    {"(ab)\\1", "i", "aBAb", "(0,4)(0,2)"},
    {"(a)(b)?\\2c", "", "ac", "(0,2)(0,1)-"},
    // Sets and escapes.
    {"[]a]", "", "a]", ""},
    {"[a-\\d]+", "", "-a1", "(0,3)"},
    {"[^]", "", "\n", "(0,1)"},
    {"[-a]+[a-]+[\\w-.]+", "", "a-a-b.", "(0,6)"},
    {"[\\x80-\\xFF]+", "", "a\x80\xC3\xFF", "(1,3)"},
    {"\\w+\\W", "", "-a_9Z\xE9", "(1,5)"},
    {"\\s+\\S", "", "a \t\n\v\f\rb", "(1,7)"},
    {"\\n\\t\\r\\f\\v\\x41\\.\\/\\-", "", "\n\t\r\f\vA./-", "(0,9)"},
    {".+", "", "a\0b\rc"s, "(0,3)"},
    // Options.
    {"AB[c-e]", "i", "abD", "(0,3)"},
    {"[^A]", "i", "aB", "(1,1)"},
    {"\\xC3", "i", "\xE3", ""},
    {"^b$", "m", "a\nb\rc", "(2,1)"},
    {"$", "gm", "a\n", "(1,0)(2,0)"},
    {"a.b", "s", "a\nb", "(0,3)"},
    {" a # one\n [ #] \\ {2} # two", "x", "a#  ", "(0,4)"},
    {"(?:AB) ?c", "ix", "abC", "(0,3)"},
};

TEST(RegExp, Finds) {
    const GuardedPage page;
    for (const auto& row : Finds) {
        Pattern pattern(row.pattern, row.options);
        ASSERT_EQ(pattern.status, 0) << row.pattern;
        EXPECT_EQ(pattern.sizeStatus, 0) << row.pattern;
        EXPECT_EQ(pattern.errorOffset, -1);
        const int len = static_cast<int>(row.text.size());
        for (Zyl8u* text : {page.atFront(0), page.atBack(len, 0)}) {
            std::copy(row.text.begin(), row.text.end(), text);
            EXPECT_EQ(pattern.find(text, len, 100), row.found) << row.pattern << " in " << row.text;
        }
    }
}

const struct {
    std::string pattern;
    const char* options;
    int offset;
} BadPatterns[] = {
    {"ab(c", "", 2},
    {"a[bc", "", 1},
    {"a(?<b)", "", 1},
    {"a**", "", 2},
    {"a|?", "", 2},
    {"(?=a)*", "", 5},
    {"a{3,2}", "", 1},
    {"[z-a]", "", 1},
    {"(a)\\2", "", 3},
    {"a", "gz", -1},
    {"(# )", "x", 0},
    {std::string(101, '(') + std::string(101, ')'), "", 100},
    {std::string(65536, 'a'), "", 65535},
};

TEST(RegExp, BadPatternsTellTheirPlace) {
    for (const auto& row : BadPatterns) {
        Pattern pattern(row.pattern, row.options);
        EXPECT_EQ(pattern.status, zylStsRegExpPatternErr) << row.pattern.substr(0, 20);
        EXPECT_EQ(pattern.errorOffset, row.offset) << row.pattern.substr(0, 20);
        // The size is told without the options.
        EXPECT_EQ(pattern.sizeStatus, row.options[0] == '\0' ? zylStsRegExpPatternErr : 0);
    }
    EXPECT_EQ(Pattern(std::string(100, '(') + std::string(100, ')'), "").status, 0);
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

TEST(RegExp, BlockMayBeMovedAndUsedAgainAndFillsAShortList) {
    Pattern first("(a|b)+(?=c)", "g");
    Pattern moved = first;
    EXPECT_EQ(first.find("abcbc"), "(0,2)(3,1)");
    EXPECT_EQ(moved.find("xbc"), "(1,1)");
    EXPECT_EQ(first.find("abcbc", 1), "(0,2)");
    EXPECT_EQ(first.find("abcbc", 0), "");
    EXPECT_EQ(Pattern("(a)(b)", "").find("ab", 2), "(0,2)(0,1)");
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
    {"([A-Z])([0-9]{2,4}) ", "", "A37 B4 C107 D54112 E1103 XXX", "$2:$1 ", 1,
     "37:A B4 C107 D54112 E1103 XXX"},
    {"([A-Z])([0-9]{2,4})", "g", "A37 B4 C107 D54112 E1103 XXX", "$2:$1 ", 4,
     "37:A  B4 107:C  5411:D 2 1103:E  XXX"},
    {"([A-Z])(?:-[a-z]{3}-)([0-9]*)", "g", "A-xyz-37 # B:abcd:142 # C-wxy-66 # D-qrs-93", "$1$2", 3,
     "A37 # B:abcd:142 # C66 # D93"},
    {"([A-Z]-)(?=[a-z]{3})([a-z0-9]*)", "g", "A-xyz37 # B-ab6142 # C-Wxy66 # D-qrs93", "$2$1", 2,
     "xyz37A- # B-ab6142 # C-Wxy66 # qrs93D-"},
    {"([A-Z]-)(?![a-z]{3})([a-z0-9]*)", "g", "A-xyz37 # B-ab6142 # C-Wxy66 # D-qrs93", "$2$1", 2,
     "A-xyz37 # ab6142B- # C-Wxy66 # D-qrs93"},
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

// Text is cut anywhere, a replacement only in front. A short list is no lack of room: the rest is copied.
TEST(RegExp, ReplacesUpToTheRoomAndTheList) {
    const ReplaceCase of = {"t+", "g", "text,text", "<$0>", 4, "<t>ex<t>,<t>ex<t>"};
    const struct {
        int room;
        int capacity;
        Replaced expected;
    } rows[] = {
        {16, 9, {zylStsNoRoomNote, 8, 3, "<t>ex<t>,<t>ex"}},
        {2, 9, {zylStsNoRoomNote, 0, 0, ""}},
        {13, 2, {zylStsNoErr, 9, 2, "<t>ex<t>,text"}},
        {9, 0, {zylStsNoErr, 9, 0, "text,text"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(replace(of, row.room, row.capacity), row.expected) << row.room;
    }
}

}  // namespace
