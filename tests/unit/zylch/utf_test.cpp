/// UTF conversion against iconv, on every code path, next to memory that must not be touched.

#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <random>
#include <vector>

#include "../../support/guarded_page.h"
#include "code_path.h"
#include "zylch.h"

namespace {

using Bytes = std::vector<Zyl8u>;
using Units = std::vector<Zyl16u>;

int convert(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst) {
    return zylsConvertUTF_8u16u(src, lenSrc, dst, lenDst, 0);
}
int convert(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst) {
    return zylsConvertUTF_16u8u(src, lenSrc, dst, lenDst, 0);
}

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

void append(Bytes& text, unsigned code) {
    static constexpr unsigned marks[] = {0x00, 0xC0, 0xE0, 0xF0};
    const int following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    text.push_back(static_cast<Zyl8u>(marks[following] | code >> (6 * following)));
    for (int i = following - 1; i >= 0; --i) {
        text.push_back(static_cast<Zyl8u>(0x80 | (code >> (6 * i) & 0x3F)));
    }
}

class Utf : public OnEachPath {
  protected:
    template <class To>
    struct Converted {
        int status;
        int consumed;
        To text;

        bool operator==(const Converted&) const = default;
    };

    /// Between buffers that end where readable and writable memory ends.
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
    template <class T>
    static T* place(const GuardedPage& page, int count) {
        return reinterpret_cast<T*>(page.atBack(count * static_cast<int>(sizeof(T)), 0));
    }

    /// In an exact fit, and with any room that is too small: at most `spare` elements of it are left, and the
    /// rest of the text goes on from there.
    template <class From, class To>
    void expectConverts(const From& from, const To& to, std::size_t spare) const {
        const auto whole = converted<To>(from, to.size());
        EXPECT_EQ(whole.status, 0);
        EXPECT_EQ(whole.text, to);
        for (std::size_t room = to.size() % 7; room < to.size(); room += to.size() / 8 + 1) {
            auto head = converted<To>(from, room);
            EXPECT_EQ(head.status, zylStsNoRoomNote) << room;
            EXPECT_GE(head.text.size() + spare, room);
            const auto tail = converted<To>(From(from.begin() + head.consumed, from.end()), to.size());
            head.text.insert(head.text.end(), tail.text.begin(), tail.text.end());
            EXPECT_EQ(head.text, to) << room;
        }
    }
    void expectBothWays(const Bytes& text, const Units& units) const {
        expectConverts(text, units, 1);
        expectConverts(units, text, 3);
    }

    GuardedPage m_src;
    GuardedPage m_dst;
};

// Every character, among runs of ASCII of any length.
TEST_P(Utf, BothWays) {
    std::minstd_rand random(7);
    for (unsigned first = 0; first < 0x110000 && !HasFailure(); first += 0x100) {
        Bytes text;
        for (unsigned code = first; code < first + 0x100; ++code) {
            append(text, code >= 0xD800 && code <= 0xDFFF ? 0xFFFD : code);
            if (random() % 16 == 0) {
                text.insert(text.end(), random() % 60, static_cast<Zyl8u>(random() % 0x80));
            }
        }
        expectBothWays(text, unitsByIconv(text));
    }
}

TEST_P(Utf, LoneSurrogatesAreThreeBytes) {
    // Before and after a pair.
    expectBothWays({0xED, 0xA0, 0x80, 0xF0, 0x9F, 0x98, 0x80, 0xED, 0xB0, 0x80, 0xED, 0xAF, 0xBF},
                   {0xD800, 0xD83D, 0xDE00, 0xDC00, 0xDBFF});
}

TEST_P(Utf, IllFormedTextStopsAtTheLastWholeCharacter) {
    const struct {
        Bytes text;
        int consumed;
        Units units;
    } rows[] = {
        {{'a', 0xC1, 0xBF, 'b'}, 1, {'a'}},                   // longer than needed
        {{0xC2, 0xA2, 0xE0, 0x9F, 0xBF}, 2, {0xA2}},          // the same, three bytes
        {{0xF0, 0x8F, 0xBF, 0xBF}, 0, {}},                    // the same, four
        {{'x', 0xF4, 0x90, 0x80, 0x80}, 1, {'x'}},            // beyond the last plane
        {{0xF0, 0x9F, 0x98}, 0, {}},                          // cut off
        {{0xE2, 0x82, 'a'}, 0, {}},                           // interrupted
        {{0xED, 0xA0, 0x80, 0xED, 0xB0, 0x80}, 3, {0xD800}},  // a pair as two
    };
    for (const auto& row : rows) {
        for (const int ascii : {0, 40}) {
            Bytes text(row.text);
            Units units(row.units);
            text.insert(text.begin(), static_cast<std::size_t>(ascii), 'a');
            units.insert(units.begin(), static_cast<std::size_t>(ascii), 'a');
            const auto result = converted<Units>(text, text.size());
            EXPECT_EQ(result.status, zylStsBadArgErr) << testing::PrintToString(text);
            EXPECT_EQ(result.consumed, ascii + row.consumed) << testing::PrintToString(text);
            EXPECT_EQ(result.text, units);
        }
    }
}

// The bytes, of which every fourth is not ASCII, in any room.
TEST_P(Utf, AnyBytesGiveWhatThePlainPathMakesOfThem) {
    std::minstd_rand random(11);
    for (int i = 0; i < 20000; ++i) {
        Bytes text(random() % 80);
        for (Zyl8u& byte : text)
            byte = static_cast<Zyl8u>(random() % 4 == 0 ? random() >> 8 : random() % 0x80);
        Units units(text.begin(), text.end());
        for (Zyl16u& unit : units)
            unit = static_cast<Zyl16u>(unit < 0x80 ? unit : 0xD000 + 16 * unit);  // a surrogate
        const std::size_t room = random() % 100;
        choose(GetParam());
        const auto there = converted<Units>(text, room);
        const auto back = converted<Bytes>(units, room);
        choose(Without[0]);
        ASSERT_EQ(there, converted<Units>(text, room)) << testing::PrintToString(text);
        ASSERT_EQ(back, converted<Bytes>(units, room)) << testing::PrintToString(text);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Utf, testing::ValuesIn(Without), pathName);

}  // namespace
