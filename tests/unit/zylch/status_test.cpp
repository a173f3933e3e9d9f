/// Numbers out of range, and state blocks that hold something else.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "zylch.h"

namespace {

class Refusals : public testing::Test {
  protected:
    Zyl8u text[10] = "text,text";
    Zyl8u dst[64] = {};
    int len = 4;
};

TEST_F(Refusals, PlacesOutsideTheText) {
    static constexpr int removals[][2] = {{5, 0}, {4, 1}, {1, INT_MAX}, {INT_MAX, INT_MAX}};
    for (const auto& [start, many] : removals) {
        EXPECT_EQ(zylsRemove_8u_I(text, &len, start, many), zylStsSizeErr) << start;
        EXPECT_EQ(zylsRemove_8u(text, 4, dst, start, many), zylStsSizeErr) << start;
    }
    EXPECT_EQ(zylsInsert_8u_I(dst, 1, text, &len, 5), zylStsSizeErr);
    EXPECT_EQ(zylsInsert_8u_I(dst, INT_MAX, text, &len, 0), zylStsSizeErr);
    EXPECT_EQ(zylsInsert_8u(text, 4, dst, INT_MAX, dst, 0), zylStsSizeErr);
    EXPECT_EQ(len, 4);
    EXPECT_EQ(std::memcmp(text, "text,text", 10), 0);
}

TEST_F(Refusals, BlocksThatHoldSomethingElse) {
    ZylRegExpFind found[8] = {};
    int state[64] = {};
    int replacement[64] = {};
    int room = 32;
    int count = 8;
    int out = 0;
    const auto find = [&] { return zylsRegExpFind_8u(text, 4, state, found, &count); };
    const auto replace = [&](void* with) {
        return zylsRegExpReplace_8u(text, &len, dst, &room, found, &count, state, with);
    };
    ASSERT_EQ(zylsRegExpReplaceInit(text, replacement), 0);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), zylStsRegExpStateErr);
    ASSERT_EQ(zylsRegExpInit("t", nullptr, state, &out), 0);
    EXPECT_EQ(replace(state), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), 0);
    // A failed compilation takes away what was there.
    EXPECT_EQ(zylsRegExpInit("t(", nullptr, state, &out), zylStsRegExpPatternErr);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(zylsRegExpInit("t", nullptr, reinterpret_cast<char*>(state) + 1, &out), zylStsBadArgErr);
    EXPECT_EQ(zylsRegExpReplaceInit(text, reinterpret_cast<char*>(state) + 1), zylStsBadArgErr);
}

}  // namespace
