/// Null pointers, numbers out of range, and state blocks that hold something else, function by function.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "../../support/each_argument.h"
#include "zylch.h"

namespace {

using each_argument::kInOut;
using each_argument::refusesEach;

class Refusals : public testing::Test {
  protected:
    Zyl8u text[10] = "text,text";
    Zyl16u units[4] = {'t', 'e', 'x', 't'};
    Zyl8u dst[64] = {};
    Zyl16u dstUnits[64] = {};
    ZylRegExpFind found[8] = {};
    int state[64] = {};
    int replacement[64] = {};
    int len = 4;
    int room = 32;
    int count = 8;
    int out = 0;
};

TEST_F(Refusals, SearchesAndComparisons) {
    refusesEach("Compare", zylsCompare_8u, text, text, 4, &out);
    refusesEach("CompareIgnoreCase", zylsCompareIgnoreCaseLatin_8u, text, text, 4, &out);
    refusesEach("Find", zylsFind_8u, text, 4, text, 2, &out);
    refusesEach("FindRev", zylsFindRev_8u, text, 4, text, 2, &out);
    refusesEach("FindC", zylsFindC_8u, text, 4, 't', &out);
    refusesEach("FindCAny", zylsFindCAny_8u, text, 4, text, 4, &out);
    refusesEach("Find_Z", zylsFind_Z_8u, text, text, &out);
    refusesEach("FindC_Z", zylsFindC_Z_8u, text, 't', &out);
    Zyl32u hash = 0;
    refusesEach("Hash 8", zylsHash_8u32u, text, 4, &hash);
    refusesEach("HashSJ2 8", zylsHashSJ2_8u32u, text, 4, &hash);
    refusesEach("HashMSCS 8", zylsHashMSCS_8u32u, text, 4, &hash);
}

TEST_F(Refusals, Writings) {
    refusesEach("Uppercase_I", zylsUppercaseLatin_8u_I, dst, 4);
    refusesEach("Uppercase", zylsUppercaseLatin_8u, text, dst, 4);
    refusesEach("ReplaceC", zylsReplaceC_8u, text, dst, 4, 't', 'T');
    refusesEach("TrimC", zylsTrimC_8u, text, 4, 't', dst, &out);
    refusesEach<kInOut>("TrimC_I", zylsTrimC_8u_I, text, &len, 'x');
    refusesEach("TrimCAny", zylsTrimCAny_8u, text, 4, text, 4, dst, &out);
    refusesEach("Concat", zylsConcat_8u, text, 4, text, 4, dst);
    refusesEach("Insert", zylsInsert_8u, text, 4, text, 4, dst, 2);
    refusesEach("Remove", zylsRemove_8u, text, 4, dst, 1, 2);
    refusesEach<kInOut>("Insert_I", zylsInsert_8u_I, text, 4, dst, &len, 2);
    refusesEach<kInOut>("Remove_I", zylsRemove_8u_I, dst, &len, 1, 2);
}

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

TEST_F(Refusals, Lists) {
    const Zyl8u* list[] = {text, text};
    Zyl8u* pieces[] = {dst, dst + 8};
    int lengths[] = {4, 4};
    int two = 2;
    refusesEach("Concat list", zylsConcat_8u_D2L, list, lengths, 2, dst);
    refusesEach("ConcatC list", zylsConcatC_8u_D2L, list, lengths, 2, ',', dst);
    refusesEach<kInOut>("SplitC", zylsSplitC_8u_D2L, text, 9, ',', pieces, lengths, &two);
    const auto expectAll = [&](int status) {
        EXPECT_EQ(zylsConcat_8u_D2L(list, lengths, 2, dst), status);
        EXPECT_EQ(zylsConcatC_8u_D2L(list, lengths, 2, ',', dst), status);
        EXPECT_EQ(zylsSplitC_8u_D2L(text, 9, ',', pieces, lengths, &two), status);
    };
    lengths[1] = -1;
    expectAll(zylStsSizeErr);
    list[0] = nullptr;
    pieces[0] = nullptr;
    expectAll(zylStsNullPtrErr);
}

int to16(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst) {
    return zylsConvertUTF_8u16u(src, lenSrc, dst, lenDst, 0);
}
int to8(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst) {
    return zylsConvertUTF_16u8u(src, lenSrc, dst, lenDst, 0);
}
/// Null options are good ones.
int init(const char* pattern, void* state, int* errorOffset) {
    return zylsRegExpInit(pattern, nullptr, state, errorOffset);
}

TEST_F(Refusals, ConversionsAndExpressions) {
    refusesEach<kInOut>("8 to 16", to16, text, &len, dstUnits, &room);
    refusesEach<kInOut>("16 to 8", to8, units, &len, dst, &room);
    EXPECT_EQ(zylsConvertUTF_8u16u(text, &len, dstUnits, &room, 1), zylStsBadArgErr);
    EXPECT_EQ(zylsConvertUTF_16u8u(units, &len, dst, &room, -1), zylStsBadArgErr);
    ASSERT_EQ(init("t+", state, &out), 0);
    ASSERT_EQ(zylsRegExpReplaceInit(text, replacement), 0);
    refusesEach<kInOut>("Find", zylsRegExpFind_8u, text, 4, state, found, &count);
    refusesEach<kInOut>("Replace", zylsRegExpReplace_8u, text, &len, dst, &room, found, &count, state,
                        replacement);
    refusesEach("GetSize", zylsRegExpGetSize, "t+", &room);
    refusesEach("Init", init, "t+", state, &out);
    refusesEach("ReplaceGetSize", zylsRegExpReplaceGetSize, text, &room);
    refusesEach("ReplaceInit", zylsRegExpReplaceInit, text, replacement);
}

TEST_F(Refusals, BlocksThatHoldSomethingElse) {
    const auto find = [&] { return zylsRegExpFind_8u(text, 4, state, found, &count); };
    const auto replace = [&](void* with) {
        return zylsRegExpReplace_8u(text, &len, dst, &room, found, &count, state, with);
    };
    ASSERT_EQ(zylsRegExpReplaceInit(text, replacement), 0);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), zylStsRegExpStateErr);
    ASSERT_EQ(init("t", state, &out), 0);
    EXPECT_EQ(replace(state), zylStsRegExpStateErr);
    EXPECT_EQ(replace(replacement), 0);
    // A failed compilation takes away what was there.
    EXPECT_EQ(init("t(", state, &out), zylStsRegExpPatternErr);
    EXPECT_EQ(find(), zylStsRegExpStateErr);
    EXPECT_EQ(init("t", reinterpret_cast<char*>(state) + 1, &out), zylStsBadArgErr);
    EXPECT_EQ(zylsRegExpReplaceInit(text, reinterpret_cast<char*>(state) + 1), zylStsBadArgErr);
}

}  // namespace
