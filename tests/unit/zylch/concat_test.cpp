/// Splitting and joining of lists, with destinations that are an exact fit.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "zylch.h"

namespace {

using Texts = std::vector<std::string>;

/// A list as the library takes it. Behind each text is a byte that has to stay; one entry more keeps the
/// arrays from being empty.
struct List {
    Texts texts;
    std::vector<Zyl8u*> pointers;
    std::vector<int> lengths;

    explicit List(Texts of) : texts(std::move(of)) {
        for (std::string& text : texts) {
            lengths.push_back(static_cast<int>(text.size()));
            text += '~';
            pointers.push_back(reinterpret_cast<Zyl8u*>(text.data()));
        }
        pointers.push_back(nullptr);
        lengths.push_back(-1);
    }
    int count() const { return static_cast<int>(texts.size()); }
};

TEST(Split, PiecesGiveTheTextWhenJoinedAgain) {
    const struct {
        std::string text;
        std::vector<std::size_t> capacities;
        int status;
        Texts pieces;
    } rows[] = {
        {"", {0}, 0, {""}},
        {",", {0, 0}, 0, {"", ""}},
        {",one,two,three,", {0, 3, 3, 5, 0}, 0, {"", "one", "two", "three", ""}},
        {"abc", {3, 5, 7}, 0, {"abc"}},
        {"abc,de,f", {2, 5, 0}, zylStsNoRoomNote, {"ab", "de", ""}},
        {"a,b,c", {1, 1}, zylStsNoRoomNote, {"a", "b"}},
        {"a,", {1}, zylStsNoRoomNote, {"a"}},
        {"a", {}, zylStsNoRoomNote, {}},
    };
    for (const auto& row : rows) {
        List text({row.text});
        Texts rooms;
        for (const std::size_t capacity : row.capacities) {
            rooms.emplace_back(capacity, '.');
        }
        List list(rooms);
        int count = list.count();
        EXPECT_EQ(zylsSplitC_8u_D2L(text.pointers[0], text.lengths[0], ',', list.pointers.data(),
                                    list.lengths.data(), &count),
                  row.status)
            << row.text;
        ASSERT_EQ(count, static_cast<int>(row.pieces.size())) << row.text;
        for (std::size_t i = 0; i < rooms.size(); ++i) {
            // An entry beyond the last piece stays as it was.
            const std::string& expected = i < row.pieces.size() ? row.pieces[i] : rooms[i];
            EXPECT_EQ(list.texts[i].substr(0, static_cast<std::size_t>(list.lengths[i])), expected);
            EXPECT_EQ(list.texts[i].back(), '~') << "written beyond the capacity";
        }
        if (row.status != 0)
            continue;
        std::string bare = row.text;
        std::erase(bare, ',');
        List dst({std::string(bare.size(), '.'), std::string(row.text.size(), '.')});
        const Zyl8u* const* src = list.pointers.data();
        EXPECT_EQ(zylsConcat_8u_D2L(src, list.lengths.data(), count, dst.pointers[0]), 0);
        EXPECT_EQ(zylsConcatC_8u_D2L(src, list.lengths.data(), count, ',', dst.pointers[1]), 0);
        EXPECT_EQ(dst.texts, (Texts{bare + '~', row.text + '~'}));
    }
}

}  // namespace
