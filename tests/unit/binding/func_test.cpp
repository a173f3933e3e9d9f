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
