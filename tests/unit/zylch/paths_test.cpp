/// Every string function with a form for each code path: all forms against the standard library, at all
/// alignments and lengths, next to memory that must not be touched.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "../../../zylch/core/dispatch.h"
#include "../../support/guarded_page.h"
#include "zylch.h"
#include "zylcore.h"

namespace {

constexpr int kAlignments = 64;
constexpr int kLongest = 300;
constexpr int kReach = 96;

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
        return view();
    }

    Zyl8u* data() const { return m_data; }
    int len() const { return m_len; }
    View view() const { return {m_data, static_cast<std::size_t>(m_len)}; }
    bool isAlone() const { return m_page.isBlankAround(m_data, m_len, kReach); }

  private:
    GuardedPage m_page;
    Zyl8u* m_data = m_page.begin();
    int m_len = 0;
};

bool isUpper(Zyl8u c) { return (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7); }
bool isLower(Zyl8u c) { return (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7); }
Zyl8u lower(Zyl8u c) { return isUpper(c) ? static_cast<Zyl8u>(c + 0x20) : c; }
Zyl8u upper(Zyl8u c) { return isLower(c) ? static_cast<Zyl8u>(c - 0x20) : c; }

Bytes mapped(View text, Zyl8u (*map)(Zyl8u)) {
    Bytes result(text.size(), 0);
    std::transform(text.begin(), text.end(), result.begin(), map);
    return result;
}
Bytes lowered(View text) { return mapped(text, lower); }
Bytes uppered(View text) { return mapped(text, upper); }

/// In turn: any bytes, two values at random, one value with a single other one in it.
Bytes someText(Random& random, int len) {
    const int kind = below(random, 3);
    Bytes text(static_cast<std::size_t>(len), 2);
    for (Zyl8u& byte : text) {
        if (kind != 2)
            byte = static_cast<Zyl8u>(kind == 0 ? random() >> 8 : 1 + random() % 2);
    }
    if (kind == 2 && len > 0)
        text[random() % text.size()] = 1;
    return text;
}

/// The same text, or one with another byte, or with all letters in upper case, or both.
Bytes changed(Random& random, View text) {
    Bytes result = below(random, 2) == 0 ? uppered(text) : Bytes(text);
    if (!text.empty() && below(random, 2) == 0)
        result[random() % text.size()] = static_cast<Zyl8u>(random() >> 8);
    return result;
}

/// A stretch of the text, sometimes with a wrong byte, or one byte more than the text.
Bytes someFind(Random& random, View text) {
    if (below(random, 16) == 0)
        return Bytes(text) + Zyl8u{2};
    const std::size_t begin = random() % (text.size() + 1);
    const View stretch = text.substr(begin, random() % (text.size() - begin + 1));
    return below(random, 4) == 0 ? changed(random, stretch) : Bytes(stretch);
}

/// What one round hands to all functions. `textZ` and `findZ` end in a NUL; `other` has the length of `text`.
class Trial {
  public:
    View text, other, find, set, textZ, findZ;
    Zyl8u value = 0;
    Zyl8u newValue = 0;

    void make(Random& random, int len, bool atBack, int gap) {
        static constexpr int setSizes[] = {0, 1, 4, 16, 17, 64, 256};
        const Bytes nul(1, 0);
        text = m_room[0].put(someText(random, len), atBack, gap);
        other = m_room[1].put(changed(random, text), !atBack, below(random, kAlignments));
        find = m_room[2].put(someFind(random, text), atBack, below(random, 4));
        set = m_room[3].put(someText(random, setSizes[below(random, 7)]), atBack, 0);
        textZ = m_room[4].put(Bytes(text) + nul, atBack, gap);
        findZ = m_room[5].put(Bytes(find) + nul, atBack, 0);
        value = text.empty() || below(random, 2) == 0 ? Zyl8u{1} : text[random() % text.size()];
        newValue = static_cast<Zyl8u>(random() >> 8);
    }

  private:
    Placed m_room[6];
};

using T = const Trial&;

// Searches and comparisons: what the library says, and what is right.

struct Search {
    const char* name;
    int (*call)(T, int* result);
    int (*expected)(T);
};

