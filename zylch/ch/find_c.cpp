/// Search of one byte value.

#include "zylch.h"

#define ZYL_KERNELS "find_c.inc"
#include "for_each_path.h"

namespace {

using namespace zylch;

constexpr Forms FirstByte{plain::firstByte, sse2::firstByte, avx2::firstByte};
constexpr Forms LastByte{plain::lastByte, sse2::lastByte, avx2::lastByte};

int find(decltype(FirstByte) search, const Zyl8u* src, int len, Zyl8u value, int* index) {
    if (src == nullptr || index == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0) {
        return zylStsSizeErr;
    }
    *index = search.forLength(len)(src, len, value);
    return zylStsNoErr;
}

}  // namespace

int zylsFindC_8u(const Zyl8u* src, int len, Zyl8u value, int* index) {
    return find(FirstByte, src, len, value, index);
}

int zylsFindRevC_8u(const Zyl8u* src, int len, Zyl8u value, int* index) {
    return find(LastByte, src, len, value, index);
}
