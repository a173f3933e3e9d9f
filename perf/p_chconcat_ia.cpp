// Concatenation of two texts of half the length each.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chconcat_ia";

zyVector src;
zyVector src2;
zyVector dst;
Zyl8u* pSrc;
Zyl8u* pSrc2;
Zyl8u* pDst;
int srcLen;
int dstLen;

ZY_ENTRY int tcall_zylsConcat_8u() { return zylsConcat_8u(pSrc, srcLen, pSrc2, srcLen, pDst); }

class TimsConcat : public zyTest {
  public:
    using zyTest::zyTest;

    bool canStart() override {
        m_parms.append(&g_vectorLength);
        src.init(func, zyArgSrc);
        src2.init(func, zyArgSrc2);
        dst.init(func, zyArgDst);
        return true;
    }

    bool initData() override {
        dstLen = g_vectorLength.value();
        srcLen = dstLen >> 1;
        // The rising align puts the buffers of one call on different cache sets.
        if (!src.createVectorExt(srcLen, 0, SetDefault, 0.0, 0.0) ||
            !src2.createVectorExt(srcLen, mrGetVectorShift(), SetDefault, 0.0, 0.0) ||
            !dst.createVectorExt(dstLen, mrGetVectorShift(2), SetDefault, 0.0, 0.0)) {
            return false;
        }
        pSrc = src.data<Zyl8u>();
        pSrc2 = src2.data<Zyl8u>();
        pDst = dst.data<Zyl8u>();
        return true;
    }

    void flushData() override {
        src.deleteVector();
        src2.deleteVector();
        dst.deleteVector();
    }

    double getDivisor() override { return g_vectorLength.value(); }
    mrString getUnit() override { return "e"; }
};

ZY_REG(TimsConcat, zylsConcat_8u)

}  // namespace
