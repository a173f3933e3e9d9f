// Search. The place of the match, at about the middle, and the number of near misses before it are set by
// construction, so one run compares easy and hard searches.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chfind_ia";

zyVector src;
zyVector fnd;
constexpr zyArgument vectors[] = {{src, zyArgSrc}, {fnd, zyArgSrc}};
Zyl8u* pSrc;
Zyl8u* pFind;
int len;
int lenFind;
int idx;
mrStepIterator<int> lenFindArg;
mrMapIterator<int> hardSearch;

ZY_ENTRY int tcall_zylsFind_8u() { return zylsFind_8u(pSrc, len, pFind, lenFind, &idx); }
ZY_ENTRY int tcall_zylsFindRev_8u() { return zylsFindRev_8u(pSrc, len, pFind, lenFind, &idx); }
ZY_ENTRY int tcall_zylsFindC_8u() { return zylsFindC_8u(pSrc, len, pFind[0], &idx); }
ZY_ENTRY int tcall_zylsFindRevC_8u() { return zylsFindRevC_8u(pSrc, len, pFind[0], &idx); }
ZY_ENTRY int tcall_zylsFindCAny_8u() { return zylsFindCAny_8u(pSrc, len, pFind, lenFind, &idx); }
ZY_ENTRY int tcall_zylsFindRevCAny_8u() { return zylsFindRevCAny_8u(pSrc, len, pFind, lenFind, &idx); }
ZY_ENTRY int tcall_zylsFind_Z_8u() { return zylsFind_Z_8u(pSrc, pFind, &idx); }
ZY_ENTRY int tcall_zylsFindC_Z_8u() { return zylsFindC_Z_8u(pSrc, pFind[0], &idx); }

class TimsFind : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        m_hasC = func.found("C");
        m_hasRev = func.found("Rev");
        m_hasAny = func.found("Any");
        zyVectorTest::canStart();
        m_parms.append(&lenFindArg);
        if (!m_hasC && !m_hasAny) {
            m_parms.append(&hardSearch);
        }
        lenFindArg.reset();
        if (!m_hasC || m_hasAny) {
            lenFindArg.setName("lenFind");
            lenFindArg.setSteps(8, 512, OprtnMul, 4);
            // Read here and once more with all parameters of the test: both readings have always been made.
            lenFindArg.fromIStream(g_istrm);
        } else {
            lenFindArg.setName("");
            lenFindArg.setSteps(1, 1, OprtnMul, 2);
        }
        hardSearch[0] = "-";
        hardSearch[1] = "hardSearch";
        hardSearch.reset();
        hardSearch.setName("hardSearch");
        hardSearch.add(0);
        hardSearch.add(1);
        return true;
    }

    bool initData() override {
        len = g_vectorLength.value();
        lenFind = lenFindArg.value();
        // A substring of one byte would let the near misses below step by nothing, one of none step back.
        const bool stepsBack = lenFind == 0 && !m_hasC && hardSearch.value() != 0 && hasNearMisses();
        if (lenFind >= len || (!m_hasC && lenFind == 1) || stepsBack) {
            return false;
        }
        if (!src.createVector(len + 1LL, -1) || !fnd.createVector(lenFind + 1, -1)) {
            return false;
        }
        fnd.setConst(1.0, 0.0);
        layOut();
        src.setIndex(len, SetValue, 0.0, 0.0);
        fnd.setIndex(lenFind, SetValue, 0.0, 0.0);
        pSrc = src.data<Zyl8u>();
        pFind = fnd.data<Zyl8u>();
        return true;
    }

  private:
    static void fill(int from, int to, double value) {
        if (from < to) {
            src.setDataConst(src.getPointerAt(from), to - from, value, 0.0);
        }
    }

    static void put(int index, double value) { src.setIndex(index, SetValue, value, 0.0); }

    void layOut() const {
        if (m_hasC || m_hasAny) {
            src.setConst(2.0, 0.0);
            put(len >> 1, 1.0);
            return;
        }
        src.setConst(1.0, 0.0);
        if (hardSearch.value() == 0) {
            layOutEasy();
        } else {
            layOutHard();
        }
    }

    /// No byte of the pattern before the match.
    void layOutEasy() const {
        if (m_hasRev) {
            fill(lenFind + (len - lenFind) / 2, len - 1, 2.0);
        } else {
            fill(0, (len - lenFind) / 2, 2.0);
        }
    }

    /// False for a text that is too short for any.
    bool hasNearMisses() const { return len >= (m_hasRev ? 5 : 4); }

    /// Before the match, stretches that are one byte short of it.
    void layOutHard() const {
        if (!hasNearMisses()) {
            return;
        }
        if (m_hasRev) {
            for (int i = len - 2; i > len / 2; i -= lenFind - 1) {
                put(i, 2.0);
            }
        } else {
            for (int i = 1; i < len / 2; i += lenFind - 1) {
                put(i, 2.0);
            }
        }
    }

    bool m_hasC = false;
    bool m_hasRev = false;
    bool m_hasAny = false;
};

ZY_REG(TimsFind, zylsFind_8u)
ZY_REG(TimsFind, zylsFindRev_8u)
ZY_REG(TimsFind, zylsFindC_8u)
ZY_REG(TimsFind, zylsFindRevC_8u)
ZY_REG(TimsFind, zylsFindCAny_8u)
ZY_REG(TimsFind, zylsFindRevCAny_8u)
ZY_REG(TimsFind, zylsFind_Z_8u)
ZY_REG(TimsFind, zylsFindC_Z_8u)

}  // namespace
