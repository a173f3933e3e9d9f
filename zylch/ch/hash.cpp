/// Hashes. The closed library does not publish what its hashes compute; the stand-in's are three published
/// ones, all on the bytes of the text (a 16-bit element is two bytes, low byte first):
///   zylsHash      CRC-32: reflected polynomial 0xEDB88320, start and final inversion 0xFFFFFFFF
///   zylsHashSJ2   FNV-1a, 32 bits
///   zylsHashMSCS  Jenkins' one-at-a-time hash

#include <cstdint>
#include <cstring>

#include "zylch.h"

namespace {

struct CrcTable {
    std::uint32_t entry[256];
};

constexpr CrcTable makeCrcTable() {
    constexpr std::uint32_t Polynomial = 0xEDB88320U;
    CrcTable table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1) ^ ((rest & 1U) != 0 ? Polynomial : 0U);
        }
        table.entry[byte] = rest;
    }
    return table;
}

constexpr CrcTable Crc32Table = makeCrcTable();

struct Crc32 {
    std::uint32_t state = 0xFFFFFFFFU;

    void add(std::uint32_t byte) { state = (state >> 8) ^ Crc32Table.entry[(state ^ byte) & 0xFFU]; }
    std::uint32_t result() const { return ~state; }
};

struct Fnv1a {
    std::uint32_t state = 0x811C9DC5U;

    void add(std::uint32_t byte) { state = (state ^ byte) * 0x01000193U; }
    std::uint32_t result() const { return state; }
};

struct OneAtATime {
    std::uint32_t state = 0;

    void add(std::uint32_t byte) {
        state += byte;
        state += state << 10;
        state ^= state >> 6;
    }
    std::uint32_t result() const {
        std::uint32_t hash = state + (state << 3);
        hash ^= hash >> 11;
        return hash + (hash << 15);
    }
};

template <class Hash>
inline void addElement(Hash& hash, Zyl8u element) {
    hash.add(element);
}

template <class Hash>
inline void addElement(Hash& hash, Zyl16u element) {
    hash.add(element & 0xFFU);
    hash.add(static_cast<std::uint32_t>(element) >> 8);
}

/// Texts may be misaligned, so their elements are loaded as bytes.
template <class Element>
inline Element elementAt(const Element* src, int index) {
    Element element;
    std::memcpy(&element, src + index, sizeof element);
    return element;
}

template <class Hash, class Element>
int hashOf(const Element* src, int len, Zyl32u* result) {
    if (src == nullptr || result == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0) {
        return zylStsSizeErr;
    }
    Hash hash;
    for (int i = 0; i < len; ++i) {
        addElement(hash, elementAt(src, i));
    }
    *result = hash.result();
    return zylStsNoErr;
}

}  // namespace

int zylsHash_8u32u(const Zyl8u* src, int len, Zyl32u* hash) { return hashOf<Crc32>(src, len, hash); }

int zylsHash_16u32u(const Zyl16u* src, int len, Zyl32u* hash) { return hashOf<Crc32>(src, len, hash); }

int zylsHashSJ2_8u32u(const Zyl8u* src, int len, Zyl32u* hash) { return hashOf<Fnv1a>(src, len, hash); }

int zylsHashSJ2_16u32u(const Zyl16u* src, int len, Zyl32u* hash) { return hashOf<Fnv1a>(src, len, hash); }

int zylsHashMSCS_8u32u(const Zyl8u* src, int len, Zyl32u* hash) { return hashOf<OneAtATime>(src, len, hash); }

int zylsHashMSCS_16u32u(const Zyl16u* src, int len, Zyl32u* hash) {
    return hashOf<OneAtATime>(src, len, hash);
}
