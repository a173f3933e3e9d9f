// Trimming of a text that is nothing but the character to trim.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chtrim_ia";
constexpr Zyl8u Trimmed = 3;

zyVector src;
zyVector dst;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {dst, zyArgSrc}};
Zyl8u* pSrc;
Zyl8u* pDst;
int srcLen;
int dstLen;

ZY_ENTRY int tinit_dstLen() {
    dstLen = srcLen;
    return 0;
}

ZY_ENTRY int tcall_zylsTrimC_8u_I() { return zylsTrimC_8u_I(pSrc, &dstLen, Trimmed); }
ZY_ENTRY int tcall_zylsTrimC_8u() { return zylsTrimC_8u(pSrc, srcLen, Trimmed, pDst, &dstLen); }

class TimsTrim : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool initData() override {
        srcLen = g_vectorLength.value();
        if (!src.createVectorExt(srcLen, 0, SetValue, Trimmed, 0.0) ||
            !dst.createVectorExt(srcLen, mrGetVectorShift(), SetDefault, 0.0, 0.0)) {
            return false;
        }
        pSrc = src.data<Zyl8u>();
        pDst = dst.data<Zyl8u>();
        return true;
    }
};

ZY_REG_I(TimsTrim, zylsTrimC_8u_I, tinit_dstLen)
ZY_REG_I(TimsTrim, zylsTrimC_8u, tinit_dstLen)

}  // namespace
