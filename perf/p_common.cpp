// What all suites share: the walk over vector lengths and the list of hot functions.

#include "p_common.h"

#include "job/mrregistry.h"

namespace {

#define ZY_HOT(F) [[maybe_unused]] const bool hot_##F = mrRegHotFunction(#F) != 0;

ZY_HOT(zylsCompare_8u)
ZY_HOT(zylsEqual_8u)
ZY_HOT(zylsFind_8u)
ZY_HOT(zylsFindC_8u)
ZY_HOT(zylsFindRev_8u)
ZY_HOT(zylsFindRevC_8u)
ZY_HOT(zylsHash_8u32u)
ZY_HOT(zylsReplaceC_8u)

}  // namespace

mrStepIterator<int> g_vectorLength;

namespace {

/// The session calls this when it sets up parameters: at static initialisation the rest of the program can't
/// be relied on.
void regTestParameters() {
    mrRegParm(g_vectorLength);
    g_vectorLength.reset();
    g_vectorLength.setName("VectorLength");
    g_vectorLength.setSteps(32, 32768, OprtnMul, 4);
}

[[maybe_unused]] const bool regParms = mrRegParmFunc(regTestParameters) != 0;

}  // namespace
