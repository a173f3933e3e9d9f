// Replacement of a byte. Old and new value swap around each call, so one call replaces half the text and the
// next finds nothing: the figure is of the two in turn.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chreplace_ia";

zyVector src;
zyVector dst;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {dst, zyArgSrc}};
Zyl8u* pSrc;
Zyl8u* pDst;
int len;
Zyl8u oldVal = 1;
Zyl8u newVal = 2;

ZY_ENTRY int tinit_zylsReplaceC_8u() {
    std::swap(oldVal, newVal);
    return 0;
}

ZY_ENTRY int tcall_zylsReplaceC_8u() { return zylsReplaceC_8u(pSrc, pDst, len, oldVal, newVal); }

class TimsReplace : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool initData() override {
        len = g_vectorLength.value();
        if (!src.createVectorExt(len, 0, SetValue, 99.0, 0.0) ||
            !dst.createVectorExt(len, mrGetVectorShift(), SetDefault, 0.0, 0.0)) {
            return false;
        }
        for (int i = 0; i < len / 2; ++i) {
            src.setIndex(i, SetValue, newVal, 0.0);
        }
        pSrc = src.data<Zyl8u>();
        pDst = dst.data<Zyl8u>();
        return true;
    }
};

ZY_REG_I(TimsReplace, zylsReplaceC_8u, tinit_zylsReplaceC_8u)

}  // namespace
