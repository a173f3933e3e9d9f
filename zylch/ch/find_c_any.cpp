/// Search of any byte of a set.

#include "byte_set.h"
#include "zylch.h"

#define ZYL_KERNELS "find_c_any.inc"
#include "for_each_path.h"

namespace {

using namespace zylch;

constexpr Forms FirstOfSet{plain::firstOfSet, sse2::firstOfSet, avx2::firstOfSet};
constexpr Forms LastOfSet{plain::lastOfSet, sse2::lastOfSet, avx2::lastOfSet};

int find(decltype(FirstOfSet) search, const Zyl8u* src, int len, const Zyl8u* set, int lenSet, int* index) {
    if (src == nullptr || set == nullptr || index == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0 || lenSet < 0) {
        return zylStsSizeErr;
    }
    const ByteSet bytes(set, lenSet);
    *index = (bytes.isSmall() ? search.forLength(len) : search.ofPlainPath())(src, len, bytes);
    return zylStsNoErr;
}

}  // namespace

int zylsFindCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, int* index) {
    return find(FirstOfSet, src, len, set, lenSet, index);
}

int zylsFindRevCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, int* index) {
    return find(LastOfSet, src, len, set, lenSet, index);
}