int index(View text, View::const_iterator at) {
    return at == text.end() ? -1 : static_cast<int>(at - text.begin());
}
int index(View text, View::const_reverse_iterator at) { return static_cast<int>(text.rend() - at) - 1; }

View upToNul(View text) { return text.substr(0, text.find(Zyl8u{0})); }

int firstText(View text, View find) {
    return find.empty() ? 0 : index(text, std::search(text.begin(), text.end(), find.begin(), find.end()));
}
int lastText(View text, View find) {
    if (find.empty())
        return length(text);
    return index(text, std::find_end(text.begin(), text.end(), find.begin(), find.end()));
}
int firstValue(View text, Zyl8u value) { return index(text, std::find(text.begin(), text.end(), value)); }

int difference(View a, View b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin());
    return inA == a.end() ? 0 : *inA - *inB;
}

const Search kSearches[] = {
    {"FindC", [](T t, int* r) { return zylsFindC_8u(t.text.data(), length(t.text), t.value, r); },
     [](T t) { return firstValue(t.text, t.value); }},
    {"FindRevC", [](T t, int* r) { return zylsFindRevC_8u(t.text.data(), length(t.text), t.value, r); },
     [](T t) { return index(t.text, std::find(t.text.rbegin(), t.text.rend(), t.value)); }},
    {"FindCAny",
     [](T t, int* r) {
         return zylsFindCAny_8u(t.text.data(), length(t.text), t.set.data(), length(t.set), r);
     },
     [](T t) {
         return index(t.text, std::find_first_of(t.text.begin(), t.text.end(), t.set.begin(), t.set.end()));
     }},
    {"FindRevCAny",
     [](T t, int* r) {
         return zylsFindRevCAny_8u(t.text.data(), length(t.text), t.set.data(), length(t.set), r);
     },
     [](T t) {
         return index(t.text, std::find_first_of(t.text.rbegin(), t.text.rend(), t.set.begin(), t.set.end()));
     }},
    {"Find",
     [](T t, int* r) { return zylsFind_8u(t.text.data(), length(t.text), t.find.data(), length(t.find), r); },
     [](T t) { return firstText(t.text, t.find); }},
    {"FindRev",
     [](T t, int* r) {
         return zylsFindRev_8u(t.text.data(), length(t.text), t.find.data(), length(t.find), r);
     },
     [](T t) { return lastText(t.text, t.find); }},
    {"Find_Z", [](T t, int* r) { return zylsFind_Z_8u(t.textZ.data(), t.findZ.data(), r); },
     [](T t) { return firstText(upToNul(t.text), upToNul(t.find)); }},
    {"FindC_Z", [](T t, int* r) { return zylsFindC_Z_8u(t.textZ.data(), t.value, r); },
     [](T t) { return firstValue(upToNul(t.text), t.value); }},
    {"Compare", [](T t, int* r) { return zylsCompare_8u(t.text.data(), t.other.data(), length(t.text), r); },
     [](T t) { return difference(t.text, t.other); }},
    {"Equal", [](T t, int* r) { return zylsEqual_8u(t.text.data(), t.other.data(), length(t.text), r); },
     [](T t) { return t.text == t.other ? 1 : 0; }},
    {"CompareIgnoreCase",
     [](T t, int* r) {
         return zylsCompareIgnoreCaseLatin_8u(t.text.data(), t.other.data(), length(t.text), r);
     },
     [](T t) { return difference(lowered(t.text), lowered(t.other)); }},
};

// Functions that write a text: `d` has room for what is right and no more. The in-place forms find the text
// in `d`. `*n` is the length in and out.

struct Writing {
    const char* name;
    bool inPlace;
    int (*call)(T, Zyl8u* d, int* n);
    Bytes (*expected)(T);
};

Bytes trimmed(View text, View drop, bool start, bool end) {
    const std::size_t first = start ? std::min(text.find_first_not_of(drop), text.size()) : 0;
    const std::size_t last = end ? text.find_last_not_of(drop) + 1 : text.size();
    return Bytes(text.substr(first, last > first ? last - first : 0));
}

Bytes replaced(T t) {
    Bytes result(t.text.size(), 0);
    std::replace_copy(t.text.begin(), t.text.end(), result.begin(), t.value, t.newValue);
    return result;
}

