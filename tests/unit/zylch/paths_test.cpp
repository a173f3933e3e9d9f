/// The functions on strings of known length or with a NUL: each code path against the standard library, at
/// all alignments and lengths, next to memory that must not be touched.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

#include "../../support/guarded_page.h"
#include "code_path.h"
#include "zylch.h"

namespace {

constexpr int Alignments = 64;
constexpr int Longest = 300;
constexpr int Reach = 96;

using Bytes = std::basic_string<Zyl8u>;
using View = std::basic_string_view<Zyl8u>;
using Random = std::minstd_rand;

int below(Random& random, int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }
int length(View text) { return static_cast<int>(text.size()); }

/// A text in a page of its own, at one of its ends.
class Placed {
  public:
    View put(const Bytes& bytes, bool atBack, int gap) {
        m_page.wipe(m_data, m_len);
        m_len = length(bytes);
        m_data = atBack ? m_page.atBack(m_len, gap) : m_page.atFront(gap);
        std::copy(bytes.begin(), bytes.end(), m_data);
        return {m_data, bytes.size()};
    }
    Zyl8u* data() const { return m_data; }
    bool isAlone() const { return m_page.isBlankAround(m_data, m_len, Reach); }

  private:
    GuardedPage m_page;
    Zyl8u* m_data = m_page.begin();
    int m_len = 0;
};

/// Capital and small letters differ in one bit. 0xD7 and 0xF7 are signs, 0xDF and 0xFF have no counterpart.
Bytes inCase(View text, bool upper) {
    Bytes result(text);
    for (Zyl8u& c : result) {
        const int small = c | 0x20;
        if ((small >= 'a' && small <= 'z') || (small >= 0xE0 && small <= 0xFE && small != 0xF7)) {
            c = static_cast<Zyl8u>(upper ? small - 0x20 : small);
        }
    }
    return result;
}
Bytes lowered(View text) { return inCase(text, false); }
Bytes uppered(View text) { return inCase(text, true); }

/// In turn: any bytes, two values at random, one value with a single other one in it.
Bytes someText(Random& random, int len) {
    const int kind = below(random, 3);
    Bytes text(static_cast<std::size_t>(len), 2);
    for (Zyl8u& byte : text) {
        if (kind != 2) {
            byte = static_cast<Zyl8u>(kind == 0 ? random() >> 8 : 1 + random() % 2);
        }
    }
    if (kind == 2 && len > 0) {
        text[random() % text.size()] = 1;
    }
    return text;
}

/// The same text, or one with another byte, or with all letters in upper case, or both.
Bytes changed(Random& random, View text) {
    Bytes result = below(random, 2) == 0 ? uppered(text) : Bytes(text);
    if (!text.empty() && below(random, 2) == 0) {
        result[random() % text.size()] = static_cast<Zyl8u>(random() >> 8);
    }
    return result;
}

/// A stretch of the text, sometimes with a wrong byte, or one byte more than the text.
Bytes someFind(Random& random, View text) {
    if (below(random, 16) == 0) {
        return Bytes(text) + Zyl8u{2};
    }
    const std::size_t begin = random() % (text.size() + 1);
    const View stretch = text.substr(begin, random() % (text.size() - begin + 1));
    return below(random, 4) == 0 ? changed(random, stretch) : Bytes(stretch);
}

/// What one round hands to all functions. `textZ` and `findZ` end in a NUL; `other` has the length of `text`,
/// in which are the `count` bytes from `start` on.
struct Trial {
    View text, other, find, set, textZ, findZ;
    Zyl8u value = 0;
    Zyl8u newValue = 0;
    int start = 0;
    int count = 0;
    Placed room[6];

