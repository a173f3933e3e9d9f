#include "zyfunc.h"

#include <gtest/gtest.h>

#include <string>

#include "support/captured_output.h"

namespace {

/// A name and what is read in it.
using Row = std::pair<const char*, const char*>;

TEST(Func, TakesNamesApart) {
    static constexpr Row rows[] = {
        // prefix|base|types|descriptor
        {"zylsUppercaseLatin_8u_I", "zyls|UppercaseLatin|8u|I"},
        {"zyliAdd_8u_C3_R", "zyli|Add|8u|C3_R"},
        {"Foo_Bar_16s_I", "|Foo_Bar|16s|I"},
        {"__mrZorvaCpu", "|__mrZorvaCpu||"},
        {"zylsFoo_16x_", "zyls|Foo_16x_||"},
    };
    for (const auto& [name, parts] : rows) {
        const zyFunc func = name;
        EXPECT_EQ(str(func.prefix() + "|" + func.baseName() + "|" + func.typeName() + "|" + func.descrName()),
                  parts);
    }
}

std::string text(zyType type) { return str(zyFunc::typeToString(type)); }

TEST(Func, KnowsTheTypesOfTheArguments) {
    static constexpr Row rows[] = {
        // of the two sources and the two destinations
        {"zylsFoo_8u16s32f", "8u 16s 32f 32f"},        {"zylsRealToCplx_32f", "32f 32f 32fc 32fc"},
        {"zylsDotProd_32f32fc", "32f 32fc 32fc 32fc"}, {"zylsGoertz_16s", "16s 16s 16sc 16sc"},
        {"zyliCopy_32f_C1MR", "32f 8u 32f 32f"},       {"zyliCompareEqual_32f_C1R", "32f 32f 8u 8u"},
    };
    for (const auto& [name, types] : rows) {
        const zyFunc func = name;
        EXPECT_EQ(text(func.srcType()) + " " + text(func.src2Type()) + " " + text(func.dstType()) + " " +
                      text(func.dst2Type()),
                  types)
            << name;
    }
}

TEST(Func, ReadsTheChannelLayout) {
    static constexpr Row rows[] = {
        // channels of source and destination, p for planes and a for alpha, and the library's code
        {"zyliCopy_8u_P4C4R", "P4:4p C4:4 7"},      {"zyliCopy_8u_C3AC4R", "C3:3 AC4:4a 3"},
        {"zyliCopy_8u_AP4R", "AP4:4pa AP4:4pa 11"}, {"zyliCopy_8u_A0C4R", "A0C4:4a A0C4:4a 10"},
        {"zyliCopy_8u_C3CR", "C3:3 C3:3 3"},        {"zyliCopy_8u_C5", ":0 :0 0"},
        {"zyliCompare_8u_C3R", "C3:3 C3:1 3"},
    };
    for (const auto& [name, expected] : rows) {
        const zyFunc func = name;
        std::string layout;
        for (const zyArg arg : {zyArgSrc2, zyArgDst}) {
            layout += str(func.channelsName(arg)) + ":" + std::to_string(func.channels(arg)) +
                      (func.plane(arg) ? "p" : "") + (func.alpha(arg) ? "a" : "") + " ";
        }
        EXPECT_EQ(layout + std::to_string(func.zylChannels(1)), expected) << name;
    }
}

TEST(Func, SortsTypesByValueAndDescriptorsByLayout) {
    static constexpr const char* sorted[] = {
        "__mrZorvaCpu",   "zyliAdd_8u_C1R", "zyliAdd_8u_C4R", "zyliAdd_8u_AC4R", "zyliAdd_8u_C1IR",
        "zylsAdd",        "zylsAdd_8u",     "zylsAdd_8u16u",  "zylsAdd_16u",     "zylsAdd_16uc",
        "zylsAdd_64u",    "zylsAdd_8s",     "zylsAdd_64s",    "zylsAdd_32f",     "zylsAdd_32f_I",
        "zylsAdd_32fc",   "zylsAdd_64f",    "zylsFind_8u",    "zylsFindC_8u",    "zylsFindCAny_8u",
        "zylsFindC_Z_8u", "zylsFind_Z_8u"};
    for (const char* const& a : sorted) {
        for (const char* const& b : sorted) {
            const int order = zyFunc(a).compare(b);
            EXPECT_TRUE(&a < &b ? order < 0 : &a > &b ? order > 0 : order == 0) << a << " " << b;
        }
    }
}

}  // namespace
