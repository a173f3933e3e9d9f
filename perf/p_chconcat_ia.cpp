// Concatenation of two texts of half the length each.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chconcat_ia";

zyVector src;
zyVector src2;
zyVector dst;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {src2, zyArgSrc2}, {dst, zyArgDst}};
Zyl8u* pSrc;
Zyl8u* pSrc2;
Zyl8u* pDst;
int srcLen;
int dstLen;

ZY_ENTRY int tcall_zylsConcat_8u() { return zylsConcat_8u(pSrc, srcLen, pSrc2, srcLen, pDst); }

class TimsConcat : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

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
};

ZY_REG(TimsConcat, zylsConcat_8u)

}  // namespace
