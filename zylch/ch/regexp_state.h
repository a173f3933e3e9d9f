#pragma once

/// The state block of a regular expression: a head, the program, and the working memory of a search, one
/// after the other in the caller's memory. Everything inside is told by its distance from the head, so a
/// block may be copied or moved as bytes; it needs the alignment of an int. Nothing is owned, nothing is
/// closed.

#include <cstddef>
#include <cstdint>

#include "zyltypes.h"

namespace zylch::regexp {

/// A position in the text or a group bound that is not there; also "without bound" of a quantifier.
inline constexpr std::uint32_t None = 0xFFFFFFFFU;

/// The instructions. A program is words of 32 bits: the operation, then its operands. Targets are distances
/// from the instruction's own first word, modulo 2^32, so that code can be shifted as it stands.
enum class Op : std::uint32_t {
    // One byte of the text; these five may stand after a repetition.
    byte,     ///< value
    either,   ///< value, value: the two cases of a letter
    set,      ///< eight words, a bit for each byte
    noBreak,  ///< any byte but \n and \r
    any,
    // Repetition of the one-byte instruction that follows.
    repeat,      ///< least, most
    repeatLazy,  ///< least, most
    // Flow.
    jump,   ///< target
    split,  ///< second choice
    match,
    // Repetition of a part of the program.
    loopStart,  ///< loop
    loopNext,   ///< loop, least, most, lazy, first group, end of groups, exit
    loopEnd,    ///< loop, least, distance to loopNext
    // Groups.
    open,   ///< group
    close,  ///< group
    back,   ///< group
    // Lookahead, to an end of its own kind.
    ahead,        ///< id, target after it
    notAhead,     ///< id, target after it
    aheadEnd,     ///< id
    notAheadEnd,  ///< id
    // Places.
    textStart,
    lineStart,
    textEnd,
    lineEnd,
    wordEdge,
    notWordEdge
};

inline constexpr std::uint32_t SetWords = 8;

enum Option : std::uint32_t {
    optionGlobal = 1,
    optionIgnoreCase = 2,
    optionLines = 4,
    optionDotAll = 8,
    optionExtended = 16
};

/// Bounds of a group; None in `end` for one that took no part.
struct Capture {
    std::uint32_t start;
    std::uint32_t end;
};

struct Loop {
    std::uint32_t count;
    /// Where the iteration in hand began.
    std::uint32_t start;
};

/// An entry of the backtrack stack: a choice not taken yet, or a value to put back on the way to one.
struct Entry {
    enum Kind : std::uint32_t {
        choice,        ///< a: position
        iteration,     ///< a: position; a lazy loop's next turn
        longest,       ///< a: position, b: least position; gives back byte by byte
        shortest,      ///< a: position, b: bytes still allowed; takes byte by byte
        aheadMark,     ///< a: position, b: id
        notAheadMark,  ///< a: position, b: id
        oldCapture,    ///< pc: group, a: start, b: end
        oldLoop        ///< pc: loop, a: count, b: start
    };
    std::uint32_t kind;
    std::uint32_t pc;
    std::uint32_t a;
    std::uint32_t b;
};

inline constexpr std::uint32_t StateMagic = 0x5A4C5258U;

/// Entries of the largest stack in a block, for patterns whose need depends on the text. Others have less.
inline constexpr std::uint32_t MaxStack = 32768;
/// Entries that the stack of one search may grow to on the heap: 64 MiB.
inline constexpr std::uint32_t MaxHeapStack = 1U << 22;

struct Head {
    std::uint32_t magic;
    std::uint32_t options;
    std::uint32_t codeWords;
    /// Capture groups with the whole match.
    std::uint32_t groups;
    std::uint32_t loops;
    std::uint32_t stackEntries;
    /// Place of a one-byte instruction that every match begins with, or None.
    std::uint32_t firstByte;
};

/// The parts of a block. All have the alignment of a word, so they stand without gaps.
class State {
  public:
    explicit State(void* block) : m_block(static_cast<unsigned char*>(block)) {}

    Head& head() const { return *at<Head>(0); }
    std::uint32_t* code() const { return at<std::uint32_t>(sizeof(Head)); }
    Capture* captures() const { return at<Capture>(capturesAt()); }
    Loop* loops() const { return at<Loop>(loopsAt()); }
    Entry* stack() const { return at<Entry>(loopsAt() + head().loops * sizeof(Loop)); }

    /// Bytes of a block with such a head.
    static std::size_t size(const Head& head) {
        return sizeof(Head) + head.codeWords * sizeof(std::uint32_t) + head.groups * sizeof(Capture) +
               head.loops * sizeof(Loop) + head.stackEntries * sizeof(Entry);
    }

  private:
    template <class Part>
    Part* at(std::size_t offset) const {
        return reinterpret_cast<Part*>(m_block + offset);
    }
    std::size_t capturesAt() const { return sizeof(Head) + head().codeWords * sizeof(std::uint32_t); }
    std::size_t loopsAt() const { return capturesAt() + head().groups * sizeof(Capture); }

    unsigned char* m_block;
};

/// True if `block` can be a state at all: not misaligned.
inline bool isAligned(const void* block) {
    return reinterpret_cast<std::uintptr_t>(block) % alignof(Head) == 0;
}

/// zylStsNoErr if `block` holds what zylsRegExpInit wrote, else zylStsRegExpStateErr.
inline int checkState(void* block) {
    return isAligned(block) && State(block).head().magic == StateMagic ? zylStsNoErr : zylStsRegExpStateErr;
}

}  // namespace zylch::regexp
