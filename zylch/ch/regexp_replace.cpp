/// Replacement of what a regular expression matches.

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "regexp_match.h"
#include "regexp_set.h"
#include "regexp_state.h"
#include "zylch.h"

namespace {

using namespace zylch::regexp;

constexpr std::uint32_t ReplaceMagic = 0x5A4C5250U;

/// The head of a replacement's state block; the text without its NUL follows.
struct ReplaceHead {
    std::uint32_t magic;
    std::uint32_t length;
};

const Zyl8u* replacementOf(const void* state) {
    return static_cast<const Zyl8u*>(state) + sizeof(ReplaceHead);
}

const ReplaceHead& headOf(const void* state) { return *static_cast<const ReplaceHead*>(state); }

int checkReplaceState(const void* state) {
    return isAligned(state) && headOf(state).magic == ReplaceMagic ? zylStsNoErr : zylStsRegExpStateErr;
}

std::size_t lengthOf(const Zyl8u* replacement) {
    return std::strlen(reinterpret_cast<const char*>(replacement));
}

struct Piece {
    const Zyl8u* text;
    int length;
};

// The next piece of the output and, in `used`, the bytes of the replacement that stand for it. A dollar that
// begins none of the forms, also for a group that the pattern does not have, is itself.
Piece nextPiece(const Zyl8u* at, const Zyl8u* end, const Matcher& matcher, int& used) {
    if (*at != '$') {
        const void* dollar = std::memchr(at, '$', static_cast<std::size_t>(end - at));
        used = static_cast<int>((dollar != nullptr ? static_cast<const Zyl8u*>(dollar) : end) - at);
        return {at, used};
    }
    used = 2;
    if (end - at > 1 && at[1] == '$') {
        return {at, 1};
    }
    if (end - at > 1 && isDigit(at[1]) && at[1] - std::uint32_t{'0'} < matcher.groups()) {
        const ZylRegExpFind group = matcher.record(at[1] - std::uint32_t{'0'});
        return {static_cast<const Zyl8u*>(group.pFind), group.lenFind};
    }
    used = 1;
    return {at, 1};
}

class Output {
  public:
    Output(Zyl8u* dst, int capacity) : m_dst(dst), m_room(capacity) {}

    int written() const { return m_written; }

    /// As much as there is room for; returns its length.
    int put(const Zyl8u* text, int length) {
        const int fits = std::min(length, m_room);
        if (fits > 0) {
            std::memcpy(m_dst + m_written, text, static_cast<std::size_t>(fits));
        }
        m_written += fits;
        m_room -= fits;
        return fits;
    }

    /// The whole replacement of the match in hand; false, and nothing written, if it does not fit.
    bool putReplacement(const void* state, const Matcher& matcher) {
        const Output before = *this;
        const Zyl8u* at = replacementOf(state);
        const Zyl8u* end = at + headOf(state).length;
        for (int used = 0; at < end; at += used) {
            const Piece piece = nextPiece(at, end, matcher, used);
            if (piece.length > m_room) {
                *this = before;
                return false;
            }
            put(piece.text, piece.length);
        }
        return true;
    }

  private:
    Zyl8u* m_dst;
    int m_room;
    int m_written = 0;
};

class Replacement {
  public:
    Replacement(const Zyl8u* src, int len, Zyl8u* dst, int capacity, const State& state)
        : m_src(src), m_len(len), m_output(dst, capacity), m_matcher(state, src, len) {}

    int run(const void* replaceState, ZylRegExpFind found[], int capacity);
    int consumed() const { return m_consumed; }
    int written() const { return m_output.written(); }
    int replaced() const { return m_replaced; }

  private:
    bool copyTo(int end);
    int replaceMatch(const void* replaceState, ZylRegExpFind found[]);

    const Zyl8u* m_src;
    int m_len;
    Output m_output;
    Matcher m_matcher;
    int m_consumed = 0;
    int m_replaced = 0;
};

int Replacement::run(const void* replaceState, ZylRegExpFind found[], int capacity) {
    std::uint32_t from = 0;
    while (m_replaced < capacity) {
        const Outcome outcome = m_matcher.search(from);
        if (outcome == Outcome::limit) {
            return zylStsRegExpLimitErr;
        }
        if (outcome == Outcome::none) {
            break;
        }
        const int status = replaceMatch(replaceState, found);
        if (status != zylStsNoErr) {
            return status;
        }
        if (!m_matcher.global()) {
            break;
        }
        from = m_matcher.next();
    }
    return copyTo(m_len) ? zylStsNoErr : zylStsNoRoomNote;
}

int Replacement::replaceMatch(const void* replaceState, ZylRegExpFind found[]) {
    const Capture& whole = m_matcher.capture(0);
    if (!copyTo(static_cast<int>(whole.start)) || !m_output.putReplacement(replaceState, m_matcher)) {
        return zylStsNoRoomNote;
    }
    m_consumed = static_cast<int>(whole.end);
    found[m_replaced++] = m_matcher.record(0);
    return zylStsNoErr;
}

// Copies the source up to `end`, or what there is room for; true if it was all.
bool Replacement::copyTo(int end) {
    m_consumed += m_output.put(m_src + m_consumed, end - m_consumed);
    return m_consumed == end;
}

}  // namespace

int zylsRegExpReplaceGetSize(const Zyl8u* replacement, int* size) {
    if (replacement == nullptr || size == nullptr) {
        return zylStsNullPtrErr;
    }
    const std::size_t bytes = sizeof(ReplaceHead) + lengthOf(replacement);
    if (bytes > INT32_MAX) {
        return zylStsSizeErr;
    }
    *size = static_cast<int>(bytes);
    return zylStsNoErr;
}

int zylsRegExpReplaceInit(const Zyl8u* replacement, void* state) {
    if (replacement == nullptr || state == nullptr) {
        return zylStsNullPtrErr;
    }
    if (!isAligned(state)) {
        return zylStsBadArgErr;
    }
    const std::size_t length = lengthOf(replacement);
    *static_cast<ReplaceHead*>(state) = {ReplaceMagic, static_cast<std::uint32_t>(length)};
    std::memcpy(static_cast<Zyl8u*>(state) + sizeof(ReplaceHead), replacement, length);
    return zylStsNoErr;
}

int zylsRegExpReplace_8u(const Zyl8u* src, int* lenSrc, Zyl8u* dst, int* lenDst, ZylRegExpFind found[],
                         int* count, void* state, void* replaceState) {
    if (src == nullptr || lenSrc == nullptr || dst == nullptr || lenDst == nullptr || found == nullptr ||
        count == nullptr || state == nullptr || replaceState == nullptr) {
        return zylStsNullPtrErr;
    }
    if (*lenSrc < 0 || *lenDst < 0 || *count < 0) {
        return zylStsSizeErr;
    }
    if (checkState(state) != zylStsNoErr || checkReplaceState(replaceState) != zylStsNoErr) {
        return zylStsRegExpStateErr;
    }
    Replacement replacement(src, *lenSrc, dst, *lenDst, State(state));
    const int status = replacement.run(replaceState, found, *count);
    *lenSrc = replacement.consumed();
    *lenDst = replacement.written();
    *count = replacement.replaced();
    return status;
}
