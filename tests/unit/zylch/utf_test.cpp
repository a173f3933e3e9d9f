/// UTF conversion against iconv, on every code path, next to memory that must not be touched.

#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <random>
#include <vector>

#include "../../support/guarded_page.h"
#include "zylch.h"
#include "zylcore.h"

namespace {

using Bytes = std::vector<Zyl8u>;
using Units = std::vector<Zyl16u>;

int convert(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst) {
    return zylsConvertUTF_8u16u(src, lenSrc, dst, lenDst, 0);
}

int convert(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst) {
    return zylsConvertUTF_16u8u(src, lenSrc, dst, lenDst, 0);
}

template <class To>
struct Converted {
    int status;
    int consumed;
    To text;
};

/// Between buffers that end where readable and writable memory ends.
class GuardedBuffers {
  public:
    template <class To, class From>
    Converted<To> converted(const From& text, std::size_t room) const {
        int consumed = static_cast<int>(text.size());
        int written = static_cast<int>(room);
        auto* src = place<typename From::value_type>(m_src, consumed);
        auto* dst = place<typename To::value_type>(m_dst, written);
        std::copy(text.begin(), text.end(), src);
        const int status = convert(src, &consumed, dst, &written);
        return {status, consumed, To(dst, dst + written)};
    }

  private:
    template <class T>
    static T* place(const GuardedPage& page, int count) {
        return reinterpret_cast<T*>(page.atBack(count * static_cast<int>(sizeof(T)), 0));
    }

    GuardedPage m_src;
    GuardedPage m_dst;
};

Units unitsByIconv(Bytes text) {
    Units units(text.size());
    char* in = reinterpret_cast<char*>(text.data());
    char* out = reinterpret_cast<char*>(units.data());
    std::size_t inLeft = text.size();
    std::size_t outLeft = units.size() * sizeof(Zyl16u);
    const iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
    EXPECT_EQ(iconv(converter, &in, &inLeft, &out, &outLeft), 0U);
    iconv_close(converter);
    units.resize(units.size() - outLeft / sizeof(Zyl16u));
    return units;
}

/// UTF-8 of one code point; of a surrogate too.
void append(Bytes& text, unsigned code) {
    static constexpr unsigned marks[] = {0x00, 0xC0, 0xE0, 0xF0};
    const int following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    text.push_back(static_cast<Zyl8u>(marks[following] | code >> (6 * following)));
    for (int i = following - 1; i >= 0; --i)
        text.push_back(static_cast<Zyl8u>(0x80 | (code >> (6 * i) & 0x3F)));
}

bool isSurrogate(unsigned code) { return code >= 0xD800 && code <= 0xDFFF; }

/// Runs of ASCII of any length with something else between them.
Bytes mixedText(std::minstd_rand& random) {
    Bytes text;
    for (auto pieces = random() % 6; pieces > 0; --pieces) {
        text.insert(text.end(), random() % 80, static_cast<Zyl8u>(random() % 0x80));
        const unsigned code = static_cast<unsigned>(random()) % (random() % 2 != 0 ? 0x110000 : 0x900);
        append(text, isSurrogate(code) ? 0xFFFD : code);
    }
    return text;
}

/// The parameter: features that are taken from the processor's mask.
class Utf : public testing::TestWithParam<Zyl64u> {
  protected:
    void SetUp() override {
        Zyl64u mask = 0;
        zylGetCpuFeatures(&mask, nullptr);
        ASSERT_EQ(zylSetCpuFeatures(mask & ~GetParam()), zylStsNoErr);
    }
    void TearDown() override { zylInit(); }

    /// In an exact fit.
    void expectBothWays(const Bytes& text, const Units& units) {
        const auto there = m_guarded.converted<Units>(text, units.size());
        const auto back = m_guarded.converted<Bytes>(units, text.size());
        EXPECT_EQ(there.status, 0);
        EXPECT_EQ(back.status, 0);
        EXPECT_EQ(there.text, units);
        EXPECT_EQ(back.text, text);
    }

