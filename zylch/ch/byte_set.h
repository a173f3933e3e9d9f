#pragma once

/// A set of byte values, made from the list that a caller gives.

#include "zyltypes.h"

namespace zylch {

class ByteSet {
  public:
    /// Up to this many different values are compared one by one with a whole block; beyond it a look-up byte
    /// by byte is faster.
    static constexpr int few = 16;

    /// `list` may name a value more than once, which counts as once.
    ByteSet(const Zyl8u* list, int len) {
        for (int i = 0; i < len; ++i) {
            add(list[i]);
        }
    }

    bool has(Zyl8u value) const { return (m_bits[value / 32] >> (value % 32) & 1) != 0; }
    bool isSmall() const { return m_count <= few; }
    /// The number of different values, and the values themselves while the set is small.
    int count() const { return m_count; }
    Zyl8u value(int i) const { return m_values[i]; }

  private:
    void add(Zyl8u value) {
        if (has(value)) {
            return;
        }
        m_bits[value / 32] |= 1U << (value % 32);
        if (m_count < few) {
            m_values[m_count] = value;
        }
        ++m_count;
    }

    Zyl32u m_bits[8] = {};
    int m_count = 0;
    Zyl8u m_values[few] = {};
};

}  // namespace zylch
