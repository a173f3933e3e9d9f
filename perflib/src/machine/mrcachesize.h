#pragma once

#include "machine/mrcpuid.h"

/// One of the processor's caches, as CPUID leaf 4 describes it.
class mrCacheLeaf {
  public:
    /// No processor has so many; the bound ends a walk over one that never reports the last.
    static constexpr int MaxCaches = 32;

    enum Type : int { None = 0, Data = 1, Instruction = 2, Unified = 3 };

    explicit mrCacheLeaf(int index) : m_cpuid(4, static_cast<Zyl32u>(index)) {}

    /// None after the last cache.
    int type() const { return m_cpuid.getBits(CPUID::EAX, 4, 0); }
    int level() const { return m_cpuid.getBits(CPUID::EAX, 7, 5); }
    bool selfInitializing() const { return m_cpuid.getBit(CPUID::EAX, 8) != 0; }
    bool fullyAssociative() const { return m_cpuid.getBit(CPUID::EAX, 9) != 0; }
    int threadsSharing() const { return m_cpuid.getBits(CPUID::EAX, 25, 14) + 1; }
    int lineSize() const { return m_cpuid.getBits(CPUID::EBX, 11, 0) + 1; }
    int partitions() const { return m_cpuid.getBits(CPUID::EBX, 21, 12) + 1; }
    int ways() const { return m_cpuid.getBits(CPUID::EBX, 31, 22) + 1; }
    int sets() const { return static_cast<int>(m_cpuid.word(CPUID::ECX) + 1); }
    /// WBINVD and INVD are not sure to reach the caches below.
    bool writeBackBit() const { return m_cpuid.getBit(CPUID::EDX, 0) != 0; }
    bool inclusive() const { return m_cpuid.getBit(CPUID::EDX, 1) != 0; }
    /// Bytes; negative for a description that makes no sense.
    int size() const;

  private:
    CPUID m_cpuid;
};

/// The largest cache in bytes as the library reports it, 0 if it fails to.
int mrLibraryCacheSizeB();

/// The processor's largest cache in bytes: what the library says, else by CPUID leaf 4; 0 if nobody knows.
int mrGetMaxCacheSizeB();
