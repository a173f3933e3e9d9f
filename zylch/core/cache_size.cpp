#include <cpuid.h>

#include <algorithm>
#include <limits>

#include "zylcore.h"

namespace {

constexpr unsigned CacheLeaf = 4;
constexpr unsigned OlderCacheLeaf = 0x80000006;
/// No processor describes as many caches; the bound ends the walk on one that never says "no more".
constexpr unsigned MostCaches = 32;

/// `count` bits of `word` from bit `first` on.
constexpr unsigned field(unsigned word, unsigned first, unsigned count) {
    return word >> first & ((1U << count) - 1);
}

/// Bytes of the largest cache that leaf 4 describes, 0 if none. Each factor is stored less 1.
Zyl64u largestOfLeaf4() {
    Zyl64u largest = 0;
    for (unsigned index = 0; index < MostCaches; ++index) {
        unsigned eax = 0;
        unsigned ebx = 0;
        unsigned ecx = 0;
        unsigned edx = 0;
        if (__get_cpuid_count(CacheLeaf, index, &eax, &ebx, &ecx, &edx) == 0 || field(eax, 0, 5) == 0) {
            break;
        }
        const Zyl64u lineBytes = field(ebx, 0, 12) + 1;
        const Zyl64u partitions = field(ebx, 12, 10) + 1;
        const Zyl64u ways = field(ebx, 22, 10) + 1;
        largest = std::max(largest, lineBytes * partitions * ways * (Zyl64u{ecx} + 1));
    }
    return largest;
}

/// The second level in KB, the third in units of 512 KB.
Zyl64u largestOfOlderLeaf() {
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    if (__get_cpuid(OlderCacheLeaf, &eax, &ebx, &ecx, &edx) == 0) {
        return 0;
    }
    return std::max(Zyl64u{field(ecx, 16, 16)} << 10, Zyl64u{field(edx, 18, 14)} << 19);
}

}  // namespace

int zylGetMaxCacheSizeB(int* size) {
    if (size == nullptr) {
        return zylStsNullPtrErr;
    }
    Zyl64u largest = largestOfLeaf4();
    if (largest == 0) {
        largest = largestOfOlderLeaf();
    }
    *size = static_cast<int>(std::min(largest, Zyl64u{std::numeric_limits<int>::max()}));
    return largest != 0 ? zylStsNoErr : zylStsNotSupportedErr;
}
