/// Search in texts that end in a NUL. The NUL is no part of the text and is never found.

#include <climits>

#include "zylch.h"

#define ZYL_KERNELS "find_z.inc"
#include "for_each_path.h"

namespace {

constexpr zylch::Forms FirstOrEnd{zylch::plain::firstOrEnd, zylch::sse2::firstOrEnd, zylch::avx2::firstOrEnd};

}  // namespace

int zylsFind_Z_8u(const Zyl8u* src, const Zyl8u* find, int* index) {
    if (src == nullptr || find == nullptr || index == nullptr) {
        return zylStsNullPtrErr;
    }
    const std::size_t len = FirstOrEnd(src, 0);
    const std::size_t lenFind = FirstOrEnd(find, 0);
    if (len > INT_MAX || lenFind > INT_MAX) {
        return zylStsSizeErr;
    }
    return zylsFind_8u(src, static_cast<int>(len), find, static_cast<int>(lenFind), index);
}

int zylsFindC_Z_8u(const Zyl8u* src, Zyl8u value, int* index) {
    if (src == nullptr || index == nullptr) {
        return zylStsNullPtrErr;
    }
    const std::size_t place = FirstOrEnd(src, value);
    if (place > INT_MAX) {
        return zylStsSizeErr;
    }
    *index = src[place] != 0 ? static_cast<int>(place) : -1;
    return zylStsNoErr;
}
