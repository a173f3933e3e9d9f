/// Null pointers, numbers out of range, and state blocks that hold something else, function by function.

#include <gtest/gtest.h>

#include "../../support/each_argument.h"
#include "zylch.h"

namespace {

using each_argument::refusesEach;
using each_argument::refusesEachInOut;

class Refusals : public testing::Test {
  protected:
    Zyl8u text[10] = "text,text";
    Zyl16u units[4] = {'t', 'e', 'x', 't'};
    Zyl8u dst[64] = {};
    Zyl16u dstUnits[64] = {};
    ZylRegExpFind found[8] = {};
    int len = 4;
    int room = 32;
    int count = 8;
    int errorOffset = 0;
};

TEST_F(Refusals, HashesAndEditing) {
    Zyl32u hash = 77;
    refusesEach("Hash 8", zylsHash_8u32u, text, 4, &hash);
    refusesEach("Hash 16", zylsHash_16u32u, units, 4, &hash);
    refusesEach("HashSJ2 8", zylsHashSJ2_8u32u, text, 4, &hash);
    refusesEach("HashSJ2 16", zylsHashSJ2_16u32u, units, 4, &hash);
    refusesEach("HashMSCS 8", zylsHashMSCS_8u32u, text, 4, &hash);
    refusesEach("HashMSCS 16", zylsHashMSCS_16u32u, units, 4, &hash);
    EXPECT_EQ(hash, 77U);
    refusesEach("Concat", zylsConcat_8u, text, 4, text, 4, dst);
    refusesEach("Insert", zylsInsert_8u, text, 4, text, 4, dst, 2);
    refusesEach("Remove", zylsRemove_8u, text, 4, dst, 1, 2);
    refusesEachInOut("Insert_I", zylsInsert_8u_I, text, 4, dst, &len, 2);
    refusesEachInOut("Remove_I", zylsRemove_8u_I, dst, &len, 1, 2);
}

TEST_F(Refusals, Lists) {
    const Zyl8u* list[] = {text, text};
    Zyl8u* pieces[] = {dst, dst + 8};
    int lengths[] = {4, 4};
    int two = 2;
    refusesEach("Concat list", zylsConcat_8u_D2L, list, lengths, 2, dst);
    refusesEach("ConcatC list", zylsConcatC_8u_D2L, list, lengths, 2, ',', dst);
    refusesEachInOut("SplitC", zylsSplitC_8u_D2L, text, 9, ',', pieces, lengths, &two);
    lengths[1] = -1;
    EXPECT_EQ(zylsConcat_8u_D2L(list, lengths, 2, dst), zylStsSizeErr);
    EXPECT_EQ(zylsConcatC_8u_D2L(list, lengths, 2, ',', dst), zylStsSizeErr);
    EXPECT_EQ(zylsSplitC_8u_D2L(text, 9, ',', pieces, lengths, &two), zylStsSizeErr);
    list[0] = nullptr;
    pieces[0] = nullptr;
    EXPECT_EQ(zylsConcat_8u_D2L(list, lengths, 2, dst), zylStsNullPtrErr);
    EXPECT_EQ(zylsConcatC_8u_D2L(list, lengths, 2, ',', dst), zylStsNullPtrErr);
    EXPECT_EQ(zylsSplitC_8u_D2L(text, 9, ',', pieces, lengths, &two), zylStsNullPtrErr);
}

int to16(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst) {
    return zylsConvertUTF_8u16u(src, lenSrc, dst, lenDst, 0);
}

int to8(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst) {
    return zylsConvertUTF_16u8u(src, lenSrc, dst, lenDst, 0);
}

TEST_F(Refusals, Conversions) {
    refusesEachInOut("8 to 16", to16, text, &len, dstUnits, &room);
    refusesEachInOut("16 to 8", to8, units, &len, dst, &room);
    EXPECT_EQ(zylsConvertUTF_8u16u(text, &len, dstUnits, &room, 1), zylStsBadArgErr);
    EXPECT_EQ(zylsConvertUTF_16u8u(units, &len, dst, &room, -1), zylStsBadArgErr);
}

/// Null options are good ones.
int initGlobal(const char* pattern, void* state, int* errorOffset) {
    return zylsRegExpInit(pattern, nullptr, state, errorOffset);
}

TEST_F(Refusals, Expressions) {
    int state[64] = {};
    int replacement[64] = {};
    ASSERT_EQ(zylsRegExpInit("t+", "", state, &errorOffset), 0);
    ASSERT_EQ(zylsRegExpReplaceInit(text, replacement), 0);
    refusesEachInOut("Find", zylsRegExpFind_8u, text, 4, state, found, &count);
    refusesEachInOut("Replace", zylsRegExpReplace_8u, text, &len, dst, &room, found, &count, state,
                     replacement);
    refusesEach("GetSize", zylsRegExpGetSize, "t+", &room);
    refusesEach("Init", initGlobal, "t+", state, &errorOffset);
    refusesEach("ReplaceGetSize", zylsRegExpReplaceGetSize, text, &room);
    refusesEach("ReplaceInit", zylsRegExpReplaceInit, text, replacement);
}

TEST_F(Refusals, BlocksThatHoldSomethingElse) {
    int state[64] = {};
    int replacement[64] = {};
    const auto find = [&] { return zylsRegExpFind_8u(text, 4, state, found, &count); };
    const auto replace = [&](void* with) {
        return zylsRegExpReplace_8u(text, &len, dst, &room, found, &count, state, with);
    };
    ASSERT_EQ(zylsRegExpReplaceInit(text, replacement), 0);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), zylStsRegExpStateErr);
    ASSERT_EQ(zylsRegExpInit("t", "", state, &errorOffset), 0);
    EXPECT_EQ(replace(state), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), 0);
    // A failed compilation takes away what was there.
    EXPECT_EQ(zylsRegExpInit("t(", "", state, &errorOffset), zylStsRegExpPatternErr);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(zylsRegExpInit("t", "", reinterpret_cast<char*>(state) + 1, &errorOffset), zylStsBadArgErr);
    EXPECT_EQ(zylsRegExpReplaceInit(text, reinterpret_cast<char*>(state) + 1), zylStsBadArgErr);
}

}  // namespace
