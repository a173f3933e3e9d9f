// Comparison of two equal texts, which runs to their end.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chcomp_ia";

zyVector src;
zyVector src2;
zyVector dst;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {src2, zyArgSrc2}, {dst, zyArgDst}};
Zyl8u* pSrc;
Zyl8u* pSrc2;
int len;
int iVal;

ZY_ENTRY int tcall_zylsCompare_8u() { return zylsCompare_8u(pSrc, pSrc2, len, &iVal); }
ZY_ENTRY int tcall_zylsEqual_8u() { return zylsEqual_8u(pSrc, pSrc2, len, &iVal); }
ZY_ENTRY int tcall_zylsCompareIgnoreCaseLatin_8u() {
    return zylsCompareIgnoreCaseLatin_8u(pSrc, pSrc2, len, &iVal);
}

class TimchCompare : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool initData() override {
        len = g_vectorLength.value();
        // The calls do not use dst; it keeps the blocks where they have always been.
        if (!src.createVectorExt(len, 0, SetDefault, 0.0, 0.0) ||
            !src2.createVectorExt(len, mrGetVectorShift(), SetDefault, 0.0, 0.0) ||
            !dst.createVectorExt(len, mrGetVectorShift(2), SetDefault, 0.0, 0.0)) {
            return false;
        }
        pSrc = src.data<Zyl8u>();
        pSrc2 = src2.data<Zyl8u>();
        return true;
    }
};

ZY_REG(TimchCompare, zylsCompare_8u)
ZY_REG(TimchCompare, zylsEqual_8u)
ZY_REG(TimchCompare, zylsCompareIgnoreCaseLatin_8u)

}  // namespace
