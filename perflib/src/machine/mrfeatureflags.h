#pragma once

#include "machine/mrcpuid.h"

/// One feature flag as the processor itself reports it.
struct FeatureFlag {
    Zyl32u leaf;
    CPUID::Register reg;
    int bit;
    const char* mnemonic;  ///< empty for a reserved bit
    const char* description;
};

constexpr int FeatureFlagsCount = 68;
/// Leaf 1 by rising bit, 32 rows of EDX and then 32 of ECX, and four flags of leaf 0x80000001.
extern const FeatureFlag FeatureFlags[FeatureFlagsCount];

/// The row of a mnemonic, or null.
const FeatureFlag* mrFindFeatureFlag(const char* mnemonic);
/// True if this processor reports the flag.
bool mrHasFeature(const FeatureFlag& flag);
