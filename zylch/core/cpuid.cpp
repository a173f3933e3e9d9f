#include <cpuid.h>

#include <cstring>

#include "zylcore.h"

namespace {

constexpr char GatewayKey[] = "rawcpuid";
constexpr unsigned Overwritten = 4;

enum Word { leaf1Ecx, leaf1Edx, leaf7Ebx, leaf7Ecx, leaf7Edx, extended1Ecx, wordCount };

/// The registers that the system has to save before a feature is of use.
enum State { anyState, ymmState, zmmState };

struct Feature {
    Zyl64u mask;
    Word word;
    unsigned bit;
    State state;
};

constexpr Feature Features[] = {
    {0x1, leaf1Edx, 23, anyState},           // MMX
    {0x2, leaf1Edx, 25, anyState},           // SSE
    {0x4, leaf1Edx, 26, anyState},           // SSE2
    {0x8, leaf1Ecx, 0, anyState},            // SSE3
    {0x10, leaf1Ecx, 9, anyState},           // SSSE3
    {0x20, leaf1Ecx, 22, anyState},          // MOVBE
    {0x40, leaf1Ecx, 19, anyState},          // SSE4.1
    {0x80, leaf1Ecx, 20, anyState},          // SSE4.2
    {0x100, leaf1Ecx, 28, ymmState},         // AVX
    {0x200, leaf1Ecx, 28, ymmState},         // AVX, enabled by the system
    {0x400, leaf1Ecx, 25, anyState},         // AES
    {0x800, leaf1Ecx, 1, anyState},          // CLMUL
    {0x2000, leaf1Ecx, 30, anyState},        // RDRAND
    {0x4000, leaf1Ecx, 29, ymmState},        // F16C
    {0x8000, leaf7Ebx, 5, ymmState},         // AVX2
    {0x10000, leaf7Ebx, 19, anyState},       // ADCOX
    {0x20000, leaf7Ebx, 18, anyState},       // RDSEED
    {0x40000, extended1Ecx, 8, anyState},    // PREFETCHW
    {0x80000, leaf7Ebx, 29, anyState},       // SHA
    {0x100000, leaf7Ebx, 16, zmmState},      // AVX-512 F
    {0x200000, leaf7Ebx, 28, zmmState},      // CD
    {0x400000, leaf7Ebx, 27, zmmState},      // ER
    {0x800000, leaf7Ebx, 26, zmmState},      // PF
    {0x1000000, leaf7Ebx, 30, zmmState},     // BW
    {0x2000000, leaf7Ebx, 17, zmmState},     // DQ
    {0x4000000, leaf7Ebx, 31, zmmState},     // VL
    {0x8000000, leaf7Ecx, 1, zmmState},      // VBMI
    {0x10000000, leaf7Ebx, 14, anyState},    // MPX
    {0x20000000, leaf7Edx, 3, zmmState},     // 4FMADDPS
    {0x40000000, leaf7Edx, 2, zmmState},     // 4VNNIW
    {0x100000000, leaf7Ebx, 21, zmmState},   // IFMA
    {0x400000000, leaf7Ecx, 14, zmmState},   // VPOPCNTDQ
    {0x800000000, leaf7Ecx, 12, zmmState},   // BITALG
    {0x1000000000, leaf7Edx, 23, zmmState},  // FP16
};

/// The feature words; those of a leaf that the processor lacks are 0.
struct FeatureWords {
    unsigned word[wordCount] = {};

    FeatureWords() {
        unsigned unused = 0;
        unsigned unused2 = 0;
        __get_cpuid(1, &unused, &unused2, &word[leaf1Ecx], &word[leaf1Edx]);
        __get_cpuid_count(7, 0, &unused, &word[leaf7Ebx], &word[leaf7Ecx], &word[leaf7Edx]);
        __get_cpuid(0x80000001, &unused, &unused2, &word[extended1Ecx], &unused);
    }

    bool has(const Feature& feature) const { return (word[feature.word] >> feature.bit & 1) != 0; }
    bool hasXgetbv() const { return (word[leaf1Ecx] >> 27 & 1) != 0; }
};

/// The register state that the system saves on a task switch, as far as a feature depends on it.
State savedState(const FeatureWords& words) {
    constexpr unsigned ymm = 0x6;
    constexpr unsigned zmm = 0xE6;
    if (!words.hasXgetbv()) {
        return anyState;
    }
    unsigned low = 0;
    unsigned high = 0;
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    if ((low & zmm) == zmm) {
        return zmmState;
    }
    return (low & ymm) == ymm ? ymmState : anyState;
}

Zyl64u featureMask() {
    const FeatureWords words;
    const State saved = savedState(words);
    Zyl64u mask = 0;
    for (const Feature& feature : Features) {
        if (words.has(feature) && feature.state <= saved) {
            mask |= feature.mask;
        }
    }
    return mask;
}

int gateway(Zyl64u* key, Zyl32u registers[4]) {
    if (registers == nullptr) {
        return zylStsNullPtrErr;
    }
    const Zyl32u leaf = registers[0];
    const Zyl32u subLeaf = registers[2];
    __cpuid_count(leaf, subLeaf, registers[0], registers[1], registers[2], registers[3]);
    std::memset(key, 0, Overwritten);
    return zylStsNoErr;
}

}  // namespace

int zylGetCpuFeatures(Zyl64u* mask, Zyl32u registers[4]) {
    if (mask == nullptr) {
        return zylStsNullPtrErr;
    }
    if (std::memcmp(mask, GatewayKey, sizeof *mask) == 0) {
        return gateway(mask, registers);
    }
    *mask = featureMask();
    return zylStsNoErr;
}
