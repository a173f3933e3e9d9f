/// Replacement of one byte value by another.

#include "zylch.h"

#define ZYL_KERNELS "replace_c.inc"
#include "for_each_path.h"

namespace {

constexpr zylch::Forms ReplaceBytes{zylch::plain::replaceBytes, zylch::sse2::replaceBytes,
                                    zylch::avx2::replaceBytes};

}  // namespace

int zylsReplaceC_8u(const Zyl8u* src, Zyl8u* dst, int len, Zyl8u oldValue, Zyl8u newValue) {
    if (src == nullptr || dst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0) {
        return zylStsSizeErr;
    }
    ReplaceBytes.forLength(len)(src, dst, len, oldValue, newValue);
    return zylStsNoErr;
}
