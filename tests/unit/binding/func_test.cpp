#include "zyfunc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/captured_output.h"

namespace {

/// The parts of a name: prefix|base|types|descriptor.
std::string partsOf(const zyFunc& func) {
    return str(func.prefix() + "|" + func.baseName() + "|" + func.typeName() + "|" + func.descrName());
}

TEST(Func, TakesNamesApart) {
    static constexpr struct {
        const char* name;
        const char* parts;
    } rows[] = {
        {"zylsFind_8u", "zyls|Find|8u|"},
        {"zylsUppercaseLatin_8u_I", "zyls|UppercaseLatin|8u|I"},
        {"zylsConvertUTF_8u16u", "zyls|ConvertUTF|8u16u|"},
        {"zylsRegExpInit", "zyls|RegExpInit||"},
        {"zylsFindC_Z_8u", "zyls|FindC_Z|8u|"},
        {"zyliAdd_8u_C3_R", "zyli|Add|8u|C3_R"},
        {"Foo_Bar_16s_I", "|Foo_Bar|16s|I"},
        {"__mrZorvaCpu", "|__mrZorvaCpu||"},
        {"zylsFoo_16", "zyls|Foo_16||"},
        {"zylsFoo_16x_", "zyls|Foo_16x_||"},
        {"_32fc_", "||32fc|"},
        {"", "|||"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(partsOf(row.name), row.parts);
    }
}

std::string text(zyType type) { return str(zyFunc::typeToString(type)); }

TEST(Func, KnowsTheTypesOfTheArguments) {
    static constexpr struct {
        const char* name;
        const char* types;  // of the two sources and the two destinations
    } rows[] = {
        {"zylsFind_8u", "8u 8u 8u 8u"},
        {"zylsConvertUTF_8u16u", "8u 8u 16u 16u"},
        {"zylsFoo_8u16s32f", "8u 16s 32f 32f"},
        {"zylsFoo_8u16s16s", "8u 8u 16s 16s"},
        {"zylsRegExpInit", "undef undef undef undef"},
        {"zylsMagnitude_32fc", "32fc 32fc 32f 32f"},
        {"zylsPowerSpectr_16sc", "16sc 16sc 16s 16s"},
        {"zylsPolarToCart_64fc", "64f 64f 64fc 64fc"},
        {"zylsRealToCplx_32f", "32f 32f 32fc 32fc"},
        {"zylsDotProd_32f32fc", "32f 32fc 32fc 32fc"},
        {"zylsDotProd_32f64f", "32f 32f 64f 64f"},
        {"zylsMul_16u16s_Sfs", "16u 16s 16s 16s"},
        {"zylsGoertz_16s", "16s 16s 16sc 16sc"},
        {"zyliMagnitude_32fc", "32fc 32fc 32fc 32fc"},
        {"zyliMean_8u_C1R", "8u 8u 64f 64f"},
        {"zyliCopy_32f_C1MR", "32f 8u 32f 32f"},
        {"zyliCompareEqual_32f_C1R", "32f 32f 8u 8u"},
        {"zylsMean_8u", "8u 8u 8u 8u"},
    };
    for (const auto& row : rows) {
        const zyFunc func = row.name;
        EXPECT_EQ(text(func.srcType()) + " " + text(func.src2Type()) + " " + text(func.dstType()) + " " +
                      text(func.dst2Type()),
                  row.types)
            << row.name;
    }
    EXPECT_EQ(zyFunc("zylsFind_8u").type(static_cast<zyArg>(3)), 0);
}

TEST(Func, TypeByIndexAsksTheBaseForIndexZero) {
    static constexpr struct {
        const char* name;
        const char* types;  // of index 0 to 4
    } rows[] = {
        {"zylsFoo_8u16s32f", "8u 8u 16s 32f undef "},
        {"zylsFoo64fcBar_8u", "64fc 8u 8u 8u undef "},
        {"zylsFoo64uBar_32s", "32s 32s 32s 32s undef "},
        {"zylsFoo16ucBar", "16uc undef undef undef undef "},
        {"zylsFoo16Bar", "undef undef undef undef undef "},
    };
    for (const auto& row : rows) {
        std::string types;
        for (int i = 0; i < 5; ++i) {
            types += text(zyFunc(row.name).type(i)) + " ";
        }
        EXPECT_EQ(types, row.types) << row.name;
    }
}

TEST(Func, TypeTextsHaveTheirValuesAndCodes) {
    static constexpr struct {
        const char* text;
        zyType type;
        int code;
    } rows[] = {
        {"8u", 8, 1},      {"8s", 264, 3},     {"8sc", 1288, 0}, {"16u", 16, 5},   {"16s", 272, 7},
        {"16uc", 1040, 8}, {"16sc", 1296, 8},  {"32u", 32, 9},   {"32s", 288, 11}, {"32sc", 1312, 12},
        {"32f", 544, 13},  {"32fc", 1568, 14}, {"64u", 64, 15},  {"64s", 320, 17}, {"64sc", 1344, 18},
        {"64f", 576, 19},  {"64fc", 1600, 20},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(zyFunc::stringToType(row.text), row.type) << row.text;
        EXPECT_EQ(text(row.type), row.text);
        EXPECT_EQ(zyFunc::zylType(row.type), row.code) << row.text;
    }
    EXPECT_EQ(zyFunc::stringToType("1u"), 8);
    EXPECT_EQ(zyFunc::stringToType("64uc"), 0);
    EXPECT_EQ(text(7), "undef");
    EXPECT_EQ(zyFunc::zylType(7), 0);
}

/// Layouts of source and destination with channels, p for planes and a for alpha, and the library's code.
std::string layoutOf(const zyFunc& func) {
    std::string layout;
    for (const zyArg arg : {zyArgSrc2, zyArgDst}) {
        layout += str(func.channelsName(arg)) + ":" + std::to_string(func.channels(arg)) +
                  (func.plane(arg) ? "p" : "") + (func.alpha(arg) ? "a" : "") + " ";
    }
    return layout + std::to_string(func.zylChannels(1));
}

TEST(Func, ReadsTheChannelLayout) {
    static constexpr struct {
        const char* descr;
        const char* layout;
    } rows[] = {
        {"C1R", "C1:1 C1:1 1"},
        {"C4IR", "C4:4 C4:4 4"},
        {"C3P3R", "C3:3 P3:3p 3"},
        {"P4C4R", "P4:4p C4:4 7"},
        {"C3AC4R", "C3:3 AC4:4a 3"},
        {"AC4R", "AC4:4a AC4:4a 9"},
        {"AC1R", "AC1:1a AC1:1a 8"},
        {"AP4R", "AP4:4pa AP4:4pa 11"},
        {"A0C4R", "A0C4:4a A0C4:4a 10"},
        {"C3CR", "C3:3 C3:3 3"},
        {"C5", ":0 :0 0"},
        {"", ":0 :0 0"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(layoutOf(mrString("zyliCopy_8u_") + row.descr), row.layout) << row.descr;
    }
    EXPECT_EQ(layoutOf("zyliCompare_8u_C3R"), "C3:3 C3:1 3");
    EXPECT_EQ(layoutOf("zylsCompare_8u_C3R"), "C3:3 C3:3 3");
    const zyFunc func = "zyliCopy_8u_AP4R";
    EXPECT_EQ(func.channels(3), 1);
    EXPECT_EQ(func.channels(static_cast<zyArg>(0)), 1);
    EXPECT_FALSE(func.alpha(3) || func.plane(3));
}

TEST(Func, ReadsTheFlagsOfTheDescriptor) {
    static constexpr struct {
        const char* name;
        const char* flags;  // in place, mask, scale, roi, coi
    } rows[] = {
        {"zylsTrimC_8u_I", "I"},  {"zylsConcat_8u_D2L", ""}, {"zyliCopy_8u_C3CR", "RC"},
        {"zyliCopy_8u_C3R", "R"}, {"zyliSet_8u_C1MR", "MR"}, {"zylsAdd_16s_ISfs", "IS"},
        {"zylsFoo_8u_C", ""},     {"zylsInMask", ""},
    };
    for (const auto& row : rows) {
        const zyFunc func = row.name;
        const std::string flags = std::string(func.inplace() ? "I" : "") + (func.mask() ? "M" : "") +
                                  (func.scale() ? "S" : "") + (func.roi() ? "R" : "") +
                                  (func.coi() ? "C" : "");
        EXPECT_EQ(flags, row.flags) << row.name;
    }
}

/// Every pair compares as it stands here.
void expectSorted(const std::vector<const char*>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = 0; j < names.size(); ++j) {
            const int order = zyFunc(names[i]).compare(names[j]);
            EXPECT_TRUE(i < j ? order < 0 : i > j ? order > 0 : order == 0) << names[i] << " to " << names[j];
        }
    }
}

TEST(Func, SortsTheMeasuredFunctions) {
    expectSorted({"__mrZorvaCpu",
                  "zylsCompare_8u",
                  "zylsCompareIgnoreCaseLatin_8u",
                  "zylsConcat_8u",
                  "zylsConcat_8u_D2L",
                  "zylsConcatC_8u_D2L",
                  "zylsConvertUTF_8u16u",
                  "zylsConvertUTF_16u8u",
                  "zylsEqual_8u",
                  "zylsFind_8u",
                  "zylsFindC_8u",
                  "zylsFindCAny_8u",
                  "zylsFindC_Z_8u",
                  "zylsFindRev_8u",
                  "zylsFindRevC_8u",
                  "zylsFindRevCAny_8u",
                  "zylsFind_Z_8u",
                  "zylsHash_8u32u",
                  "zylsHash_16u32u",
                  "zylsHashMSCS_8u32u",
                  "zylsHashMSCS_16u32u",
                  "zylsHashSJ2_8u32u",
                  "zylsHashSJ2_16u32u",
                  "zylsInsert_8u",
                  "zylsInsert_8u_I",
                  "zylsLowercaseLatin_8u",
                  "zylsLowercaseLatin_8u_I",
                  "zylsRegExpFind_8u",
                  "zylsRegExpReplace_8u",
                  "zylsRemove_8u",
                  "zylsRemove_8u_I",
                  "zylsReplaceC_8u",
                  "zylsSplitC_8u_D2L",
                  "zylsTrimC_8u",
                  "zylsTrimC_8u_I",
                  "zylsTrimCAny_8u",
                  "zylsTrimEndCAny_8u",
                  "zylsTrimStartCAny_8u",
                  "zylsUppercaseLatin_8u",
                  "zylsUppercaseLatin_8u_I"});
}

TEST(Func, SortsTypesByValueAndDescriptorsByLayout) {
    expectSorted({"zylsAdd", "zylsAdd_8u", "zylsAdd_8u16u", "zylsAdd_16u", "zylsAdd_16uc", "zylsAdd_64u",
                  "zylsAdd_8s", "zylsAdd_16s", "zylsAdd_64s", "zylsAdd_32f", "zylsAdd_32f_I", "zylsAdd_32fc",
                  "zylsAdd_64f"});
    expectSorted(
        {"zyliAdd_8u_C1R", "zyliAdd_8u_C4R", "zyliAdd_8u_AC4R", "zyliAdd_8u_C1IR", "zyliAdd_8u_AC4IR"});
}

}  // namespace
