#include "regexp_compile.h"

#include <algorithm>
#include <cstring>

#include "regexp_code.h"
#include "regexp_reader.h"
#include "regexp_set.h"

namespace zylch::regexp {

namespace {

/// What the compiler knew before an atom, so that a quantifier can reach back over it.
struct Mark {
    std::uint32_t code;
    std::uint32_t groups;
    std::uint32_t stack;
};

/// What a step of the compiler has read. A place takes no quantifier.
enum class Term { fault, place, oneByte, part };

class Compiler {
  public:
    Compiler(const char* pattern, std::uint32_t options, std::uint32_t* code)
        : m_in(pattern, options), m_code(code) {}

    /// The place of the fault or -1.
    int run(Head& head);

  private:
    bool disjunction(int depth);
    bool alternative(int depth);
    Term term(int depth);
    Term group(int depth);
    Term capture(int depth);
    Term lookahead(bool wanted, int depth);
    bool groupBody(std::uint32_t from, int depth);
    Term place(Op op, std::uint32_t length);
    Term literal(unsigned byte);
    Term bracket();
    Term set(const CharSet& set);
    Term escape();
    Term backReference(std::uint32_t number);
    Term fault(std::uint32_t at);

    bool quantify(Term term, const Mark& before);
    void repeatByte(const Quantifier& quantifier, const Mark& before);
    void repeatPart(const Quantifier& quantifier, const Mark& before);
    void needStack(std::uint64_t entries);

