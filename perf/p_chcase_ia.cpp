// Case conversion. One byte in sixteen is a letter that the function has to change, all others it has to
// leave: the mix of a text that is mostly converted already.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chcase_ia";
constexpr int LetterDistance = 16;

zyVector pSrc;
zyVector pDst;
constexpr zyArgument vectors[] = {{pSrc, zyArgSrc}, {pDst, zyArgDst}};
int len;

// The in-place functions are measured as a pair with their inverse, which leaves the data as they were.

ZY_ENTRY int tcall_zylsUppercaseLatin_8u_I() {
    zylsUppercaseLatin_8u_I(pSrc.data<Zyl8u>(), len);
    zylsLowercaseLatin_8u_I(pSrc.data<Zyl8u>(), len);
    return 0;
}

ZY_ENTRY int tcall_zylsLowercaseLatin_8u_I() {
    zylsLowercaseLatin_8u_I(pSrc.data<Zyl8u>(), len);
    zylsUppercaseLatin_8u_I(pSrc.data<Zyl8u>(), len);
    return 0;
}

ZY_ENTRY int tcall_zylsUppercaseLatin_8u() {
    return zylsUppercaseLatin_8u(pSrc.data<Zyl8u>(), pDst.data<Zyl8u>(), len);
}

ZY_ENTRY int tcall_zylsLowercaseLatin_8u() {
    return zylsLowercaseLatin_8u(pSrc.data<Zyl8u>(), pDst.data<Zyl8u>(), len);
}

class TimsCaseLatin : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool initData() override {
        len = g_vectorLength.value();
        if (!pSrc.createVector(len, -1) || !pDst.createVector(len, -1)) {
            return false;
        }
        const double letter = func.found("Low") ? 'A' : 'a';
        for (int i = 0; i < len; i += LetterDistance) {
            pSrc.setDataConst(pSrc.getPointerAt(i), 1, letter, 0.0);
        }
        return true;
    }

    /// Halves the figure of a pair here and counts its elements twice in the divisor: the double correction
    /// has always been made, and tables stay comparable.
    mrResult runTiming() override {
        const mrResult result = zyTest::runTiming();
        if (func.inplace()) {
            m_tool.setFuncTicks(m_tool.m_funcClocks / 2);
        }
        return result;
    }

    double getDivisor() override { return func.inplace() ? 2.0 * len : len; }
};

ZY_REG_X(TimsCaseLatin, zylsUppercaseLatin_8u_I)
ZY_REG_X(TimsCaseLatin, zylsLowercaseLatin_8u_I)
ZY_REG(TimsCaseLatin, zylsUppercaseLatin_8u)
ZY_REG(TimsCaseLatin, zylsLowercaseLatin_8u)

}  // namespace