    /// With any room that is too small; at most `spare` elements of it are left.
    template <class From, class To>
    void expectStops(const From& from, const To& to, std::size_t spare) {
        for (std::size_t room = 0; room < to.size(); ++room) {
            auto head = m_guarded.converted<To>(from, room);
            EXPECT_EQ(head.status, zylStsNoRoomNote) << room;
            EXPECT_GE(head.text.size() + spare, room);
            const auto tail =
                m_guarded.converted<To>(From(from.begin() + head.consumed, from.end()), to.size());
            head.text.insert(head.text.end(), tail.text.begin(), tail.text.end());
            EXPECT_EQ(head.text, to) << room;
        }
    }

    GuardedBuffers m_guarded;
};

TEST_P(Utf, EveryCharacterBothWays) {
    for (unsigned first = 0; first < 0x110000 && !HasFailure(); first += 0x400) {
        Bytes text;
        for (unsigned code = first; code < first + 0x400; ++code)
            append(text, isSurrogate(code) ? 0xFFFD : code);
        expectBothWays(text, unitsByIconv(text));
    }
}

TEST_P(Utf, RunsOfAscii) {
    std::minstd_rand random(7);
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        const Bytes text = mixedText(random);
        expectBothWays(text, unitsByIconv(text));
    }
}

TEST_P(Utf, LoneSurrogatesAreThreeBytes) {
    for (const unsigned first : {0xD800U, 0xDC00U}) {
        Bytes text;
        Units units;
        for (unsigned code = first; code < first + 0x400; ++code) {
            append(text, code);
            units.push_back(static_cast<Zyl16u>(code));
        }
        expectBothWays(text, units);
    }
    // Before and behind a pair.
    expectBothWays({0xED, 0xA0, 0x80, 0xF0, 0x9F, 0x98, 0x80, 0xED, 0xB0, 0x80, 0xED, 0xAF, 0xBF},
                   {0xD800, 0xD83D, 0xDE00, 0xDC00, 0xDBFF});
}

TEST_P(Utf, FullDestinationStopsAtAWholeCharacterAndTheRestGoesOn) {
    std::minstd_rand random(3);
    Bytes text = mixedText(random);
    append(text, 0x10FFFF);
    const Units units = unitsByIconv(text);
    expectStops(text, units, 1);
    expectStops(units, text, 3);
}

struct IllFormed {
    Bytes text;
    /// What is good of it.
    int consumed;
    Units units;
};

const IllFormed kIllFormed[] = {
    {{0x80}, 0, {}},                                      // a following byte
    {{'a', 0xC1, 0xBF, 'b'}, 1, {'a'}},                   // longer than needed
    {{0xC2, 0xA2, 0xE0, 0x9F, 0xBF}, 2, {0xA2}},          // the same, three bytes
    {{0xF0, 0x8F, 0xBF, 0xBF}, 0, {}},                    // the same, four
    {{'x', 0xF4, 0x90, 0x80, 0x80}, 1, {'x'}},            // beyond the last plane
    {{0xF5, 0x80, 0x80, 0x80}, 0, {}},                    // no first byte
    {{0xFF}, 0, {}},                                      //
    {{'a', 0xE2, 0x82}, 1, {'a'}},                        // cut off
    {{0xF0, 0x9F, 0x98}, 0, {}},                          //
    {{0xC2}, 0, {}},                                      //
    {{0xE2, 0x82, 'a'}, 0, {}},                           // interrupted
    {{0xED, 0xA0, 0x80, 0xED, 0xB0, 0x80}, 3, {0xD800}},  // a pair as two
    {{0xED, 0xB0, 0x80, 0xFE}, 3, {0xDC00}},              //
};

TEST_P(Utf, IllFormedTextStopsAtTheLastWholeCharacter) {
    for (const IllFormed& row : kIllFormed) {
        for (const std::size_t ascii : {0U, 15U, 40U}) {
            Bytes text(ascii, 'a');
            Units units(ascii, 'a');
            text.insert(text.end(), row.text.begin(), row.text.end());
            units.insert(units.end(), row.units.begin(), row.units.end());
            const auto result = m_guarded.converted<Units>(text, text.size());
            EXPECT_EQ(result.status, zylStsBadArgErr) << testing::PrintToString(text);
            EXPECT_EQ(result.consumed, static_cast<int>(ascii) + row.consumed)
                << testing::PrintToString(text);
            EXPECT_EQ(result.text, units);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Utf, testing::Values(0x4, 0x8000, 0), [](const auto& of) {
    return of.param == 0x4 ? "Plain" : of.param == 0x8000 ? "Sse2" : "Best";
});

}  // namespace
