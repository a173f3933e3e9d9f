#include "machine/mrident.h"

#include "machine/mrcpuid.h"

int zyl_get_tamarin_ident(tamarinIdent* ident) {
    const CPUID signature(1);
    const auto eax = [&](int high, int low) { return signature.getBits(CPUID::EAX, high, low); };
    const auto ecx = [&](int bit) { return signature.getBit(CPUID::ECX, bit); };
    const auto edx = [&](int bit) { return signature.getBit(CPUID::EDX, bit); };
    const CPUID extended(0x80000001);
    const bool hasLeaf4 = CPUID(0).word(CPUID::EAX) >= 4;
    const CPUID cache(hasLeaf4 ? 4 : 0);
    const CPUID descriptors(2);
    *ident = {
        .family = eax(11, 8),
        .stepping = eax(3, 0),
        .model = eax(7, 4),
        // Bits 11 and 12: the field has always been stored one bit low.
        .type = eax(12, 11),
        .features = static_cast<int>(signature.word(CPUID::EDX)),
        .leaf2EAX = static_cast<int>(descriptors.word(CPUID::EAX)),
        .leaf2EDX = static_cast<int>(descriptors.word(CPUID::EDX)),
        .mmx = edx(23),
        .sse = edx(25),
        .sse2 = edx(26),
        .htt = edx(28),
        .sse3 = ecx(0),
        .lm64 = extended.getBit(CPUID::EDX, 29),
        .ssse3 = ecx(9),
        .cores = hasLeaf4 ? cache.getBits(CPUID::EAX, 31, 26) + 1 : 1,
        .sse41 = ecx(19),
        .sse42 = ecx(20),
        .extendedFamily = eax(27, 20),
        .extendedModel = eax(19, 16),
        .movbe = ecx(22),
        .avx = ecx(28),
        .osxsave = ecx(27),
    };
    return 0;
}
