#pragma once

/// Reads the parts of a pattern that are smaller than a group: quantifiers, escapes, sets in brackets. Holds
/// the place in the pattern and the first fault.

#include <cstdint>

#include "regexp_set.h"
#include "regexp_state.h"

namespace zylch::regexp {

struct Quantifier {
    std::uint32_t least = 1;
    /// None for any number.
    std::uint32_t most = 1;
    bool lazy = false;
};

class PatternReader {
  public:
    /// `pattern` ends in a NUL. Option x leaves out blanks and comments; i adds both cases to sets.
    PatternReader(const char* pattern, std::uint32_t options)
        : m_pattern(reinterpret_cast<const unsigned char*>(pattern)), m_options(options) {}

    bool has(Option option) const { return (m_options & option) != 0; }
    /// The byte at hand or `ahead` of it; NUL at the end. Nothing beyond a NUL may be asked for.
    unsigned peek(std::uint32_t ahead = 0) const { return m_pattern[m_at + ahead]; }
    std::uint32_t at() const { return m_at; }
    void skip(std::uint32_t bytes) { m_at += bytes; }
    bool take(unsigned byte);
    /// With option x, goes on to what is neither blank nor comment.
    void skipBlanks();

    /// Marks the fault; false, so that it can be returned.
    bool fault(std::uint32_t at);
    /// -1 as long as there is none.
    int faultOffset() const { return m_fault; }

    /// False if no quantifier stands here, and for one that is a fault.
    bool quantifier(Quantifier& result);
    /// The byte that the escape at hand stands for; -1, and nothing taken, if there is no such escape.
    int characterEscape();
    /// A set from its opening bracket on; false for a fault.
    bool bracket(CharSet& set);

  private:
    bool braces(Quantifier& result, std::uint32_t& length) const;
    bool number(std::uint32_t& at, std::uint32_t& value) const;
    int hexEscape();
    bool bracketRange(CharSet& set);
    bool bracketMember(CharSet& set, int& single);

    const unsigned char* m_pattern;
    std::uint32_t m_options;
    std::uint32_t m_at = 0;
    int m_fault = -1;
};

}  // namespace zylch::regexp
