#pragma once

/// Sets of bytes, and the classes of characters that patterns name. Letters are the 26 Latin ones; bytes of
/// the upper half are neither letters nor blanks, so that parts of UTF-8 characters are never taken for any.

#include <cstdint>

#include "regexp_state.h"

namespace zylch::regexp {

constexpr bool isLower(unsigned byte) { return byte - 'a' < 26U; }
constexpr bool isUpper(unsigned byte) { return byte - 'A' < 26U; }
constexpr bool isLetter(unsigned byte) { return isLower(byte | 0x20U); }
constexpr bool isDigit(unsigned byte) { return byte - '0' < 10U; }
constexpr bool isWord(unsigned byte) { return isLetter(byte) || isDigit(byte) || byte == '_'; }
constexpr bool isBlank(unsigned byte) { return byte == ' ' || byte - '\t' < 5U; }
constexpr bool isLineBreak(unsigned byte) { return byte == '\n' || byte == '\r'; }
constexpr unsigned lowerCase(unsigned byte) { return isUpper(byte) ? byte + 0x20U : byte; }

/// The value of a hexadecimal digit, or -1.
constexpr int hexValue(unsigned byte) {
    if (isDigit(byte)) {
        return static_cast<int>(byte - '0');
    }
    const unsigned lower = byte | 0x20U;
    return lower - 'a' < 6U ? static_cast<int>(lower - 'a' + 10U) : -1;
}

struct CharSet {
    std::uint32_t words[SetWords] = {};

    bool has(unsigned byte) const { return (words[byte / 32] >> (byte % 32) & 1U) != 0; }
    void add(unsigned byte) { words[byte / 32] |= 1U << (byte % 32); }
    void addRange(unsigned first, unsigned last) {
        for (unsigned byte = first; byte <= last; ++byte) {
            add(byte);
        }
    }
    void add(const CharSet& other) {
        for (std::uint32_t i = 0; i < SetWords; ++i) {
            words[i] |= other.words[i];
        }
    }
    void invert() {
        for (std::uint32_t& word : words) {
            word = ~word;
        }
    }
    /// Adds the other case of every letter in the set.
    void addOtherCases() {
        for (unsigned byte = 'a'; byte <= 'z'; ++byte) {
            const unsigned upper = byte - 0x20U;
            if (!has(byte) && !has(upper)) {
                continue;
            }
            add(byte);
            add(upper);
        }
    }
};

/// Fills `set` with the class that an escape names: d, w, s or the opposites D, W, S. False for other
/// letters.
inline bool namedSet(unsigned letter, CharSet& set) {
    bool (*const belongs)(unsigned) = lowerCase(letter) == 'd'   ? +[](unsigned b) { return isDigit(b); }
                                      : lowerCase(letter) == 'w' ? +[](unsigned b) { return isWord(b); }
                                      : lowerCase(letter) == 's' ? +[](unsigned b) { return isBlank(b); }
                                                                 : nullptr;
    if (belongs == nullptr) {
        return false;
    }
    set = CharSet{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (belongs(byte) != isUpper(letter)) {
            set.add(byte);
        }
    }
    return true;
}

}  // namespace zylch::regexp