    void make(Random& random, int len, bool atBack, int gap) {
        static constexpr int setSizes[] = {0, 1, 4, 16, 17, 64, 256};
        const Bytes nul(1, 0);
        text = room[0].put(someText(random, len), atBack, gap);
        other = room[1].put(changed(random, text), !atBack, below(random, Alignments));
        find = room[2].put(someFind(random, text), atBack, below(random, 4));
        set = room[3].put(someText(random, setSizes[below(random, 7)]), atBack, 0);
        textZ = room[4].put(Bytes(text) + nul, atBack, gap);
        findZ = room[5].put(Bytes(find) + nul, atBack, 0);
        value = text.empty() || below(random, 2) == 0 ? Zyl8u{1} : text[random() % text.size()];
        newValue = static_cast<Zyl8u>(random() >> 8);
        start = below(random, len + 1);
        count = below(random, len - start + 1);
    }
};

using T = const Trial&;

// Searches and comparisons: how the library is asked, and what is right.

using Ask = int (*)(T, int* result);

template <auto call>
int withValue(T t, int* result) {
    return call(t.text.data(), length(t.text), t.value, result);
}
template <auto call>
int withSet(T t, int* result) {
    return call(t.text.data(), length(t.text), t.set.data(), length(t.set), result);
}
template <auto call>
int withFind(T t, int* result) {
    return call(t.text.data(), length(t.text), t.find.data(), length(t.find), result);
}
template <auto call>
int withOther(T t, int* result) {
    return call(t.text.data(), t.other.data(), length(t.text), result);
}

/// -1 is what the library, too, makes of "none".
int index(std::size_t place) { return static_cast<int>(place); }
View upToNul(View text) { return text.substr(0, text.find(Zyl8u{0})); }

int difference(View a, View b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin());
    return inA == a.end() ? 0 : *inA - *inB;
}

const struct {
    const char* name;
    Ask ask;
    int (*expected)(T);
} Searches[] = {
    {"FindC", withValue<zylsFindC_8u>, [](T t) { return index(t.text.find(t.value)); }},
    {"FindRevC", withValue<zylsFindRevC_8u>, [](T t) { return index(t.text.rfind(t.value)); }},
    {"FindCAny", withSet<zylsFindCAny_8u>, [](T t) { return index(t.text.find_first_of(t.set)); }},
    {"FindRevCAny", withSet<zylsFindRevCAny_8u>, [](T t) { return index(t.text.find_last_of(t.set)); }},
    {"Find", withFind<zylsFind_8u>, [](T t) { return index(t.text.find(t.find)); }},
    {"FindRev", withFind<zylsFindRev_8u>, [](T t) { return index(t.text.rfind(t.find)); }},
    {"Find_Z", [](T t, int* result) { return zylsFind_Z_8u(t.textZ.data(), t.findZ.data(), result); },
     [](T t) { return index(upToNul(t.text).find(upToNul(t.find))); }},
    {"FindC_Z", [](T t, int* result) { return zylsFindC_Z_8u(t.textZ.data(), t.value, result); },
     [](T t) { return index(upToNul(t.text).find(t.value)); }},
    {"Compare", withOther<zylsCompare_8u>, [](T t) { return difference(t.text, t.other); }},
    {"Equal", withOther<zylsEqual_8u>, [](T t) { return t.text == t.other ? 1 : 0; }},
    {"CompareIgnoreCase", withOther<zylsCompareIgnoreCaseLatin_8u>,
     [](T t) { return difference(lowered(t.text), lowered(t.other)); }},
};

// Functions that write a text: `d` has room for what is right and no more. The in-place forms find the text
// in `d`. `*n` is the length in and out.

template <auto call>
int trimSet(T t, Zyl8u* d, int* n) {
    return call(t.text.data(), *n, t.set.data(), length(t.set), d, n);
}

Bytes trimmed(View text, View drop, bool start, bool end) {
    const std::size_t first = start ? std::min(text.find_first_not_of(drop), text.size()) : 0;
    const std::size_t last = end ? text.find_last_not_of(drop) + 1 : text.size();
    return Bytes(text.substr(first, last > first ? last - first : 0));
}
Bytes trimmedOfValue(T t) { return trimmed(t.text, View(&t.value, 1), true, true); }

Bytes replaced(T t) {
    Bytes result(t.text);
    std::replace(result.begin(), result.end(), t.value, t.newValue);
    return result;
}
Bytes inserted(T t) { return Bytes(t.text).insert(static_cast<std::size_t>(t.start), t.find); }
Bytes removed(T t) {
    return Bytes(t.text).erase(static_cast<std::size_t>(t.start), static_cast<std::size_t>(t.count));
}

constexpr bool InPlace = true;

