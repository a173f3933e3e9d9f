/// The hashes against the values that their authors, or the standards that took them up, publish.

#include <gtest/gtest.h>

#include <string_view>

#include "zylch.h"

namespace {

constexpr std::string_view Fox = "The quick brown fox jumps over the lazy dog";

constexpr struct {
    int (*ofBytes)(const Zyl8u*, int, Zyl32u*);
    int (*ofUnits)(const Zyl16u*, int, Zyl32u*);
    std::string_view text;
    Zyl32u expected;
} Published[] = {
    {zylsHash_8u32u, zylsHash_16u32u, "", 0x00000000},
    {zylsHash_8u32u, zylsHash_16u32u, "123456789", 0xCBF43926},
    {zylsHash_8u32u, zylsHash_16u32u, Fox, 0x414FA339},
    {zylsHashSJ2_8u32u, zylsHashSJ2_16u32u, "", 0x811C9DC5},
    {zylsHashSJ2_8u32u, zylsHashSJ2_16u32u, "foobar", 0xBF9CF968},
    {zylsHashMSCS_8u32u, zylsHashMSCS_16u32u, "a", 0xCA2E9442},
    {zylsHashMSCS_8u32u, zylsHashMSCS_16u32u, Fox, 0x519E91F5},
};

TEST(Hash, PublishedValuesAndUnitsOfTwoBytes) {
    // Units hash as their bytes, low byte first, at an odd address too; a high byte above 0x7F must not be
    // taken for a sign.
    alignas(Zyl16u) const Zyl8u bytes[] = {0, 'f', 'o', 'o', 'b', 0x80, 0xFF, 0xFF, 0x7F};
    const auto* units = reinterpret_cast<const Zyl16u*>(bytes + 1);
    for (const auto& row : Published) {
        const auto* text = reinterpret_cast<const Zyl8u*>(row.text.data());
        Zyl32u hash = 77;
        Zyl32u ofBytes = 0;
        Zyl32u ofUnits = 1;
        EXPECT_EQ(row.ofBytes(text, static_cast<int>(row.text.size()), &hash), 0);
        EXPECT_EQ(hash, row.expected) << row.text;
        EXPECT_EQ(row.ofBytes(bytes + 1, 8, &ofBytes), 0);
        EXPECT_EQ(row.ofUnits(units, 4, &ofUnits), 0);
        EXPECT_EQ(ofUnits, ofBytes) << row.text;
    }
}

}  // namespace
