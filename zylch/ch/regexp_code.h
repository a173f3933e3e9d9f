#pragma once

/// Writes the program of a regular expression, or, without memory, only counts its words.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "regexp_state.h"

namespace zylch::regexp {

class CodeWriter {
  public:
    using Operands = std::initializer_list<std::uint32_t>;

    /// `code` has room for everything that will be written, or is null.
    explicit CodeWriter(std::uint32_t* code) : m_code(code) {}

    std::uint32_t size() const { return m_size; }
    /// Words that were in use at most; more than the size after a cut.
    std::uint32_t room() const { return m_room; }

    void put(Op op, Operands operands = {}) {
        const std::uint32_t at = m_size;
        grow(words(operands));
        store(at, op, operands);
    }

    /// Puts an instruction in front of what stands at `at`, which moves up. Distances stay right as long as
    /// none reaches across `at`.
    void insert(std::uint32_t at, Op op, Operands operands) {
        const std::uint32_t count = words(operands);
        if (m_code != nullptr) {
            std::memmove(m_code + at + count, m_code + at, (m_size - at) * sizeof(std::uint32_t));
        }
        grow(count);
        store(at, op, operands);
    }

    /// Takes back everything from `size` on.
    void cut(std::uint32_t size) { m_size = size; }

    std::uint32_t operand(std::uint32_t at, std::uint32_t index) const {
        return m_code != nullptr ? m_code[at + index] : None;
    }
    void setOperand(std::uint32_t at, std::uint32_t index, std::uint32_t value) {
        if (m_code != nullptr) {
            m_code[at + index] = value;
        }
    }
    /// Makes operand `index` of the instruction at `at` lead to the end of the code.
    void leadHere(std::uint32_t at, std::uint32_t index) { setOperand(at, index, m_size - at); }

  private:
    static std::uint32_t words(Operands operands) { return 1 + static_cast<std::uint32_t>(operands.size()); }

    void grow(std::uint32_t count) {
        m_size += count;
        m_room = std::max(m_room, m_size);
    }
    void store(std::uint32_t at, Op op, Operands operands) {
        if (m_code == nullptr) {
            return;
        }
        m_code[at] = static_cast<std::uint32_t>(op);
        for (const std::uint32_t operand : operands) {
            m_code[++at] = operand;
        }
    }

    std::uint32_t* m_code;
    std::uint32_t m_size = 0;
    std::uint32_t m_room = 0;
};

}  // namespace zylch::regexp
