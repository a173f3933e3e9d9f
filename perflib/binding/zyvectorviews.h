#pragma once

#include <cstdint>

#include "zytype.h"

/// A complex element as the library stores it.
template <class T>
struct zyComplex {
    T re;
    T im;
};

/// Typed pointers to the elements of a vector, for reading in a debugger: the one of the vector's type points
/// to the data, the others are null. No code uses them.
struct zyVectorViews {
    /// Points to `data` of `type`; to nothing for null.
    void set(zyType type, void* data);

    std::uint8_t* m_8u = nullptr;
    std::uint16_t* m_16u = nullptr;
    std::uint32_t* m_32u = nullptr;
    std::uint64_t* m_64u = nullptr;
    std::int8_t* m_8s = nullptr;
    std::int16_t* m_16s = nullptr;
    std::int32_t* m_32s = nullptr;
    std::int64_t* m_64s = nullptr;
    float* m_32f = nullptr;
    double* m_64f = nullptr;
    zyComplex<std::uint16_t>* m_16uc = nullptr;
    zyComplex<std::int8_t>* m_8sc = nullptr;
    zyComplex<std::int16_t>* m_16sc = nullptr;
    zyComplex<std::int32_t>* m_32sc = nullptr;
    zyComplex<std::int64_t>* m_64sc = nullptr;
    zyComplex<float>* m_32fc = nullptr;
    zyComplex<double>* m_64fc = nullptr;
};
