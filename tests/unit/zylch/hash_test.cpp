/// The hashes against the values that their authors, or the standards that took them up, publish.

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "zylch.h"

namespace {

using ByteHash = int (*)(const Zyl8u*, int, Zyl32u*);
using UnitHash = int (*)(const Zyl16u*, int, Zyl32u*);

struct Vector {
    ByteHash bytes;
    UnitHash units;
    std::string_view text;
    Zyl32u expected;
};

constexpr std::string_view kFox = "The quick brown fox jumps over the lazy dog";
constexpr std::string_view kFoxAndDot = "The quick brown fox jumps over the lazy dog.";

constexpr Vector kVectors[] = {
    {zylsHash_8u32u, zylsHash_16u32u, "", 0x00000000},
    {zylsHash_8u32u, zylsHash_16u32u, "123456789", 0xCBF43926},
    {zylsHash_8u32u, zylsHash_16u32u, kFox, 0x414FA339},
    {zylsHash_8u32u, zylsHash_16u32u, kFoxAndDot, 0x519025E9},
    {zylsHashSJ2_8u32u, zylsHashSJ2_16u32u, "", 0x811C9DC5},
    {zylsHashSJ2_8u32u, zylsHashSJ2_16u32u, "a", 0xE40C292C},
    {zylsHashSJ2_8u32u, zylsHashSJ2_16u32u, "foobar", 0xBF9CF968},
    {zylsHashMSCS_8u32u, zylsHashMSCS_16u32u, "", 0x00000000},
    {zylsHashMSCS_8u32u, zylsHashMSCS_16u32u, "a", 0xCA2E9442},
    {zylsHashMSCS_8u32u, zylsHashMSCS_16u32u, kFox, 0x519E91F5},
};

TEST(Hash, PublishedValues) {
    for (const Vector& row : kVectors) {
        const std::vector<Zyl8u> bytes(row.text.begin(), row.text.end());
        const Zyl8u none = 0;
        Zyl32u hash = 77;
        EXPECT_EQ(row.bytes(bytes.empty() ? &none : bytes.data(), static_cast<int>(bytes.size()), &hash), 0);
        EXPECT_EQ(hash, row.expected) << row.text;
    }
}

// Texts of an even length are also texts of half as many units, low byte first; a high byte above 0x7F must
// not be taken for a sign.
TEST(Hash, UnitsAreTwoBytesEach) {
    const Zyl8u bytes[] = {'f', 'o', 'o', 'b', 0x80, 0xFF, 0xFF, 0x7F};
    const Zyl16u units[] = {0x6F66, 0x626F, 0xFF80, 0x7FFF};
    for (const Vector& row : kVectors) {
        Zyl32u ofBytes = 0;
        Zyl32u ofUnits = 1;
        EXPECT_EQ(row.bytes(bytes, 8, &ofBytes), 0);
        EXPECT_EQ(row.units(units, 4, &ofUnits), 0);
        EXPECT_EQ(ofUnits, ofBytes) << row.text;
    }
}

}  // namespace
