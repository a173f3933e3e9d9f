/// Conversion between UTF-8 and UTF-16. Characters go one at a time; runs of ASCII, which most texts consist
/// of, go in blocks as wide as the code path allows. All paths give the same results: a block is taken only
/// if source and destination both hold it whole, and what is left is done by the plain loop.

#include <emmintrin.h>
#include <immintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "paths.h"
#include "zylch.h"

namespace {

// Texts may stand at any address, so their units go through memcpy, which is a plain move in the code.

template <class Unit>
Unit at(const Unit* text, int i) {
    Unit unit;
    std::memcpy(&unit, text + i, sizeof unit);
    return unit;
}

template <class Unit>
void put(Unit* text, int i, std::uint32_t value) {
    const auto unit = static_cast<Unit>(value);
    std::memcpy(text + i, &unit, sizeof unit);
}

// A run converts the ASCII elements at the head of `src`, `n` at most, and returns how many they were.

template <class From, class To>
int runPlain(const From* src, To* dst, int n) {
    int done = 0;
    for (; done < n && at(src, done) < 0x80; ++done) {
        put(dst, done, at(src, done));
    }
    return done;
}

[[gnu::target("sse2")]] int widenSse2(const Zyl8u* src, Zyl16u* dst, int n) {
    const __m128i zero = _mm_setzero_si128();
    int done = 0;
    for (; n - done >= 16; done += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + done));
        if (_mm_movemask_epi8(bytes) != 0) {
            break;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + done), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + done + 8), _mm_unpackhi_epi8(bytes, zero));
    }
    return done + runPlain(src + done, dst + done, n - done);
}

[[gnu::target("avx2")]] int widenAvx2(const Zyl8u* src, Zyl16u* dst, int n) {
    int done = 0;
    for (; n - done >= 32; done += 32) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + done));
        if (_mm256_movemask_epi8(bytes) != 0) {
            break;
        }
        const __m256i low = _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes));
        const __m256i high = _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + done), low);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + done + 16), high);
    }
    return done + widenSse2(src + done, dst + done, n - done);
}

[[gnu::target("sse2")]] int narrowSse2(const Zyl16u* src, Zyl8u* dst, int n) {
    const __m128i beyondAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i zero = _mm_setzero_si128();
    int done = 0;
    for (; n - done >= 16; done += 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + done));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + done + 8));
        const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), beyondAscii);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, zero)) != 0xFFFF) {
            break;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + done), _mm_packus_epi16(low, high));
    }
    return done + runPlain(src + done, dst + done, n - done);
}

[[gnu::target("avx2")]] int narrowAvx2(const Zyl16u* src, Zyl8u* dst, int n) {
    const __m256i beyondAscii = _mm256_set1_epi16(static_cast<short>(0xFF80));
    int done = 0;
    for (; n - done >= 32; done += 32) {
        const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + done));
        const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + done + 16));
        if (_mm256_testz_si256(_mm256_or_si256(low, high), beyondAscii) == 0) {
            break;
        }
        // The pack works on each 128-bit half for itself; the permutation puts the quarters back in order.
        const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xD8);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + done), packed);
    }
    return done + narrowSse2(src + done, dst + done, n - done);
}

constexpr zylch::Forms Widen{runPlain<Zyl8u, Zyl16u>, widenSse2, widenAvx2};
constexpr zylch::Forms Narrow{runPlain<Zyl16u, Zyl8u>, narrowSse2, narrowAvx2};

bool isHighSurrogate(std::uint32_t code) { return (code & 0xFFFFFC00U) == 0xD800U; }

bool isLowSurrogate(std::uint32_t code) { return (code & 0xFFFFFC00U) == 0xDC00U; }

struct Character {
    std::uint32_t code;
    /// Elements of the source, 0 if they are no character.
    int length;
};

