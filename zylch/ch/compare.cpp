/// Comparison of texts of equal length.

#include "zylch.h"

#define ZYL_KERNELS "compare.inc"
#include "for_each_path.h"

namespace {

using namespace zylch;

constexpr Forms FirstDifference{plain::firstDifference, sse2::firstDifference, avx2::firstDifference};
constexpr Forms FirstDifferenceInLowerCase{
    plain::firstDifferenceInLowerCase, sse2::firstDifferenceInLowerCase, avx2::firstDifferenceInLowerCase};

int checkTexts(const Zyl8u* a, const Zyl8u* b, int len, const int* result) {
    if (a == nullptr || b == nullptr || result == nullptr) {
        return zylStsNullPtrErr;
    }
    return len < 0 ? zylStsSizeErr : zylStsNoErr;
}

int lowerCase(Zyl8u value) { return plain::CaseChange::from('A')(value); }

}  // namespace

int zylsCompare_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result) {
    const int status = checkTexts(a, b, len, result);
    if (status != zylStsNoErr) {
        return status;
    }
    const int place = FirstDifference.forLength(len)(a, b, len);
    *result = place < 0 ? 0 : a[place] - b[place];
    return zylStsNoErr;
}

int zylsEqual_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result) {
    const int status = checkTexts(a, b, len, result);
    if (status != zylStsNoErr) {
        return status;
    }
    *result = FirstDifference.forLength(len)(a, b, len) < 0 ? 1 : 0;
    return zylStsNoErr;
}

int zylsCompareIgnoreCaseLatin_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result) {
    const int status = checkTexts(a, b, len, result);
    if (status != zylStsNoErr) {
        return status;
    }
    const int place = FirstDifferenceInLowerCase.forLength(len)(a, b, len);
    *result = place < 0 ? 0 : lowerCase(a[place]) - lowerCase(b[place]);
    return zylStsNoErr;
}
