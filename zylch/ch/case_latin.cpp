/// Upper and lower case of Latin-1 text.

#include "zylch.h"

#define ZYL_KERNELS "case_latin.inc"
#include "for_each_path.h"

namespace {

constexpr zylch::Forms ChangeCase{zylch::plain::changeCase, zylch::sse2::changeCase, zylch::avx2::changeCase};

int change(const Zyl8u* src, Zyl8u* dst, int len, Zyl8u firstLetter) {
    if (src == nullptr || dst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0) {
        return zylStsSizeErr;
    }
    ChangeCase.forLength(len)(src, dst, len, firstLetter);
    return zylStsNoErr;
}

}  // namespace

int zylsUppercaseLatin_8u_I(Zyl8u* data, int len) { return change(data, data, len, 'a'); }

int zylsLowercaseLatin_8u_I(Zyl8u* data, int len) { return change(data, data, len, 'A'); }

int zylsUppercaseLatin_8u(const Zyl8u* src, Zyl8u* dst, int len) { return change(src, dst, len, 'a'); }

int zylsLowercaseLatin_8u(const Zyl8u* src, Zyl8u* dst, int len) { return change(src, dst, len, 'A'); }
