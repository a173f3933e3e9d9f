// Replacement of a byte. Old and new value swap around each call, so one call replaces half the text and the
// next finds nothing: the figure is of the two in turn.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chreplace_ia";

zyVector src;
zyVector dst;
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

class TimsReplace : public zyTest {
  public:
    using zyTest::zyTest;

    bool canStart() override {
        m_parms.append(&g_vectorLength);
        src.init(func, zyArgSrc);
        dst.init(func, zyArgSrc);
        return true;
    }

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

    void flushData() override {
        src.deleteVector();
        dst.deleteVector();
    }

    double getDivisor() override { return len; }
    mrString getUnit() override { return "e"; }
};

ZY_REG_I(TimsReplace, zylsReplaceC_8u, tinit_zylsReplaceC_8u)

}  // namespace
