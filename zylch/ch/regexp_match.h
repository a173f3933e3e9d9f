#pragma once

/// Runs the program of a regular expression over a text: leftmost match, first alternative that leads to one,
/// by backtracking. The memory of a search is that of the state block, and of the heap where the text makes
/// more choices than the block has room for; so searches with different blocks may run at the same time.
/// Nothing recurses.

#include <cstdint>

#include "regexp_state.h"
#include "zylch.h"

namespace zylch::regexp {

enum class Outcome {
    match,
    none,
    /// Too many steps, or the backtrack stack was full: of MaxHeapStack entries, or of all memory there was.
    limit
};

class Matcher {
  public:
    /// `state` holds a compiled expression; `src` and `state` outlive the matcher. All searches of one
    /// matcher share one budget: 2^26 steps and 1024 more for each byte of the text. A step is an
    /// instruction, a return to a choice, or 16 bytes that an instruction goes over at once.
    Matcher(const State& state, const Zyl8u* src, int len);
    ~Matcher();
    Matcher(const Matcher&) = delete;
    Matcher& operator=(const Matcher&) = delete;

    /// The leftmost match that begins at `from` or after; `from` may be at or beyond the end.
    Outcome search(std::uint32_t from);

    /// Where the next search for further matches begins: after the match, or a byte on after an empty one.
    std::uint32_t next() const;
    bool global() const { return (m_options & optionGlobal) != 0; }

    /// Of the last match: group 0 is the whole.
    std::uint32_t groups() const { return m_groups; }
    const Capture& capture(std::uint32_t group) const { return m_captures[group]; }
    ZylRegExpFind record(std::uint32_t group) const;

  private:
    std::uint32_t firstCandidate(std::uint32_t from) const;
    Outcome matchAt(std::uint32_t start);

    bool step(const std::uint32_t* ins);
    bool backtrack();
    bool resume(Entry& top);

    bool advance(std::uint32_t words) { return m_pc += words, true; }
    bool jump(std::uint32_t distance) { return m_pc += distance, true; }
    bool oneByte(const std::uint32_t* ins, std::uint32_t words);
    bool repeat(const std::uint32_t* ins, bool lazy);
    bool giveBack(Entry& entry);
    bool takeMore(Entry& entry);
    bool loopStart(std::uint32_t loop);
    bool loopNext(const std::uint32_t* ins);
    bool loopTurn(const std::uint32_t* ins);
    bool loopEnd(const std::uint32_t* ins);
    bool open(std::uint32_t group);
    bool close(std::uint32_t group);
    bool back(std::uint32_t group);
    bool ahead(const std::uint32_t* ins, Entry::Kind kind);
    bool aheadEnd(std::uint32_t id);
    bool notAheadEnd(std::uint32_t id);
    bool place(bool holds) { return holds && advance(1); }

    bool push(Entry::Kind kind, std::uint32_t pc, std::uint32_t a, std::uint32_t b = 0);
    bool growStack();
    bool keepCapture(std::uint32_t group);
    bool keepLoop(std::uint32_t loop);
    bool restore(const Entry& entry);
    std::uint32_t findMark(Entry::Kind kind, std::uint32_t id);
    void charge(std::uint32_t steps) { m_steps -= steps < m_steps ? steps : m_steps; }

    bool matches(const std::uint32_t* ins, unsigned byte) const;
    std::uint32_t countMatches(const std::uint32_t* ins, std::uint32_t limit) const;
    bool atLineStart() const;
    bool atLineEnd() const;
    bool atWordEdge() const;
    bool sameBytes(std::uint32_t at, std::uint32_t count) const;

    const std::uint32_t* m_code;
    Capture* m_captures;
    Loop* m_loops;
    /// In the block, or m_heapStack, which is owned, once that was too small.
    Entry* m_stack;
    Entry* m_heapStack = nullptr;
    std::uint32_t m_options;
    std::uint32_t m_groups;
    std::uint32_t m_firstByte;
    std::uint32_t m_stackEntries;

    const Zyl8u* m_src;
    std::uint32_t m_len;

    std::uint32_t m_pc = 0;
    std::uint32_t m_pos = 0;
    std::uint32_t m_top = 0;
    std::uint64_t m_steps;
    bool m_full = false;
};

}  // namespace zylch::regexp
