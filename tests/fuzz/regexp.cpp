/// Regular expressions. The lines: pattern, options, replacement; the rest is the text.

#include <algorithm>
#include <memory>

#include "fuzz.h"
#include "zylch.h"

namespace {

/// On the heap, so that one byte too far is noticed.
using Block = std::unique_ptr<char[]>;

constexpr int Capacity = 20;

const Zyl8u* bytes(const std::string& text) { return reinterpret_cast<const Zyl8u*>(text.data()); }

/// A record lies inside the text, or its group took no part.
bool isInside(const ZylRegExpFind& found, const Zyl8u* src, int len) {
    const auto* at = static_cast<const Zyl8u*>(found.pFind);
    return at == nullptr ? found.lenFind == 0
                         : found.lenFind >= 0 && at >= src && at + found.lenFind <= src + len;
}

void find(const Zyl8u* src, int len, void* state) {
    const std::unique_ptr<ZylRegExpFind[]> found(new ZylRegExpFind[Capacity]);
    int count = Capacity;
    zylsRegExpFind_8u(src, len, state, found.get(), &count);
    mustHold(count >= 0 && count <= Capacity);
    for (int i = 0; i < count; ++i) {
        mustHold(isInside(found[static_cast<std::size_t>(i)], src, len));
    }
}

/// Returns the text made, of at most `room` bytes.
std::string replace(const Zyl8u* src, int len, void* state, const std::string& replacement, int room) {
    int size = 0;
    if (zylsRegExpReplaceGetSize(bytes(replacement), &size) != zylStsNoErr) {
        return "";
    }
    const Block replaceState(new char[static_cast<std::size_t>(size)]);
    if (zylsRegExpReplaceInit(bytes(replacement), replaceState.get()) != zylStsNoErr) {
        return "";
    }
    const std::unique_ptr<ZylRegExpFind[]> found(new ZylRegExpFind[Capacity]);
    const std::unique_ptr<Zyl8u[]> dst(new Zyl8u[static_cast<std::size_t>(room)]);
    int count = Capacity;
    int consumed = len;
    int written = room;
    const int status = zylsRegExpReplace_8u(src, &consumed, dst.get(), &written, found.get(), &count, state,
                                            replaceState.get());
    mustHold(written >= 0 && written <= room && consumed >= 0 && consumed <= len);
    mustHold(status != zylStsNoErr || consumed == len);
    return {dst.get(), dst.get() + written};
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::string pattern = input.line().c_str();
    const std::string options = input.line().c_str();
    const std::string replacement = input.line().c_str();
    const int len = static_cast<int>(input.rest().size());
    const std::unique_ptr<Zyl8u[]> text(new Zyl8u[input.rest().size()]);
    std::copy(input.rest().begin(), input.rest().end(), text.get());
    int stateSize = 0;
    if (zylsRegExpGetSize(pattern.c_str(), &stateSize) != zylStsNoErr) {
        return 0;
    }
    mustHold(stateSize > 0);
    const Block state(new char[static_cast<std::size_t>(stateSize)]);
    int errorOffset = 0;
    if (zylsRegExpInit(pattern.c_str(), options.c_str(), state.get(), &errorOffset) != zylStsNoErr) {
        mustHold(errorOffset >= -1 && errorOffset <= static_cast<int>(pattern.size()));
        return 0;
    }
    find(text.get(), len, state.get());
    const std::string whole = replace(text.get(), len, state.get(), replacement, 4096);
    const std::string cut = replace(text.get(), len, state.get(), replacement, len);
    mustHold(whole.size() >= 4096 || cut == whole.substr(0, cut.size()));
    const std::string same = replace(text.get(), len, state.get(), "$0", len);
    mustHold(same == input.rest().substr(0, same.size()));
    return 0;
}