    PatternReader m_in;
    CodeWriter m_code;
    std::uint32_t m_groups = 1;
    std::uint32_t m_loops = 0;
    std::uint32_t m_lookaheads = 0;
    /// Entries that one path through the code so far can push; for alternatives their sum.
    std::uint32_t m_stack = 0;
    std::uint32_t m_highestBack = 0;
    std::uint32_t m_highestBackAt = 0;
};

int Compiler::run(Head& head) {
    if (disjunction(0) && m_in.peek() == ')') {
        fault(m_in.at());
    }
    if (m_highestBack >= m_groups) {
        fault(m_highestBackAt);
    }
    m_code.put(Op::match);
    head.codeWords = m_code.room();
    head.groups = m_groups;
    head.loops = m_loops;
    head.stackEntries = m_stack;
    return m_in.faultOffset();
}

Term Compiler::fault(std::uint32_t at) {
    m_in.fault(at);
    return Term::fault;
}

void Compiler::needStack(std::uint64_t entries) {
    m_stack = static_cast<std::uint32_t>(std::min<std::uint64_t>(m_stack + entries, MaxStack));
}

// a|b|c becomes: split, a, jump to the end; split, b, jump to the end; c. The end is not known yet when a
// jump is written, so each holds the place of the jump before it until then.
bool Compiler::disjunction(int depth) {
    std::uint32_t lastJump = None;
    for (;;) {
        const std::uint32_t start = m_code.size();
        if (!alternative(depth)) {
            return false;
        }
        if (!m_in.take('|')) {
            break;
        }
        m_code.insert(start, Op::split, {0});
        needStack(1);
        const std::uint32_t jump = m_code.size();
        m_code.put(Op::jump, {lastJump});
        m_code.leadHere(start, 1);
        lastJump = jump;
    }
    while (lastJump != None) {
        const std::uint32_t before = m_code.operand(lastJump, 1);
        m_code.leadHere(lastJump, 1);
        lastJump = before;
    }
    return true;
}

bool Compiler::alternative(int depth) {
    for (;;) {
        m_in.skipBlanks();
        if (m_in.peek() == '\0' || m_in.peek() == '|' || m_in.peek() == ')') {
            return true;
        }
        const Mark before = {m_code.size(), m_groups, m_stack};
        const Term kind = term(depth);
        if (kind == Term::fault) {
            return false;
        }
        m_in.skipBlanks();
        if (kind != Term::place && !quantify(kind, before)) {
            return false;
        }
    }
}

Term Compiler::term(int depth) {
    switch (m_in.peek()) {
        case '^':
            return place(m_in.has(optionLines) ? Op::lineStart : Op::textStart, 1);
        case '$':
            return place(m_in.has(optionLines) ? Op::lineEnd : Op::textEnd, 1);
        case '(':
            return group(depth);
        case '[':
            return bracket();
        case '\\':
            return escape();
        case '.':
            m_in.skip(1);
            m_code.put(m_in.has(optionDotAll) ? Op::any : Op::noBreak);
            return Term::oneByte;
        default:
            break;
    }
    const std::uint32_t from = m_in.at();
    if (Quantifier nothingToRepeat; m_in.quantifier(nothingToRepeat)) {
        return fault(from);
    }
    if (m_in.faultOffset() >= 0) {
        return Term::fault;
    }
    const unsigned byte = m_in.peek();
    m_in.skip(1);
    return literal(byte);
}

Term Compiler::place(Op op, std::uint32_t length) {
    m_in.skip(length);
    m_code.put(op);
    return Term::place;
}

Term Compiler::literal(unsigned byte) {
    if (m_in.has(optionIgnoreCase) && isLetter(byte)) {
        m_code.put(Op::either, {byte | 0x20U, byte & ~0x20U});
    } else {
        m_code.put(Op::byte, {byte});
    }
    return Term::oneByte;
}

Term Compiler::bracket() {
    CharSet members;
    return m_in.bracket(members) ? set(members) : Term::fault;
}

Term Compiler::set(const CharSet& set) {
    const std::uint32_t* w = set.words;
    m_code.put(Op::set, {w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7]});
    return Term::oneByte;
}

Term Compiler::escape() {
    const std::uint32_t from = m_in.at();
    const unsigned letter = m_in.peek(1);
    if (letter == 'b' || letter == 'B') {
        return place(letter == 'b' ? Op::wordEdge : Op::notWordEdge, 2);
    }
    if (isDigit(letter) && letter != '0') {
        return backReference(letter - '0');
    }
    if (CharSet named; namedSet(letter, named)) {
        m_in.skip(2);
        return set(named);
    }
    const int byte = m_in.characterEscape();
    return byte < 0 ? fault(from) : literal(static_cast<unsigned>(byte));
}

// Whether there is such a group is known at the end of the pattern.
Term Compiler::backReference(std::uint32_t number) {
    if (number > m_highestBack) {
        m_highestBack = number;
        m_highestBackAt = m_in.at();
    }
    m_in.skip(2);
    m_code.put(Op::back, {number});
    return Term::part;
}

Term Compiler::group(int depth) {
    const std::uint32_t from = m_in.at();
    if (depth == MaxDepth) {
        return fault(from);
    }
    if (m_in.peek(1) != '?') {
        return capture(depth + 1);
    }
    const unsigned kind = m_in.peek(2);
    if (kind != ':' && kind != '=' && kind != '!') {
        return fault(from);
    }
    if (kind != ':') {
        return lookahead(kind == '=', depth + 1);
    }
    m_in.skip(3);
    return groupBody(from, depth + 1) ? Term::part : Term::fault;
}

bool Compiler::groupBody(std::uint32_t from, int depth) {
    return disjunction(depth) && (m_in.take(')') || m_in.fault(from));
}

Term Compiler::capture(int depth) {
    const std::uint32_t from = m_in.at();
    const std::uint32_t number = m_groups++;
    m_in.skip(1);
    m_code.put(Op::open, {number});
    if (!groupBody(from, depth)) {
        return Term::fault;
    }
    m_code.put(Op::close, {number});
    needStack(2);
    return Term::part;
}

Term Compiler::lookahead(bool wanted, int depth) {
    const std::uint32_t from = m_in.at();
    const std::uint32_t id = m_lookaheads++;
    const std::uint32_t start = m_code.size();
    m_in.skip(3);
    m_code.put(wanted ? Op::ahead : Op::notAhead, {id, 0});
    if (!groupBody(from, depth)) {
        return Term::fault;
    }
    m_code.put(wanted ? Op::aheadEnd : Op::notAheadEnd, {id});
    m_code.leadHere(start, 2);
    needStack(1);
    return Term::place;
}

bool Compiler::quantify(Term term, const Mark& before) {
    Quantifier quantifier;
    if (!m_in.quantifier(quantifier)) {
        return m_in.faultOffset() < 0;
    }
    if (quantifier.most == 0) {
        m_code.cut(before.code);
        m_stack = before.stack;
    } else if (quantifier.least != 1 || quantifier.most != 1) {
        if (term == Term::oneByte) {
            repeatByte(quantifier, before);
        } else {
            repeatPart(quantifier, before);
        }
    }
    return true;
}

void Compiler::repeatByte(const Quantifier& quantifier, const Mark& before) {
    m_code.insert(before.code, quantifier.lazy ? Op::repeatLazy : Op::repeat,
                  {quantifier.least, quantifier.most});
    needStack(1);
}

void Compiler::repeatPart(const Quantifier& quantifier, const Mark& before) {
    const std::uint32_t loop = m_loops++;
    m_code.insert(
        before.code, Op::loopNext,
        {loop, quantifier.least, quantifier.most, quantifier.lazy ? 1U : 0U, before.groups, m_groups, 0});
    m_code.insert(before.code, Op::loopStart, {loop});
    const std::uint32_t next = before.code + 2;
    const std::uint32_t end = m_code.size();
    m_code.put(Op::loopEnd, {loop, quantifier.least, next - end});
    m_code.leadHere(next, 7);
    // A turn pushes its choice, the old values of the loop and of the groups inside, and what the body does.
    const std::uint64_t turn = m_stack - before.stack + 2ULL + (m_groups - before.groups);
    needStack(turn * quantifier.most + 1);
}

// Groups that open on the way to the first byte leave no choice.
std::uint32_t findFirstByte(const std::uint32_t* code) {
    std::uint32_t at = 0;
    while (static_cast<Op>(code[at]) == Op::open) {
        at += 2;
    }
    const Op op = static_cast<Op>(code[at]);
    if (op == Op::repeat || op == Op::repeatLazy) {
        return code[at + 1] > 0 ? at + 3 : None;
    }
    return op == Op::byte || op == Op::either || op == Op::set || op == Op::noBreak ? at : None;
}

}  // namespace

int compile(const char* pattern, std::uint32_t options, Head& head, std::uint32_t* code) {
    if (std::strlen(pattern) > MaxPattern) {
        return static_cast<int>(MaxPattern);
    }
    head.options = options;
    head.firstByte = None;
    const int fault = Compiler(pattern, options, code).run(head);
    if (fault < 0 && code != nullptr) {
        head.firstByte = findFirstByte(code);
    }
    return fault;
}

}  // namespace zylch::regexp
