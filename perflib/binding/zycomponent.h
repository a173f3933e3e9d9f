#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "zytype.h"

/// Access to single components of typed data, the one place where a zyType becomes a C type. Data may be
/// misaligned on purpose, so they are moved as bytes.

/// Calls `body` with a value of the C type of one component of `type`; not at all for a type outside the
/// vocabulary.
template <class Body>
void zyWithComponent(zyType type, Body body) {
    switch (zyInfoOf(type).m_type & ~zyTypeComplex) {
        case zy8u:
            return body(std::uint8_t());
        case zy16u:
            return body(std::uint16_t());
        case zy32u:
            return body(std::uint32_t());
        case zy64u:
            return body(std::uint64_t());
        case zy8s:
            return body(std::int8_t());
        case zy16s:
            return body(std::int16_t());
        case zy32s:
            return body(std::int32_t());
        case zy64s:
            return body(std::int64_t());
        case zy32f:
            return body(float());
        case zy64f:
            return body(double());
        default:
            return;
    }
}

/// The number as a T: cut to the range of 64 bits, truncated, and narrowed to the low bits. What is no number
/// is 0.
template <class T>
T zyTruncated(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else {
        using Wide = std::conditional_t<std::is_same_v<T, std::uint64_t>, std::uint64_t, std::int64_t>;
        using Limits = std::numeric_limits<Wide>;
        constexpr double end = std::is_signed_v<Wide> ? zyTwoTo63 : 2 * zyTwoTo63;
        if (value >= end) {
            return static_cast<T>(Limits::max());
        }
        if (!(value > static_cast<double>(Limits::min()))) {
            return value < 0 ? static_cast<T>(Limits::min()) : T();
        }
        return static_cast<T>(static_cast<Wide>(value));
    }
}

template <class T>
T zyLoad(const void* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
void zyStore(void* at, double value) {
    const T component = zyTruncated<T>(value);
    std::memcpy(at, &component, sizeof component);
}

template <class T>
void zyStore(void* at, long long value) {
    const T component = static_cast<T>(value);
    std::memcpy(at, &component, sizeof component);
}
