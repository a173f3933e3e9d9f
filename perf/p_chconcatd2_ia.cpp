// Joining a list of texts of nearly equal length, with and without a delimiter, and splitting the joined text
// again.

#include <algorithm>

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chconcatd2_ia";

mrStepIterator<int> numSrcArg;
std::unique_ptr<zyVector[]> src;
std::unique_ptr<Zyl8u*[]> pSrc;
std::unique_ptr<int[]> srcLen;
zyVector dst;
constexpr zyArgument vectors[] = {{dst, zyArgSrc}};
Zyl8u* pDst;
int dstLen;
int numSrc;  // in and out of the split, so what was allocated is counted on its own
int allocated;
Zyl8u delim_8u;

ZY_ENTRY int tcall_zylsConcat_8u_D2L() { return zylsConcat_8u_D2L(pSrc.get(), srcLen.get(), numSrc, pDst); }

ZY_ENTRY int tcall_zylsConcatC_8u_D2L() {
    return zylsConcatC_8u_D2L(pSrc.get(), srcLen.get(), numSrc, delim_8u, pDst);
}

ZY_ENTRY int tcall_zylsSplitC_8u_D2L() {
    return zylsSplitC_8u_D2L(pDst, dstLen, delim_8u, pSrc.get(), srcLen.get(), &numSrc);
}

class TimsConcatD2L : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        zyVectorTest::canStart();
        m_parms.append(&numSrcArg);
        numSrcArg.reset();
        numSrcArg.setName("numSrc");
        numSrcArg.setSteps(2, 16, OprtnMul, 2);
        return true;
    }

    bool initData() override {
        dstLen = g_vectorLength.value();
        numSrc = numSrcArg.value();
        allocated = 0;
        if (numSrc < 1) {
            return false;
        }
        // the first piece without a byte ends it, however many are asked for
        const auto pieces = static_cast<std::size_t>(std::min<long long>(numSrc, std::max(dstLen, 0) + 1LL));
        src = std::make_unique<zyVector[]>(pieces);
        pSrc = std::make_unique<Zyl8u*[]>(pieces);
        srcLen = std::make_unique<int[]>(pieces);
        if (!createPieces() || !dst.createVectorExt(dstLen, mrGetVectorShift(numSrc), SetDefault, 0.0, 0.0)) {
            return false;
        }
        pDst = dst.data<Zyl8u>();
        if (func.found("SplitC")) {
            zylsConcatC_8u_D2L(pSrc.get(), srcLen.get(), numSrc, delim_8u, pDst);
            --dstLen;
        }
        return true;
    }

    void flushData() override {
        zyVectorTest::flushData();
        for (int i = 0; i < allocated; ++i) {
            src[static_cast<std::size_t>(i)].deleteVector();
        }
        src.reset();
        pSrc.reset();
        srcLen.reset();
    }

  private:
    /// Equal pieces, the last ones shorter where the total would exceed the length; with delimiters one place
    /// each is kept free for them. False at the first piece that has no length left.
    bool createPieces() {
        long long piece = (static_cast<long long>(dstLen) + numSrc - 1) / numSrc;
        long long offset = 0;
        if (func.found("SplitC") || func.found("ConcatC")) {
            --piece;
            offset = numSrc - 1;
        }
        for (int i = 0; i < numSrc; ++i) {
            if (offset + piece > dstLen) {
                piece = dstLen - offset;
            }
            offset += piece;
            const auto at = static_cast<std::size_t>(i);
            srcLen[at] = static_cast<int>(piece);
            src[at].init(func, zyArgSrc);
            if (!src[at].createVectorExt(piece, mrGetVectorShift(i), SetDefault, 0.0, 0.0)) {
                return false;
            }
            pSrc[at] = src[at].data<Zyl8u>();
            allocated = i + 1;
        }
        return true;
    }
};

ZY_REG(TimsConcatD2L, zylsConcat_8u_D2L)
ZY_REG(TimsConcatD2L, zylsConcatC_8u_D2L)
ZY_REG(TimsConcatD2L, zylsSplitC_8u_D2L)

}  // namespace
