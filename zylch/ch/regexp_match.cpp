#include "regexp_match.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "regexp_set.h"

namespace zylch::regexp {

namespace {

#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
constexpr std::uint64_t StepsAtLeast = 1ULL << 14;  // or slow patterns would take all the time there is
#else
constexpr std::uint64_t StepsAtLeast = 1ULL << 26;
#endif
constexpr std::uint64_t StepsPerByte = 1024;
constexpr std::uint32_t BytesPerStep = 16;

/// Words of the repetition in front of its one-byte instruction.
constexpr std::uint32_t RepeatWords = 3;
constexpr std::uint32_t LoopNextWords = 8;

std::uint32_t wordsOfOneByte(const std::uint32_t* ins) {
    switch (static_cast<Op>(ins[0])) {
        case Op::byte:
            return 2;
        case Op::either:
            return 3;
        case Op::set:
            return 1 + SetWords;
        default:
            return 1;
    }
}

bool inSet(const std::uint32_t* ins, unsigned byte) { return (ins[1 + byte / 32] >> (byte % 32) & 1U) != 0; }

template <class Condition>
std::uint32_t countWhile(const Zyl8u* at, std::uint32_t limit, Condition holds) {
    std::uint32_t count = 0;
    while (count < limit && holds(at[count])) {
        ++count;
    }
    return count;
}

}  // namespace

Matcher::Matcher(const State& state, const Zyl8u* src, int len)
    : m_code(state.code()),
      m_captures(state.captures()),
      m_loops(state.loops()),
      m_stack(state.stack()),
      m_options(state.head().options),
      m_groups(state.head().groups),
      m_firstByte(state.head().firstByte),
      m_stackEntries(state.head().stackEntries),
      m_src(src),
      m_len(static_cast<std::uint32_t>(len)),
      m_steps(StepsAtLeast + StepsPerByte * m_len) {}

Matcher::~Matcher() { std::free(m_heapStack); }

Outcome Matcher::search(std::uint32_t from) {
    // A failed attempt puts back every group it has set, so once is enough.
    std::fill_n(m_captures, m_groups, Capture{None, None});
    charge(m_groups);
    for (std::uint32_t start = firstCandidate(from); start <= m_len; start = firstCandidate(start + 1)) {
        const Outcome outcome = matchAt(start);
        if (outcome != Outcome::none) {
            return outcome;
        }
    }
    return Outcome::none;
}

// Goes over places where no match can begin.
std::uint32_t Matcher::firstCandidate(std::uint32_t from) const {
    if (m_firstByte != None) {
        while (from < m_len && !matches(m_code + m_firstByte, m_src[from])) {
            ++from;
        }
    }
    return from;
}

Outcome Matcher::matchAt(std::uint32_t start) {
    m_pc = 0;
    m_pos = start;
    m_top = 0;
    while (m_steps > 0) {
        charge(1);
        const std::uint32_t* ins = m_code + m_pc;
        if (static_cast<Op>(ins[0]) == Op::match) {
            m_captures[0] = {start, m_pos};
            return Outcome::match;
        }
        if (!step(ins) && !backtrack()) {
            return m_full ? Outcome::limit : Outcome::none;
        }
    }
    return Outcome::limit;
}

std::uint32_t Matcher::next() const {
    const Capture& whole = m_captures[0];
    return whole.end > whole.start ? whole.end : whole.end + 1;
}

ZylRegExpFind Matcher::record(std::uint32_t group) const {
    const Capture& bounds = m_captures[group];
    if (bounds.end == None) {
        return {nullptr, 0};
    }
    return {m_src + bounds.start, static_cast<int>(bounds.end - bounds.start)};
}

// One instruction; false if the path ends here.
bool Matcher::step(const std::uint32_t* ins) {
    switch (static_cast<Op>(ins[0])) {
        case Op::byte:
        case Op::either:
        case Op::set:
        case Op::noBreak:
        case Op::any:
            return oneByte(ins, wordsOfOneByte(ins));
        case Op::repeat:
            return repeat(ins, false);
        case Op::repeatLazy:
            return repeat(ins, true);
        case Op::jump:
            return jump(ins[1]);
        case Op::split:
            return push(Entry::choice, m_pc + ins[1], m_pos) && advance(2);
        case Op::loopStart:
            return loopStart(ins[1]);
        case Op::loopNext:
            return loopNext(ins);
        case Op::loopEnd:
            return loopEnd(ins);
        case Op::open:
            return open(ins[1]);
        case Op::close:
            return close(ins[1]);
        case Op::back:
            return back(ins[1]);
        case Op::ahead:
            return ahead(ins, Entry::aheadMark);
        case Op::notAhead:
            return ahead(ins, Entry::notAheadMark);
        case Op::aheadEnd:
            return aheadEnd(ins[1]);
        case Op::notAheadEnd:
            return notAheadEnd(ins[1]);
        case Op::textStart:
            return place(m_pos == 0);
        case Op::lineStart:
            return place(atLineStart());
        case Op::textEnd:
            return place(m_pos == m_len);
        case Op::lineEnd:
            return place(atLineEnd());
        case Op::wordEdge:
            return place(atWordEdge());
        case Op::notWordEdge:
            return place(!atWordEdge());
        case Op::match:
            break;
    }
    return false;
}

// Goes back to the last choice and takes what it left; false if there is none, and if one could not be kept.
bool Matcher::backtrack() {
    while (m_top > 0 && !m_full) {
        charge(1);
        if (resume(m_stack[m_top - 1])) {
            return true;
        }
    }
    return false;
}

bool Matcher::resume(Entry& top) {
    switch (top.kind) {
        case Entry::longest:
            return giveBack(top);
        case Entry::shortest:
            return takeMore(top);
        default:
            break;
    }
    const Entry entry = top;
    --m_top;
    if (restore(entry) || entry.kind == Entry::aheadMark) {
        return false;
    }
    m_pc = entry.pc;
    m_pos = entry.a;
    return entry.kind != Entry::iteration || loopTurn(m_code + m_pc);
}

bool Matcher::push(Entry::Kind kind, std::uint32_t pc, std::uint32_t a, std::uint32_t b) {
    if (m_top == m_stackEntries && !growStack()) {
        m_full = true;
        return false;
    }
    m_stack[m_top++] = {kind, pc, a, b};
    return true;
}

// To twice its room. What has grown once serves the further searches of this matcher as it is.
bool Matcher::growStack() {
    const std::uint32_t room = std::min(std::max(2 * m_stackEntries, 1U), MaxHeapStack);
    if (room <= m_stackEntries) {
        return false;
    }
    auto* grown = static_cast<Entry*>(std::realloc(m_heapStack, room * sizeof(Entry)));
    if (grown == nullptr) {
        return false;
    }
    if (m_heapStack == nullptr) {
        std::copy_n(m_stack, m_top, grown);
    }
    m_heapStack = grown;
    m_stack = grown;
    m_stackEntries = room;
    return true;
}

bool Matcher::keepCapture(std::uint32_t group) {
    return push(Entry::oldCapture, group, m_captures[group].start, m_captures[group].end);
}

bool Matcher::keepLoop(std::uint32_t loop) {
    return push(Entry::oldLoop, loop, m_loops[loop].count, m_loops[loop].start);
}

// Puts an old value back; false if the entry holds none.
bool Matcher::restore(const Entry& entry) {
    if (entry.kind == Entry::oldCapture) {
        m_captures[entry.pc] = {entry.a, entry.b};
    } else if (entry.kind == Entry::oldLoop) {
        m_loops[entry.pc] = {entry.a, entry.b};
    } else {
        return false;
    }
    return true;
}

bool Matcher::matches(const std::uint32_t* ins, unsigned byte) const {
    switch (static_cast<Op>(ins[0])) {
        case Op::byte:
            return byte == ins[1];
        case Op::either:
            return byte == ins[1] || byte == ins[2];
        case Op::set:
            return inSet(ins, byte);
        case Op::noBreak:
            return !isLineBreak(byte);
        default:
            return true;
    }
}

bool Matcher::oneByte(const std::uint32_t* ins, std::uint32_t words) {
    if (m_pos == m_len || !matches(ins, m_src[m_pos])) {
        return false;
    }
    ++m_pos;
    return advance(words);
}

std::uint32_t Matcher::countMatches(const std::uint32_t* ins, std::uint32_t limit) const {
    const Zyl8u* at = m_src + m_pos;
    switch (static_cast<Op>(ins[0])) {
        case Op::set:
            return countWhile(at, limit, [ins](unsigned byte) { return inSet(ins, byte); });
        case Op::noBreak:
            return countWhile(at, limit, [](unsigned byte) { return !isLineBreak(byte); });
        case Op::any:
            return limit;
        default:
            return countWhile(at, limit, [this, ins](unsigned byte) { return matches(ins, byte); });
    }
}

// A whole run of bytes leaves one entry, however long it is.
bool Matcher::repeat(const std::uint32_t* ins, bool lazy) {
    const std::uint32_t* what = ins + RepeatWords;
    const std::uint32_t least = ins[1];
    const std::uint32_t limit = std::min(ins[2], m_len - m_pos);
    const std::uint32_t count = countMatches(what, lazy ? std::min(least, limit) : limit);
    charge(count / BytesPerStep);
    if (count < least) {
        return false;
    }
    const std::uint32_t from = m_pos;
    const std::uint32_t after = m_pc + RepeatWords + wordsOfOneByte(what);
    m_pos += count;
    bool kept = true;
    if (lazy && limit > least) {
        kept = push(Entry::shortest, m_pc, m_pos, limit - least);
    } else if (!lazy && count > least) {
        kept = push(Entry::longest, after, m_pos, from + least);
    }
    m_pc = after;
    return kept;
}

// Shortens a run by a byte, or, if a certain byte has to follow, to the next place where it does.
bool Matcher::giveBack(Entry& entry) {
    std::uint32_t at = entry.a - 1;
    const std::uint32_t* following = m_code + entry.pc;
    if (static_cast<Op>(following[0]) == Op::byte) {
        while (at > entry.b && m_src[at] != following[1]) {
            --at;
        }
    }
    charge((entry.a - at) / BytesPerStep);
    entry.a = at;
    m_pos = at;
    m_pc = entry.pc;
    if (at == entry.b) {
        --m_top;
    }
    return true;
}

bool Matcher::takeMore(Entry& entry) {
    const std::uint32_t* what = m_code + entry.pc + RepeatWords;
    if (!matches(what, m_src[entry.a])) {
        --m_top;
        return false;
    }
    m_pos = ++entry.a;
    m_pc = entry.pc + RepeatWords + wordsOfOneByte(what);
    if (--entry.b == 0) {
        --m_top;
    }
    return true;
}

bool Matcher::loopStart(std::uint32_t loop) {
    if (!keepLoop(loop)) {
        return false;
    }
    m_loops[loop] = {0, m_pos};
    return advance(2);
}

bool Matcher::loopNext(const std::uint32_t* ins) {
    const std::uint32_t count = m_loops[ins[1]].count;
    const std::uint32_t exit = ins[7];
    if (count < ins[2]) {
        return loopTurn(ins);
    }
    if (count >= ins[3]) {
        return jump(exit);
    }
    const bool lazy = ins[4] != 0;
    if (lazy) {
        return push(Entry::iteration, m_pc, m_pos) && jump(exit);
    }
    return push(Entry::choice, m_pc + exit, m_pos) && loopTurn(ins);
}

// Every turn begins with the groups inside unset.
bool Matcher::loopTurn(const std::uint32_t* ins) {
    const std::uint32_t loop = ins[1];
    if (!keepLoop(loop)) {
        return false;
    }
    m_loops[loop] = {m_loops[loop].count + 1, m_pos};
    charge(ins[6] - ins[5]);
    for (std::uint32_t group = ins[5]; group < ins[6]; ++group) {
        if (m_captures[group].end == None) {
            continue;
        }
        if (!keepCapture(group)) {
            return false;
        }
        m_captures[group] = {None, None};
    }
    return advance(LoopNextWords);
}

// A turn that was not needed and matched nothing would go on for ever: that path ends.
bool Matcher::loopEnd(const std::uint32_t* ins) {
    const Loop& loop = m_loops[ins[1]];
    if (loop.count > ins[2] && loop.start == m_pos) {
        return false;
    }
    return jump(ins[3]);
}

bool Matcher::open(std::uint32_t group) {
    if (!keepCapture(group)) {
        return false;
    }
    m_captures[group] = {m_pos, None};
    return advance(2);
}

bool Matcher::close(std::uint32_t group) {
    if (!keepCapture(group)) {
        return false;
    }
    m_captures[group].end = m_pos;
    return advance(2);
}

// A group that took no part matches the empty text.
bool Matcher::back(std::uint32_t group) {
    const Capture& bounds = m_captures[group];
    if (bounds.end == None) {
        return advance(2);
    }
    const std::uint32_t count = bounds.end - bounds.start;
    charge(count / BytesPerStep);
    if (count > m_len - m_pos || !sameBytes(bounds.start, count)) {
        return false;
    }
    m_pos += count;
    return advance(2);
}

bool Matcher::sameBytes(std::uint32_t at, std::uint32_t count) const {
    if ((m_options & optionIgnoreCase) == 0) {
        return std::memcmp(m_src + at, m_src + m_pos, count) == 0;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        if (lowerCase(m_src[at + i]) != lowerCase(m_src[m_pos + i])) {
            return false;
        }
    }
    return true;
}

bool Matcher::ahead(const std::uint32_t* ins, Entry::Kind kind) {
    return push(kind, m_pc + ins[2], m_pos, ins[1]) && advance(3);
}

// A lookahead is over before it can begin again, so the topmost mark of its id is the one.
std::uint32_t Matcher::findMark(Entry::Kind kind, std::uint32_t id) {
    std::uint32_t at = m_top - 1;
    while (m_stack[at].kind != kind || m_stack[at].b != id) {
        --at;
    }
    charge(m_top - at);
    return at;
}

// What was found ahead holds: its choices go, the old values stay for a return to choices before it.
bool Matcher::aheadEnd(std::uint32_t id) {
    const std::uint32_t mark = findMark(Entry::aheadMark, id);
    m_pos = m_stack[mark].a;
    std::uint32_t kept = mark;
    for (std::uint32_t i = mark + 1; i < m_top; ++i) {
        if (m_stack[i].kind == Entry::oldCapture || m_stack[i].kind == Entry::oldLoop) {
            m_stack[kept++] = m_stack[i];
        }
    }
    m_top = kept;
    return advance(2);
}

// What must not stand ahead does: everything since the mark is put back, and the path ends.
bool Matcher::notAheadEnd(std::uint32_t id) {
    const std::uint32_t mark = findMark(Entry::notAheadMark, id);
    while (m_top > mark) {
        restore(m_stack[--m_top]);
    }
    return false;
}

bool Matcher::atLineStart() const { return m_pos == 0 || isLineBreak(m_src[m_pos - 1]); }

bool Matcher::atLineEnd() const { return m_pos == m_len || isLineBreak(m_src[m_pos]); }

bool Matcher::atWordEdge() const {
    const bool before = m_pos > 0 && isWord(m_src[m_pos - 1]);
    const bool after = m_pos < m_len && isWord(m_src[m_pos]);
    return before != after;
}

}  // namespace zylch::regexp
