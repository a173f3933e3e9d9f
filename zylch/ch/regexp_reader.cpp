#include "regexp_reader.h"

#include <algorithm>
#include <cstring>

namespace zylch::regexp {

bool PatternReader::take(unsigned byte) {
    if (peek() != byte) {
        return false;
    }
    ++m_at;
    return true;
}

void PatternReader::skipBlanks() {
    if (!has(optionExtended)) {
        return;
    }
    for (;; ++m_at) {
        if (peek() == '#') {
            while (peek(1) != '\0' && peek(1) != '\n') {
                ++m_at;
            }
        } else if (!isBlank(peek())) {
            return;
        }
    }
}

bool PatternReader::fault(std::uint32_t at) {
    if (m_fault < 0) {
        m_fault = static_cast<int>(at);
    }
    return false;
}

bool PatternReader::quantifier(Quantifier& result) {
    std::uint32_t length = 1;
    switch (peek()) {
        case '*':
            result = {0, None, false};
            break;
        case '+':
            result = {1, None, false};
            break;
        case '?':
            result = {0, 1, false};
            break;
        default:
            if (!braces(result, length)) {
                return false;
            }
    }
    if (result.least > result.most) {
        return fault(m_at);
    }
    m_at += length;
    result.lazy = take('?');
    return true;
}

bool PatternReader::braces(Quantifier& result, std::uint32_t& length) const {
    std::uint32_t at = m_at + 1;
    if (peek() != '{' || !number(at, result.least)) {
        return false;
    }
    result.most = result.least;
    if (m_pattern[at] == ',' && !number(++at, result.most)) {
        result.most = None;
    }
    length = at + 1 - m_at;
    return m_pattern[at] == '}';
}

bool PatternReader::number(std::uint32_t& at, std::uint32_t& value) const {
    // No text is longer than this, so larger numbers mean the same.
    constexpr std::uint64_t most = 0x7FFFFFFF;
    const std::uint32_t from = at;
    std::uint64_t sum = 0;
    for (; isDigit(m_pattern[at]); ++at) {
        sum = std::min(sum * 10 + (m_pattern[at] - '0'), most);
    }
    value = static_cast<std::uint32_t>(sum);
    return at > from;
}

int PatternReader::characterEscape() {
    constexpr char letters[] = "ntrfv";
    constexpr char bytes[] = "\n\t\r\f\v";
    const unsigned letter = peek(1);
    if (letter == 'x') {
        return hexEscape();
    }
    if (letter == '\0' || letter >= 0x80 || isDigit(letter)) {
        return -1;
    }
    const char* known = std::strchr(letters, static_cast<int>(letter));
    if (known == nullptr && isLetter(letter)) {
        return -1;
    }
    m_at += 2;
    return known != nullptr ? bytes[known - letters] : static_cast<int>(letter);
}

int PatternReader::hexEscape() {
    const int high = hexValue(peek(2));
    const int low = high < 0 ? -1 : hexValue(peek(3));
    if (low < 0) {
        return -1;
    }
    m_at += 4;
    return high * 16 + low;
}

bool PatternReader::bracket(CharSet& set) {
    const std::uint32_t from = m_at++;
    const bool negative = take('^');
    while (!take(']')) {
        if (peek() == '\0') {
            return fault(from);
        }
        if (!bracketRange(set)) {
            return false;
        }
    }
    if (has(optionIgnoreCase)) {
        set.addOtherCases();
    }
    if (negative) {
        set.invert();
    }
    return true;
}

// One member, or a range of two. A hyphen next to a class or to the closing bracket is itself.
bool PatternReader::bracketRange(CharSet& set) {
    const std::uint32_t from = m_at;
    int first = -1;
    if (!bracketMember(set, first)) {
        return false;
    }
    if (first < 0 || peek() != '-' || peek(1) == ']' || peek(1) == '\0') {
        return true;
    }
    ++m_at;
    int last = -1;
    if (!bracketMember(set, last)) {
        return false;
    }
    if (last < 0) {
        set.add('-');
        return true;
    }
    if (last < first) {
        return fault(from);
    }
    set.addRange(static_cast<unsigned>(first), static_cast<unsigned>(last));
    return true;
}

// Adds a member. `single` is its byte, or -1 for a class.
bool PatternReader::bracketMember(CharSet& set, int& single) {
    constexpr int backspace = 8;
    const std::uint32_t from = m_at;
    if (peek() != '\\') {
        single = m_pattern[m_at++];
    } else if (CharSet named; namedSet(peek(1), named)) {
        m_at += 2;
        set.add(named);
        single = -1;
        return true;
    } else if (peek(1) == 'b') {
        m_at += 2;
        single = backspace;
    } else {
        single = characterEscape();
    }
    if (single < 0) {
        return fault(from);
    }
    set.add(static_cast<unsigned>(single));
    return true;
}

}  // namespace zylch::regexp
