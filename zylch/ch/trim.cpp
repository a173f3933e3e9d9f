/// Trimming of one byte value, or of the bytes of a set.

#include "byte_set.h"
#include "zylch.h"

#define ZYL_KERNELS "trim.inc"
#include "for_each_path.h"

namespace {

using namespace zylch;

constexpr Forms FirstOther{plain::firstOther, sse2::firstOther, avx2::firstOther};
constexpr Forms LastOther{plain::lastOther, sse2::lastOther, avx2::lastOther};
constexpr Forms FirstOutside{plain::firstOutside, sse2::firstOutside, avx2::firstOutside};
constexpr Forms LastOutside{plain::lastOutside, sse2::lastOutside, avx2::lastOutside};

/// What is left of a text: [begin, end).
struct Rest {
    int begin;
    int end;
};

Rest trimmed(const Zyl8u* src, int len, Zyl8u value) {
    const int begin = FirstOther.forLength(len)(src, len, value);
    return begin < 0 ? Rest{0, 0} : Rest{begin, LastOther.forLength(len)(src, len, value) + 1};
}

int firstKept(const Zyl8u* src, int len, const ByteSet& set) {
    return (set.isSmall() ? FirstOutside.forLength(len) : FirstOutside.ofPlainPath())(src, len, set);
}

int lastKept(const Zyl8u* src, int len, const ByteSet& set) {
    return (set.isSmall() ? LastOutside.forLength(len) : LastOutside.ofPlainPath())(src, len, set);
}

Rest trimmedStart(const Zyl8u* src, int len, const ByteSet& set) {
    const int begin = firstKept(src, len, set);
    return begin < 0 ? Rest{0, 0} : Rest{begin, len};
}

Rest trimmedEnd(const Zyl8u* src, int len, const ByteSet& set) { return {0, lastKept(src, len, set) + 1}; }

Rest trimmedBoth(const Zyl8u* src, int len, const ByteSet& set) {
    const int begin = firstKept(src, len, set);
    return begin < 0 ? Rest{0, 0} : Rest{begin, lastKept(src, len, set) + 1};
}

void putRest(const Zyl8u* src, Rest rest, Zyl8u* dst, int* lenDst) {
    *lenDst = rest.end - rest.begin;
    std::memmove(dst, src + rest.begin, static_cast<std::size_t>(*lenDst));
}

int trimAny(Rest (*trim)(const Zyl8u*, int, const ByteSet&), const Zyl8u* src, int len, const Zyl8u* set,
            int lenSet, Zyl8u* dst, int* lenDst) {
    if (src == nullptr || set == nullptr || dst == nullptr || lenDst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0 || lenSet < 0) {
        return zylStsSizeErr;
    }
    putRest(src, trim(src, len, ByteSet(set, lenSet)), dst, lenDst);
    return zylStsNoErr;
}

}  // namespace

int zylsTrimC_8u(const Zyl8u* src, int len, Zyl8u value, Zyl8u* dst, int* lenDst) {
    if (src == nullptr || dst == nullptr || lenDst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0) {
        return zylStsSizeErr;
    }
    putRest(src, trimmed(src, len, value), dst, lenDst);
    return zylStsNoErr;
}

int zylsTrimC_8u_I(Zyl8u* data, int* len, Zyl8u value) {
    if (len == nullptr) {
        return zylStsNullPtrErr;
    }
    return zylsTrimC_8u(data, *len, value, data, len);
}

int zylsTrimCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst, int* lenDst) {
    return trimAny(trimmedBoth, src, len, set, lenSet, dst, lenDst);
}

int zylsTrimStartCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst, int* lenDst) {
    return trimAny(trimmedStart, src, len, set, lenSet, dst, lenDst);
}

int zylsTrimEndCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst, int* lenDst) {
    return trimAny(trimmedEnd, src, len, set, lenSet, dst, lenDst);
}
