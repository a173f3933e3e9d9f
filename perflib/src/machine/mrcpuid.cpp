#include "machine/mrcpuid.h"

#include <cstring>

#include "zylcore.h"

namespace {

constexpr Zyl32u ExtendedLeaf = 0x80000000;

}  // namespace

// Valid before any initialiser runs: some of them ask.
constinit CPUID::Gateway CPUID::gateway = zylGetCpuFeatures;

bool CPUID::query(Zyl32u words[4]) {
    // The gateway overwrites part of the key, so each request brings its own.
    Zyl64u key = 0;
    std::memcpy(&key, "rawcpuid", sizeof key);
    return gateway(&key, words) == 0;
}

CPUID::CPUID(Zyl32u leaf, Zyl32u subleaf) {
    Zyl32u words[4] = {leaf, 0, subleaf, 0};
    m_ok = query(words);
    const Zyl32u first = leaf & ExtendedLeaf;
    if (m_ok && leaf != first) {
        m_ok = leaf <= CPUID(first).word(EAX);
    }
    if (m_ok) {
        std::memcpy(m_words, words, sizeof m_words);
    }
}

int CPUID::getBits(Register reg, int high, int low) const {
    const int count = high - low + 1;
    const Zyl32u mask = count >= 32 ? ~0u : (1u << count) - 1u;
    return static_cast<int>((m_words[reg] >> low) & mask);
}