const Writing kWritings[] = {
    {"Uppercase", false, [](T t, Zyl8u* d, int* n) { return zylsUppercaseLatin_8u(t.text.data(), d, *n); },
     [](T t) { return uppered(t.text); }},
    {"Lowercase", false, [](T t, Zyl8u* d, int* n) { return zylsLowercaseLatin_8u(t.text.data(), d, *n); },
     [](T t) { return lowered(t.text); }},
    {"Uppercase_I", true, [](T, Zyl8u* d, int* n) { return zylsUppercaseLatin_8u_I(d, *n); },
     [](T t) { return uppered(t.text); }},
    {"Lowercase_I", true, [](T, Zyl8u* d, int* n) { return zylsLowercaseLatin_8u_I(d, *n); },
     [](T t) { return lowered(t.text); }},
    {"ReplaceC", false,
     [](T t, Zyl8u* d, int* n) { return zylsReplaceC_8u(t.text.data(), d, *n, t.value, t.newValue); },
     replaced},
    {"TrimC_I", true, [](T t, Zyl8u* d, int* n) { return zylsTrimC_8u_I(d, n, t.value); },
     [](T t) { return trimmed(t.text, View(&t.value, 1), true, true); }},
    {"TrimC", false, [](T t, Zyl8u* d, int* n) { return zylsTrimC_8u(t.text.data(), *n, t.value, d, n); },
     [](T t) { return trimmed(t.text, View(&t.value, 1), true, true); }},
    {"TrimCAny", false,
     [](T t, Zyl8u* d, int* n) {
         return zylsTrimCAny_8u(t.text.data(), *n, t.set.data(), length(t.set), d, n);
     },
     [](T t) { return trimmed(t.text, t.set, true, true); }},
    {"TrimStartCAny", false,
     [](T t, Zyl8u* d, int* n) {
         return zylsTrimStartCAny_8u(t.text.data(), *n, t.set.data(), length(t.set), d, n);
     },
     [](T t) { return trimmed(t.text, t.set, true, false); }},
    {"TrimEndCAny", false,
     [](T t, Zyl8u* d, int* n) {
         return zylsTrimEndCAny_8u(t.text.data(), *n, t.set.data(), length(t.set), d, n);
     },
     [](T t) { return trimmed(t.text, t.set, false, true); }},
};

struct PathCase {
    const char* name;
    int path;
    /// Features that are taken from the processor's mask to get there.
    Zyl64u without;
};

class Paths : public testing::TestWithParam<PathCase> {
  protected:
    void SetUp() override {
        Zyl64u mask = 0;
        zylGetCpuFeatures(&mask, nullptr);
        ASSERT_EQ(zylSetCpuFeatures(mask & ~GetParam().without), zylStsNoErr);
        if (zylCodePath != GetParam().path)
            GTEST_SKIP() << "the processor lacks this path";
    }
    void TearDown() override { zylInit(); }

    /// All lengths at all alignments, from the front guard on and up to the back guard, until one fails.
    template <class Check>
    void forEachTrial(Check check) {
        Random random(7);
        for (int i = 0; i < (kLongest + 1) * kAlignments * 2 && !HasFailure(); ++i) {
            m_trial.make(random, i / (kAlignments * 2), i % 2 != 0, i / 2 % kAlignments);
            check(m_trial);
        }
    }

    static testing::Message inputOf(const char* name, T t) {
        return testing::Message() << name << ", length " << t.text.size() << ", address "
                                  << static_cast<const void*>(t.text.data()) << ", text "
                                  << testing::PrintToString(t.text) << ", value " << int{t.value} << ", find "
                                  << testing::PrintToString(t.find) << ", set "
                                  << testing::PrintToString(t.set);
    }

    Trial m_trial;
    Placed m_dst;
};

TEST_P(Paths, SearchesAndComparisons) {
    forEachTrial([](T trial) {
        for (const Search& row : kSearches) {
            int result = -77;
            const int status = row.call(trial, &result);
            const int expected = row.expected(trial);
            if (status != zylStsNoErr || result != expected)
                ADD_FAILURE() << inputOf(row.name, trial) << ": " << result << " and not " << expected;
        }
    });
}

