// Replacement by regular expressions in six built-in cases; each is one step of the walk, and the figure is
// clocks per call.

#include "p_regexp.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chregexpreplace_vl";
constexpr int Capacity = 1000;
constexpr int DstCapacity = 8192;

/// One case.
struct Quadruple {
    mrString source;
    mrString replace;
    mrString pattern;
    mrString option;
};

/// Cases can be walked but not typed in.
[[maybe_unused]] Quadruple& operator<<(Quadruple& task, mrString&) { return task; }
[[maybe_unused]] mrString& operator<<(mrString& text, const Quadruple&) { return text; }

constexpr int NumCases = 6;
constexpr const char* pTabPattern[NumCases] = {
    "([^ ]*) *([^ ]*)",
    "([A-Z])([0-9]{2,4}) ",
    "([A-Z])([0-9]{2,4})",
    "([A-Z])(?:-[a-z]{3}-)([0-9]*)",
    "([A-Z]-)(?=[a-z]{3})([a-z0-9]*)",
    "([A-Z]-)(?![a-z]{3})([a-z0-9]*)",
};
constexpr const char* pTabSrc[NumCases] = {
    "    #include [stdafx.h]",
    "    A37 B4 C107 D54112 E1103 XXX",
    "    A37 B4 C107 D54112 E1103 XXX",
    "    A-xyz-37 # B:abcd:142 # C-wxy-66 # D-qrs-93",
    "    A-xyz37 # B-ab6142 # C-Wxy66 # D-qrs93",
    "A-xyz37 # B-ab6142 # C-Wxy66 # D-qrs93",
};
constexpr const char* pTabReplace[NumCases] = {"$2 $1", "$2:$1 ", "$2:$1 ", "$1$2", "$2$1", "$2$1"};
constexpr const char* pTabOption[NumCases] = {"", "", "g", "g", "g", "g"};

mrIterator<Quadruple> tasks;
Quadruple myPair;
bool inited = false;
zyVector dst;
Zyl8u* pDst;
int pDstLen;
const Zyl8u* pSrc;
int cntOffset;
int srcLen;
int pSrcLenOffset;
void* pRegExpState = nullptr;
void* pReplaceState = nullptr;
ZylRegExpFind pFind[Capacity];
int pNumFind;

/// All three lengths are in and out of the call.
ZY_ENTRY int tinit_zylsRegExpReplace_8u() {
    pNumFind = Capacity;
    pDstLen = DstCapacity;
    pSrcLenOffset = srcLen;
    return 0;
}

ZY_ENTRY int tcall_zylsRegExpReplace_8u() {
    return zylsRegExpReplace_8u(pSrc + cntOffset, &pSrcLenOffset, pDst, &pDstLen, pFind, &pNumFind,
                                pRegExpState, pReplaceState);
}

bool compileReplacement() {
    freeState(pReplaceState);
    const Zyl8u* pReplace = bytes(myPair.replace);
    int size = 0;
    if (zylsRegExpReplaceGetSize(pReplace, &size) != 0) {
        return false;
    }
    pReplaceState = mrMalloc(size, 0, 0, nullptr);
    return pReplaceState != nullptr && zylsRegExpReplaceInit(pReplace, pReplaceState) == 0;
}

int leadingBlanks(const mrString& text) {
    int count = 0;
    while (count < text.length() && text[count] == ' ') {
        ++count;
    }
    return count;
}

class TimchRegExpReplace : public zyPatternTest {
  public:
    using zyPatternTest::zyPatternTest;

    bool canStart() override {
        dst.init(zyFunc("_8u"), zyArgSrc);
        if (inited) {
            return true;
        }
        tasks.reset();
        for (int i = 0; i < NumCases; ++i) {
            tasks.add({pTabSrc[i], pTabReplace[i], pTabPattern[i], pTabOption[i]});
        }
        inited = true;
        return true;
    }

    bool canContinue() override {
        if (!(m_first ? tasks.firstValue() : tasks.nextValue())) {
            return false;
        }
        myPair = tasks.value();
        pSrc = bytes(myPair.source);
        // A case without option hands over an empty text, never null.
        if (!compilePattern(myPair.pattern.c_str(), myPair.option.c_str(), pRegExpState) ||
            !compileReplacement()) {
            return false;
        }
        cntOffset = leadingBlanks(myPair.source);
        srcLen = myPair.source.length() - cntOffset;
        if (!dst.createVector(DstCapacity, SetZero, 0.0, 0.0)) {
            return false;
        }
        pDst = dst.data<Zyl8u>();
        tinit_zylsRegExpReplace_8u();
        return true;
    }

    void flushData() override {
        freeState(pRegExpState);
        freeState(pReplaceState);
    }

    void parmsToOstrm() override {
        forEachShownText([](const mrString& text) { g_ostrm << text << " "; });
    }

    void parmsToCstrm() override {
        forEachShownText([](const mrString& text) { g_cstrm << text; });
    }

  private:
    template <class Show>
    static void forEachShownText(Show show) {
        show(myPair.source.substr(0, 15));
        show(myPair.pattern.substr(0, 15));
        show(myPair.replace.substr(0, 6));
        show(myPair.option.substr(0, 2));
    }
};

ZY_REG_I(TimchRegExpReplace, zylsRegExpReplace_8u, tinit_zylsRegExpReplace_8u)

}  // namespace
