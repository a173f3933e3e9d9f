// Insertion and removal of half the length, at the middle or a quarter into the text.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chinsert_ia";

zyVector src;
zyVector insert;
zyVector dst;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {insert, zyArgSrc}, {dst, zyArgSrc}};
Zyl8u* pSrc;
Zyl8u* pInsert;
Zyl8u* pDst;
int srcLen;
int subLen;
int startIndex;
int srcDstLen;

ZY_ENTRY int tinit_srcDstLen() {
    srcDstLen = srcLen;
    return 0;
}

ZY_ENTRY int tcall_zylsInsert_8u_I() {
    return zylsInsert_8u_I(pInsert, subLen, pSrc, &srcDstLen, startIndex);
}
ZY_ENTRY int tcall_zylsRemove_8u_I() { return zylsRemove_8u_I(pSrc, &srcDstLen, startIndex, subLen); }
ZY_ENTRY int tcall_zylsInsert_8u() { return zylsInsert_8u(pSrc, srcLen, pInsert, subLen, pDst, startIndex); }
ZY_ENTRY int tcall_zylsRemove_8u() { return zylsRemove_8u(pSrc, srcLen, pDst, startIndex, subLen); }

class TimchInsert : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        m_insert = func.found("Insert");
        return zyVectorTest::canStart();
    }

    bool initData() override {
        const int length = g_vectorLength.value();
        const long long buffer = layOut(length);
        if (!src.createVectorExt(buffer, 0, SetDefault, 0.0, 0.0) ||
            !insert.createVectorExt(subLen, mrGetVectorShift(), SetDefault, 0.0, 0.0) ||
            !dst.createVectorExt(buffer, mrGetVectorShift(2), SetDefault, 0.0, 0.0)) {
            return false;
        }
        pSrc = src.data<Zyl8u>();
        pInsert = insert.data<Zyl8u>();
        pDst = dst.data<Zyl8u>();
        return true;
    }

    void parmsToOstrm() override {
        zyTest::parmsToOstrm();
        g_ostrm << "  srcLen=" << mrText(srcLen) << "  startIndex=" << mrText(startIndex)
                << (m_insert ? "  insertLen=" : "  removeLen=") << mrText(subLen);
    }

  private:
    /// Sets lengths and place; returns the length of the buffers. What no int holds can't be had as a buffer,
    /// so srcLen may be anything then.
    long long layOut(int length) const {
        const int half = length >> 1;
        subLen = half;
        if (func.inplace()) {
            startIndex = half;
            const long long twice = 2LL * length;
            srcLen = m_insert ? length : static_cast<int>(twice);
            return twice;
        }
        startIndex = length / 4;
        const long long whole = static_cast<long long>(length) + half;
        srcLen = m_insert ? half : static_cast<int>(whole);
        return m_insert ? length & ~1 : whole;
    }

    bool m_insert = false;
};

ZY_REG_I(TimchInsert, zylsInsert_8u_I, tinit_srcDstLen)
ZY_REG_I(TimchInsert, zylsRemove_8u_I, tinit_srcDstLen)
ZY_REG(TimchInsert, zylsInsert_8u)
ZY_REG(TimchInsert, zylsRemove_8u)

}  // namespace