TEST_P(Paths, Writings) {
    forEachTrial([this](T trial) {
        for (const Writing& row : kWritings) {
            const Bytes expected = row.expected(trial);
            int len = length(trial.text);
            const Bytes before = row.inPlace ? Bytes(trial.text) : Bytes(expected.size(), GuardedPage::blank);
            m_dst.put(before, len % 2 != 0, trial.newValue % kAlignments);
            const int status = row.call(trial, m_dst.data(), &len);
            const View written = m_dst.view().substr(0, expected.size());
            if (status != zylStsNoErr || len != length(expected) || written != expected || !m_dst.isAlone())
                ADD_FAILURE() << inputOf(row.name, trial);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(All, Paths,
                         testing::Values(PathCase{"Plain", zylPathPlain, 0x4},
                                         PathCase{"Sse2", zylPathSse2, 0x8000},
                                         PathCase{"Avx2", zylPathAvx2, 0}),
                         [](const auto& of) { return std::string(of.param.name); });

// Each pointer in turn null, each length in turn below 0: every other argument is good.

int spoil(int& len) {
    len = -1;
    return zylStsSizeErr;
}
template <class T>
int spoil(T*& pointer) {
    pointer = nullptr;
    return zylStsNullPtrErr;
}
int spoil(Zyl8u&) { return zylStsNoErr; }

template <std::size_t Spoilt, class... Args>
void refuses(const char* name, int (*call)(Args...), std::tuple<Args...> args) {
    const int expected = spoil(std::get<Spoilt>(args));
    EXPECT_EQ(std::apply(call, args), expected) << name << ", argument " << Spoilt;
}

template <class... Args>
void refusesEach(const char* name, int (*call)(Args...), std::type_identity_t<Args>... good) {
    [&]<std::size_t... Spoilt>(std::index_sequence<Spoilt...>) {
        (refuses<Spoilt>(name, call, {good...}), ...);
    }
    (std::index_sequence_for<Args...>{});
}

TEST(Arguments, NullsAndNegativeLengthsAreRefused) {
    Zyl8u text[] = "text";
    Zyl8u dst[8] = {};
    int out = 0;
    refusesEach("Uppercase_I", zylsUppercaseLatin_8u_I, text, 4);
    refusesEach("Lowercase_I", zylsLowercaseLatin_8u_I, text, 4);
    refusesEach("Uppercase", zylsUppercaseLatin_8u, text, dst, 4);
    refusesEach("Lowercase", zylsLowercaseLatin_8u, text, dst, 4);
    refusesEach("Compare", zylsCompare_8u, text, text, 4, &out);
    refusesEach("Equal", zylsEqual_8u, text, text, 4, &out);
    refusesEach("CompareIgnoreCase", zylsCompareIgnoreCaseLatin_8u, text, text, 4, &out);
    refusesEach("Find", zylsFind_8u, text, 4, text, 2, &out);
    refusesEach("FindRev", zylsFindRev_8u, text, 4, text, 2, &out);
    refusesEach("FindC", zylsFindC_8u, text, 4, 't', &out);
    refusesEach("FindRevC", zylsFindRevC_8u, text, 4, 't', &out);
    refusesEach("FindCAny", zylsFindCAny_8u, text, 4, text, 4, &out);
    refusesEach("FindRevCAny", zylsFindRevCAny_8u, text, 4, text, 4, &out);
    refusesEach("Find_Z", zylsFind_Z_8u, text, text, &out);
    refusesEach("FindC_Z", zylsFindC_Z_8u, text, 't', &out);
    refusesEach("ReplaceC", zylsReplaceC_8u, text, dst, 4, 't', 'T');
    refusesEach("TrimC", zylsTrimC_8u, text, 4, 't', dst, &out);
    refusesEach("TrimCAny", zylsTrimCAny_8u, text, 4, text, 4, dst, &out);
    refusesEach("TrimStartCAny", zylsTrimStartCAny_8u, text, 4, text, 4, dst, &out);
    refusesEach("TrimEndCAny", zylsTrimEndCAny_8u, text, 4, text, 4, dst, &out);
    out = 4;
    refusesEach("TrimC_I", zylsTrimC_8u_I, text, &out, 'x');
    out = -1;
    EXPECT_EQ(zylsTrimC_8u_I(text, &out, 'x'), zylStsSizeErr);
}

}  // namespace