const struct {
    const char* name;
    bool inPlace;
    int (*write)(T, Zyl8u* d, int* n);
    Bytes (*expected)(T);
} Writings[] = {
    {"Uppercase", false, [](T t, Zyl8u* d, int* n) { return zylsUppercaseLatin_8u(t.text.data(), d, *n); },
     [](T t) { return uppered(t.text); }},
    {"Lowercase", false, [](T t, Zyl8u* d, int* n) { return zylsLowercaseLatin_8u(t.text.data(), d, *n); },
     [](T t) { return lowered(t.text); }},
    {"Uppercase_I", InPlace, [](T, Zyl8u* d, int* n) { return zylsUppercaseLatin_8u_I(d, *n); },
     [](T t) { return uppered(t.text); }},
    {"Lowercase_I", InPlace, [](T, Zyl8u* d, int* n) { return zylsLowercaseLatin_8u_I(d, *n); },
     [](T t) { return lowered(t.text); }},
    {"ReplaceC", false,
     [](T t, Zyl8u* d, int* n) { return zylsReplaceC_8u(t.text.data(), d, *n, t.value, t.newValue); },
     replaced},
    {"TrimC_I", InPlace, [](T t, Zyl8u* d, int* n) { return zylsTrimC_8u_I(d, n, t.value); }, trimmedOfValue},
    {"TrimC", false, [](T t, Zyl8u* d, int* n) { return zylsTrimC_8u(t.text.data(), *n, t.value, d, n); },
     trimmedOfValue},
    {"TrimCAny", false, trimSet<zylsTrimCAny_8u>, [](T t) { return trimmed(t.text, t.set, true, true); }},
    {"TrimStartCAny", false, trimSet<zylsTrimStartCAny_8u>,
     [](T t) { return trimmed(t.text, t.set, true, false); }},
    {"TrimEndCAny", false, trimSet<zylsTrimEndCAny_8u>,
     [](T t) { return trimmed(t.text, t.set, false, true); }},
    {"Concat", false,
     [](T t, Zyl8u* d, int* n) {
         *n += length(t.find);
         return zylsConcat_8u(t.text.data(), length(t.text), t.find.data(), length(t.find), d);
     },
     [](T t) { return Bytes(t.text).append(t.find); }},
    {"Insert", false,
     [](T t, Zyl8u* d, int* n) {
         *n += length(t.find);
         return zylsInsert_8u(t.text.data(), length(t.text), t.find.data(), length(t.find), d, t.start);
     },
     inserted},
    {"Insert_I", InPlace,
     [](T t, Zyl8u* d, int* n) { return zylsInsert_8u_I(t.find.data(), length(t.find), d, n, t.start); },
     inserted},
    {"Remove", false,
     [](T t, Zyl8u* d, int* n) {
         *n -= t.count;
         return zylsRemove_8u(t.text.data(), length(t.text), d, t.start, t.count);
     },
     removed},
    {"Remove_I", InPlace, [](T t, Zyl8u* d, int* n) { return zylsRemove_8u_I(d, n, t.start, t.count); },
     removed},
};

class Paths : public OnEachPath {
  protected:
    /// All lengths at all alignments, from the front guard on and up to the back guard, until one fails.
    template <class Check>
    void forEachTrial(Check check) {
        Random random(7);
        for (int i = 0; i < (Longest + 1) * Alignments * 2 && !HasFailure(); ++i) {
            m_trial.make(random, i / (Alignments * 2), i % 2 != 0, i / 2 % Alignments);
            check(m_trial);
        }
    }

    static testing::Message inputOf(const char* name, T t) {
        return testing::Message() << name << ", text " << testing::PrintToString(t.text) << ", find "
                                  << testing::PrintToString(t.find) << ", value " << int{t.value};
    }

    Trial m_trial;
    Placed m_dst;
};

TEST_P(Paths, SearchesAndComparisons) {
    forEachTrial([](T trial) {
        for (const auto& row : Searches) {
            int result = -77;
            const int status = row.ask(trial, &result);
            const int expected = row.expected(trial);
            if (status != zylStsNoErr || result != expected) {
                ADD_FAILURE() << inputOf(row.name, trial) << ": " << result << " and not " << expected;
            }
        }
    });
}

TEST_P(Paths, Writings) {
    forEachTrial([this](T trial) {
        for (const auto& row : Writings) {
            const Bytes expected = row.expected(trial);
            int len = length(trial.text);
            Bytes before = row.inPlace ? Bytes(trial.text) : Bytes();
            before.resize(std::max(before.size(), expected.size()), GuardedPage::blank);
            m_dst.put(before, len % 2 != 0, trial.newValue % Alignments);
            const int status = row.write(trial, m_dst.data(), &len);
            const View written(m_dst.data(), expected.size());
            if (status != zylStsNoErr || len != length(expected) || written != expected || !m_dst.isAlone()) {
                ADD_FAILURE() << inputOf(row.name, trial);
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(All, Paths, testing::ValuesIn(Without), pathName);

}  // namespace
