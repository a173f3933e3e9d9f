#include "job/mroutputs.h"

#include "stream/mrcstream.h"
#include "stream/mrostream.h"

namespace {

mrFileList* const lists[] = {&g_ostrm, &g_cstrm, &g_qstrm, &g_ustrm};

/// A run that is resumed has the same files, or no sizes of another run are of use.
bool areOfThisRun(const std::vector<long long>& sizes) { return sizes.size() == mrOutputSizes().size(); }

}  // namespace

std::vector<long long> mrOutputSizes() {
    std::vector<long long> sizes;
    for (const mrFileList* list : lists) {
        list->addSizes(sizes);
    }
    return sizes;
}

void mrCutOutputs(const std::vector<long long>& sizes) {
    if (areOfThisRun(sizes)) {
        auto size = sizes.begin();
        for (mrFileList* list : lists) {
            list->cutBack(size);
        }
    }
}

void mrCutOutputsToLost(const std::vector<long long>& sizes) {
    g_cstrm.cutHalfLines();
    g_qstrm.cutHalfLines();
    if (areOfThisRun(sizes)) {
        std::vector<long long> summaries;
        g_ustrm.addSizes(summaries);
        auto size = sizes.end() - static_cast<std::ptrdiff_t>(summaries.size());
        g_ustrm.cutBack(size);
    }
}
