// Trimming by a set of characters. The one that the text consists of stands in the middle of the set, so a
// search through the set goes half way for every byte.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chtrimany_ia";
constexpr double Trimmed = 5.0;
constexpr double NotInText = 6.0;

zyVector src;
zyVector dst;
zyVector trim;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {dst, zyArgSrc}, {trim, zyArgSrc}};
Zyl8u* pSrc;
Zyl8u* pDst;
Zyl8u* pTrim;
int srcLen;
int dstLen;
int trimLen;
mrStepIterator<int> trimLenArg;

ZY_ENTRY int tinit_dstLen() {
    dstLen = srcLen;
    return 0;
}

ZY_ENTRY int tcall_zylsTrimCAny_8u() { return zylsTrimCAny_8u(pSrc, srcLen, pTrim, trimLen, pDst, &dstLen); }
ZY_ENTRY int tcall_zylsTrimEndCAny_8u() {
    return zylsTrimEndCAny_8u(pSrc, srcLen, pTrim, trimLen, pDst, &dstLen);
}
ZY_ENTRY int tcall_zylsTrimStartCAny_8u() {
    return zylsTrimStartCAny_8u(pSrc, srcLen, pTrim, trimLen, pDst, &dstLen);
}

class TimsTrimAny : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        zyVectorTest::canStart();
        m_parms.append(&trimLenArg);
        trimLenArg.reset();
        trimLenArg.setName("trimLen");
        trimLenArg.setSteps(4, 256, OprtnMul, 4);
        return true;
    }

    bool initData() override {
        srcLen = g_vectorLength.value();
        trimLen = trimLenArg.value();
        if (!src.createVectorExt(srcLen, 0, SetValue, Trimmed, 0.0) ||
            !dst.createVectorExt(srcLen, mrGetVectorShift(), SetDefault, 0.0, 0.0) ||
            !trim.createVectorExt(trimLen, mrGetVectorShift(2), SetValue, NotInText, 0.0)) {
            return false;
        }
        trim.setIndex(trimLen / 2, SetValue, Trimmed, 0.0);
        pSrc = src.data<Zyl8u>();
        pDst = dst.data<Zyl8u>();
        pTrim = trim.data<Zyl8u>();
        return true;
    }
};

ZY_REG_I(TimsTrimAny, zylsTrimCAny_8u, tinit_dstLen)
ZY_REG_I(TimsTrimAny, zylsTrimEndCAny_8u, tinit_dstLen)
ZY_REG_I(TimsTrimAny, zylsTrimStartCAny_8u, tinit_dstLen)

}  // namespace