int lengthByFirstByte(Zyl8u first) {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// Overlong forms of two bytes and first bytes of no character are told by the first byte already.
bool inRangeOf(std::uint32_t code, int length) {
    if (length == 4) {
        return code >= 0x10000U && code <= 0x10FFFFU;
    }
    return length < 3 || code >= 0x800U;
}

Character decode(const Zyl8u* src, int len) {
    constexpr std::uint32_t FirstBits[5] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const int length = lengthByFirstByte(src[0]);
    if (length > len) {
        return {0, 0};
    }
    std::uint32_t code = src[0] & FirstBits[length];
    for (int i = 1; i < length; ++i) {
        if ((src[i] & 0xC0) != 0x80) {
            return {0, 0};
        }
        code = (code << 6) | (src[i] & 0x3FU);
    }
    return {code, inRangeOf(code, length) ? length : 0};
}

Character decode(const Zyl16u* src, int len) {
    const std::uint32_t first = at(src, 0);
    if (len > 1 && isHighSurrogate(first) && isLowSurrogate(at(src, 1))) {
        return {0x10000U + ((first & 0x3FFU) << 10) + (at(src, 1) & 0x3FFU), 2};
    }
    return {first, 1};
}

int encodedLength(std::uint32_t code, const Zyl16u*) { return code < 0x10000U ? 1 : 2; }

int encodedLength(std::uint32_t code, const Zyl8u*) {
    if (code < 0x800U) {
        return code < 0x80U ? 1 : 2;
    }
    return code < 0x10000U ? 3 : 4;
}

void encode(std::uint32_t code, Zyl16u* dst, int length) {
    if (length == 1) {
        put(dst, 0, code);
        return;
    }
    put(dst, 0, 0xD800U + ((code - 0x10000U) >> 10));
    put(dst, 1, 0xDC00U + (code & 0x3FFU));
}

void encode(std::uint32_t code, Zyl8u* dst, int length) {
    constexpr std::uint32_t FirstMark[5] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    for (int i = length - 1; i > 0; --i) {
        dst[i] = static_cast<Zyl8u>(0x80U | (code & 0x3FU));
        code >>= 6;
    }
    dst[0] = static_cast<Zyl8u>(FirstMark[length] | code);
}

// The two halves of a pair, coded as three bytes each, are no UTF-8: joined they would read as one character
// of four bytes and not come back as they were.
bool completesPair(std::uint32_t code, const Zyl16u* dst, int written) {
    return isLowSurrogate(code) && written > 0 && isHighSurrogate(at(dst, written - 1));
}

bool completesPair(std::uint32_t, const Zyl8u*, int) { return false; }

struct Counts {
    int consumed = 0;
    int written = 0;
};

template <class From, class To>
int convertCharacter(const From* src, int lenSrc, To* dst, int lenDst, Counts& counts) {
    const Character character = decode(src + counts.consumed, lenSrc - counts.consumed);
    if (character.length == 0 || completesPair(character.code, dst, counts.written)) {
        return zylStsBadArgErr;
    }
    const int length = encodedLength(character.code, dst);
    if (length > lenDst - counts.written) {
        return zylStsNoRoomNote;
    }
    encode(character.code, dst + counts.written, length);
    counts.consumed += character.length;
    counts.written += length;
    return zylStsNoErr;
}

template <class From, class To>
int convert(const From* src, int* lenSrc, To* dst, int* lenDst,
            const zylch::Forms<int, const From*, To*, int>& runOfAscii) {
    Counts counts;
    int status = zylStsNoErr;
    while (status == zylStsNoErr && counts.consumed < *lenSrc) {
        const From* head = src + counts.consumed;
        const int atMost = std::min(*lenSrc - counts.consumed, *lenDst - counts.written);
        if (at(head, 0) < 0x80 && atMost > 0) {
            const int run = runOfAscii(head, dst + counts.written, atMost);
            counts.consumed += run;
            counts.written += run;
        } else {
            status = convertCharacter(src, *lenSrc, dst, *lenDst, counts);
        }
    }
    *lenSrc = counts.consumed;
    *lenDst = counts.written;
    return status;
}

int check(const void* src, const int* lenSrc, const void* dst, const int* lenDst, int flag) {
    if (src == nullptr || lenSrc == nullptr || dst == nullptr || lenDst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (*lenSrc < 0 || *lenDst < 0) {
        return zylStsSizeErr;
    }
    return flag == 0 ? zylStsNoErr : zylStsBadArgErr;
}

}  // namespace

int zylsConvertUTF_8u16u(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst, int flag) {
    const int status = check(src, lenSrc, dst, lenDst, flag);
    return status != zylStsNoErr ? status : convert(src, lenSrc, dst, lenDst, Widen);
}

int zylsConvertUTF_16u8u(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst, int flag) {
    const int status = check(src, lenSrc, dst, lenDst, flag);
    return status != zylStsNoErr ? status : convert(src, lenSrc, dst, lenDst, Narrow);
}
