/// Joining and splitting, with destinations that are an exact fit.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "zylch.h"

namespace {

using Texts = std::vector<std::string>;

/// A text, or room for one; a byte behind it has to stay.
struct Buffer {
    std::string bytes;

    explicit Buffer(const std::string& text) : bytes(text + '~') {}
    explicit Buffer(std::size_t capacity) : Buffer(std::string(capacity, '.')) {}

    Zyl8u* data() { return reinterpret_cast<Zyl8u*>(bytes.data()); }
    std::string head(std::size_t len) const {
        EXPECT_EQ(bytes.back(), '~') << "written beyond the capacity";
        return bytes.substr(0, len);
    }
};

/// A list as the library takes it; one entry more, so that no array is empty.
struct List {
    std::vector<Buffer> buffers;
    std::vector<Zyl8u*> pointers;
    std::vector<int> lengths;

    explicit List(const Texts& texts) : buffers(texts.begin(), texts.end()) {
        for (Buffer& buffer : buffers) {
            pointers.push_back(buffer.data());
            lengths.push_back(static_cast<int>(buffer.bytes.size()) - 1);
        }
        pointers.push_back(nullptr);
        lengths.push_back(-1);
    }
    int count() const { return static_cast<int>(buffers.size()); }
};

struct JoinCase {
    Texts texts;
    std::string plain;
    std::string delimited;
};

const JoinCase kJoins[] = {
    {{}, "", ""},
    {{"alone"}, "alone", "alone"},
    {{"left", "right"}, "leftright", "left\xFFright"},
    {{"", ""}, "", "\xFF"},
    {{"", "abc", ""},
     "abc",
     "\xFF"
     "abc\xFF"},
    {{"one", "two", "three", ""}, "onetwothree", "one\xFFtwo\xFFthree\xFF"},
};

TEST(Concat, JoinsListsWithAndWithoutDelimiter) {
    for (const JoinCase& row : kJoins) {
        List list(row.texts);
        Buffer plain(row.plain.size());
        Buffer delimited(row.delimited.size());
        const Zyl8u* const* src = list.pointers.data();
        EXPECT_EQ(zylsConcat_8u_D2L(src, list.lengths.data(), list.count(), plain.data()), 0);
        EXPECT_EQ(zylsConcatC_8u_D2L(src, list.lengths.data(), list.count(), 0xFF, delimited.data()), 0);
        EXPECT_EQ(plain.head(row.plain.size()), row.plain);
        EXPECT_EQ(delimited.head(row.delimited.size()), row.delimited);
        if (list.count() == 2) {
            Buffer two(row.plain.size());
            EXPECT_EQ(zylsConcat_8u(src[0], list.lengths[0], src[1], list.lengths[1], two.data()), 0);
            EXPECT_EQ(two.head(row.plain.size()), row.plain);
        }
    }
}

struct SplitCase {
    std::string text;
    std::vector<std::size_t> capacities;
    int status;
    Texts pieces;
};

const SplitCase kSplits[] = {
    {"a,bc,d", {1, 2, 1}, 0, {"a", "bc", "d"}},
    {"", {0}, 0, {""}},
    {",", {3, 3}, 0, {"", ""}},
    {"a,", {1, 0}, 0, {"a", ""}},
    {"abc", {3, 5, 7}, 0, {"abc"}},
    {"abc,de,f", {2, 5, 0}, zylStsNoRoomNote, {"ab", "de", ""}},
    {"a,b,c", {1, 1}, zylStsNoRoomNote, {"a", "b"}},
    {"a,", {1}, zylStsNoRoomNote, {"a"}},
    {"a", {}, zylStsNoRoomNote, {}},
};

TEST(Split, PiecesLengthsAndCount) {
    for (const SplitCase& row : kSplits) {
        Buffer text(row.text);
        Texts rooms;
        for (const std::size_t capacity : row.capacities)
            rooms.emplace_back(capacity, '.');
        List list(rooms);
        int count = list.count();
        EXPECT_EQ(zylsSplitC_8u_D2L(text.data(), static_cast<int>(row.text.size()), ',', list.pointers.data(),
                                    list.lengths.data(), &count),
                  row.status)
            << row.text;
        Texts pieces;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
            pieces.push_back(list.buffers[i].head(static_cast<std::size_t>(list.lengths[i])));
        EXPECT_EQ(pieces, row.pieces) << row.text;
        for (std::size_t i = pieces.size(); i < rooms.size(); ++i)
            EXPECT_EQ(list.lengths[i], static_cast<int>(rooms[i].size())) << row.text;
    }
}

}  // namespace
