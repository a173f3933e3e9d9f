#include "machine/mrcpufeatures.h"
#include "session/options.h"
#include "session/optionwords.h"

namespace {

/// `text`, unless no suite has registered the library.
mrString ifBound(mrString text) {
    return zylEnvironment == nullptr ? "ignored: <zylcore> is not included before <zy> in test files" : text;
}

}  // namespace

mrString T_info(mrString arg) {
    return ifBound(mrCpuFeatures::cpuFeatures(arg) == 0
                       ? "ignored: incorrect CPU features"
                       : mrPhrase("call zylSetCpuFeatures ( Zyl64u ", arg, " )"));
}

void T_apply(mrString arg, mrSession*) { s_cpuFeature = mrCpuFeatures::cpuFeatures(arg); }

mrString N_info(mrString arg) { return ifBound(mrNumberInfo(arg, "call zylSetNumThreads(", ")", "threads")); }

void N_apply(mrString arg, mrSession*) { s_numThreads = mrNumber(arg); }
