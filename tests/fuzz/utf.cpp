/// UTF-8 to UTF-16 and back, by each code path. The first byte tells the room of the target, the rest is
/// text.

#include <cstring>
#include <memory>

#include "fuzz.h"
#include "zylch.h"
#include "zylcore.h"

namespace {

template <class To>
struct Converted {
    int status;
    int consumed;
    std::basic_string<To> text;

    bool operator==(const Converted&) const = default;
};

/// Between heap blocks of the exact sizes, so that one element too far is noticed.
template <class To, class From, class Convert>
Converted<To> converted(const std::basic_string<From>& text, int room, Convert convert) {
    const std::unique_ptr<From[]> src(new From[text.size()]);
    std::memcpy(src.get(), text.data(), text.size() * sizeof(From));
    const std::unique_ptr<To[]> dst(new To[static_cast<std::size_t>(room)]);
    int consumed = static_cast<int>(text.size());
    int written = room;
    const int status = convert(src.get(), &consumed, dst.get(), &written, 0);
    mustHold(consumed >= 0 && consumed <= static_cast<int>(text.size()) && written >= 0 && written <= room);
    return {status, consumed, {dst.get(), dst.get() + written}};
}

/// By the best path, which has to give what the plain one gives.
template <class To, class From, class Convert>
Converted<To> convertedAlike(const std::basic_string<From>& text, int room, Convert convert) {
    Zyl64u features = 0;
    zylGetCpuFeatures(&features, nullptr);
    const auto best = converted<To>(text, room, convert);
    for (const Zyl64u without : {0x4ULL, 0x8000ULL}) {
        zylSetCpuFeatures(features & ~without);
        mustHold(converted<To>(text, room, convert) == best);
    }
    zylInit();
    return best;
}

/// Both directions with that room; a text that is taken as a whole must come back as it was.
template <class To, class From, class There, class Back>
void roundTrip(const std::basic_string<From>& text, int room, There there, Back back) {
    convertedAlike<To>(text, room, there);
    const int enough = 3 * static_cast<int>(text.size());
    const auto whole = convertedAlike<To>(text, enough, there);
    const auto returned = convertedAlike<From>(whole.text, 3 * enough, back);
    mustHold(returned.text == text.substr(0, static_cast<std::size_t>(whole.consumed)));
    mustHold(returned.status == zylStsNoErr);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::basic_string<Zyl8u> text(data + 1, data + size);
    roundTrip<Zyl16u>(text, data[0], zylsConvertUTF_8u16u, zylsConvertUTF_16u8u);
    std::basic_string<Zyl16u> units(text.size() / sizeof(Zyl16u), 0);
    std::memcpy(units.data(), text.data(), units.size() * sizeof(Zyl16u));
    roundTrip<Zyl8u>(units, data[0], zylsConvertUTF_16u8u, zylsConvertUTF_8u16u);
    return 0;
}
