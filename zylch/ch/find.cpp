/// Search of a text in a text.

#include "zylch.h"

#define ZYL_KERNELS "find.inc"
#include "for_each_path.h"

namespace {

using namespace zylch;

constexpr Forms FirstText{plain::firstText, sse2::firstText, avx2::firstText};
constexpr Forms LastText{plain::lastText, sse2::lastText, avx2::lastText};

/// `ifEmpty`: where an empty text is found.
int search(decltype(FirstText) kernel, const Zyl8u* src, int len, const Zyl8u* find, int lenFind, int ifEmpty,
           int* index) {
    if (src == nullptr || find == nullptr || index == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0 || lenFind < 0) {
        return zylStsSizeErr;
    }
    if (lenFind == 0) {
        *index = ifEmpty;
    } else {
        *index = lenFind <= len ? kernel.forLength(len - lenFind + 1)(src, len, find, lenFind) : -1;
    }
    return zylStsNoErr;
}

}  // namespace

int zylsFind_8u(const Zyl8u* src, int len, const Zyl8u* find, int lenFind, int* index) {
    return search(FirstText, src, len, find, lenFind, 0, index);
}

int zylsFindRev_8u(const Zyl8u* src, int len, const Zyl8u* find, int lenFind, int* index) {
    return search(LastText, src, len, find, lenFind, len, index);
}
