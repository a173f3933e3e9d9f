#pragma once

/// A block of bytes as each code path sees it: the few operations that the kernels are written in. The plain
/// block is one byte wide, so that the same kernel text becomes an ordinary loop over bytes.
///
/// `equal` gives 0xFF for each equal byte, else 0; `bits` gathers the top bit of each byte, the first byte in
/// bit 0; `minus` wraps around. `load` and `store` take any address.

#include <immintrin.h>

#include "zyltypes.h"

#define ZYL_OPERATION(features) [[gnu::target(features), gnu::always_inline]] static inline

namespace zylch::plain {

struct Block {
    using Vec = Zyl8u;
    static constexpr int width = 1;

    static constexpr Vec load(const Zyl8u* p) { return *p; }
    static constexpr void store(Zyl8u* p, Vec v) { *p = v; }
    static constexpr Vec all(Zyl8u v) { return v; }
    static constexpr Vec equal(Vec a, Vec b) { return a == b ? 0xFF : 0; }
    static constexpr Vec both(Vec a, Vec b) { return static_cast<Vec>(a & b); }
    static constexpr Vec either(Vec a, Vec b) { return static_cast<Vec>(a | b); }
    static constexpr Vec flip(Vec a, Vec b) { return static_cast<Vec>(a ^ b); }
    static constexpr Vec minus(Vec a, Vec b) { return static_cast<Vec>(a - b); }
    static constexpr Vec smaller(Vec a, Vec b) { return a < b ? a : b; }
    static constexpr unsigned bits(Vec v) { return static_cast<unsigned>(v >> 7); }
};

}  // namespace zylch::plain

namespace zylch::sse2 {

struct Block {
    using Vec = __m128i;
    static constexpr int width = 16;

    ZYL_OPERATION("sse2") Vec load(const Zyl8u* p) {
        return _mm_loadu_si128(reinterpret_cast<const Vec*>(p));
    }
    ZYL_OPERATION("sse2") void store(Zyl8u* p, Vec v) { _mm_storeu_si128(reinterpret_cast<Vec*>(p), v); }
    ZYL_OPERATION("sse2") Vec all(Zyl8u v) { return _mm_set1_epi8(static_cast<char>(v)); }
    ZYL_OPERATION("sse2") Vec equal(Vec a, Vec b) { return _mm_cmpeq_epi8(a, b); }
    ZYL_OPERATION("sse2") Vec both(Vec a, Vec b) { return _mm_and_si128(a, b); }
    ZYL_OPERATION("sse2") Vec either(Vec a, Vec b) { return _mm_or_si128(a, b); }
    ZYL_OPERATION("sse2") Vec flip(Vec a, Vec b) { return _mm_xor_si128(a, b); }
    ZYL_OPERATION("sse2") Vec minus(Vec a, Vec b) { return _mm_sub_epi8(a, b); }
    ZYL_OPERATION("sse2") Vec smaller(Vec a, Vec b) { return _mm_min_epu8(a, b); }
    ZYL_OPERATION("sse2") unsigned bits(Vec v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }
};

}  // namespace zylch::sse2

namespace zylch::avx2 {

struct Block {
    using Vec = __m256i;
    static constexpr int width = 32;

    ZYL_OPERATION("avx2") Vec load(const Zyl8u* p) {
        return _mm256_loadu_si256(reinterpret_cast<const Vec*>(p));
    }
    ZYL_OPERATION("avx2") void store(Zyl8u* p, Vec v) { _mm256_storeu_si256(reinterpret_cast<Vec*>(p), v); }
    ZYL_OPERATION("avx2") Vec all(Zyl8u v) { return _mm256_set1_epi8(static_cast<char>(v)); }
    ZYL_OPERATION("avx2") Vec equal(Vec a, Vec b) { return _mm256_cmpeq_epi8(a, b); }
    ZYL_OPERATION("avx2") Vec both(Vec a, Vec b) { return _mm256_and_si256(a, b); }
    ZYL_OPERATION("avx2") Vec either(Vec a, Vec b) { return _mm256_or_si256(a, b); }
    ZYL_OPERATION("avx2") Vec flip(Vec a, Vec b) { return _mm256_xor_si256(a, b); }
    ZYL_OPERATION("avx2") Vec minus(Vec a, Vec b) { return _mm256_sub_epi8(a, b); }
    ZYL_OPERATION("avx2") Vec smaller(Vec a, Vec b) { return _mm256_min_epu8(a, b); }
    ZYL_OPERATION("avx2") unsigned bits(Vec v) { return static_cast<unsigned>(_mm256_movemask_epi8(v)); }
};

}  // namespace zylch::avx2

#undef ZYL_OPERATION
