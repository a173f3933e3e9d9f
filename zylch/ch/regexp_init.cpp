/// The two calls that turn a pattern into a state block.

#include <algorithm>

#include "regexp_compile.h"
#include "regexp_state.h"
#include "zylch.h"

namespace {

using namespace zylch::regexp;

std::uint32_t optionOf(char letter) {
    switch (letter) {
        case 'g':
            return optionGlobal;
        case 'i':
            return optionIgnoreCase;
        case 'm':
            return optionLines;
        case 's':
            return optionDotAll;
        case 'x':
            return optionExtended;
        default:
            return 0;
    }
}

bool readOptions(const char* text, std::uint32_t& options) {
    options = 0;
    for (; text != nullptr && *text != '\0'; ++text) {
        const std::uint32_t option = optionOf(*text);
        if (option == 0) {
            return false;
        }
        options |= option;
    }
    return true;
}

// Bytes for the pattern under these options; those of a head alone if it is faulty.
std::size_t sizeUnder(const char* pattern, std::uint32_t options, bool& good) {
    Head head{};
    if (compile(pattern, options, head, nullptr) >= 0) {
        return sizeof(Head);
    }
    good = true;
    return State::size(head);
}

int fillState(const char* pattern, std::uint32_t options, const State& state, int* errorOffset) {
    Head head{};
    *errorOffset = compile(pattern, options, head, nullptr);
    if (*errorOffset >= 0) {
        return zylStsRegExpPatternErr;
    }
    state.head() = head;
    compile(pattern, options, state.head(), state.code());
    std::fill_n(state.captures(), head.groups, Capture{None, None});
    std::fill_n(state.loops(), head.loops, Loop{0, 0});
    state.head().magic = StateMagic;
    return zylStsNoErr;
}

}  // namespace

// The options are not known yet: i makes letters longer, and x changes what the pattern means, so the larger
// of two sizes holds for all.
int zylsRegExpGetSize(const char* pattern, int* size) {
    if (pattern == nullptr || size == nullptr) {
        return zylStsNullPtrErr;
    }
    bool good = false;
    const std::size_t plain = sizeUnder(pattern, optionIgnoreCase, good);
    const std::size_t extended = sizeUnder(pattern, optionIgnoreCase | optionExtended, good);
    *size = static_cast<int>(std::max(plain, extended));
    return good ? zylStsNoErr : zylStsRegExpPatternErr;
}

int zylsRegExpInit(const char* pattern, const char* options, void* state, int* errorOffset) {
    if (pattern == nullptr || state == nullptr || errorOffset == nullptr) {
        return zylStsNullPtrErr;
    }
    *errorOffset = -1;
    if (!isAligned(state)) {
        return zylStsBadArgErr;
    }
    State block(state);
    block.head().magic = 0;
    std::uint32_t bits = 0;
    if (!readOptions(options, bits)) {
        return zylStsRegExpPatternErr;
    }
    return fillState(pattern, bits, block, errorOffset);
}
