#pragma once

#include "zyltypes.h"

/// The four result registers of one processor query, asked through the library's gateway; the program
/// executes no CPUID of its own. Above leaf 0x80000000 a leaf beyond the highest one reported reads as zeros.
class CPUID {
  public:
    enum Register : int { EAX = 0, EBX = 1, ECX = 2, EDX = 3 };

    explicit CPUID(Zyl32u leaf, Zyl32u subleaf = 0);

    /// The processor has the leaf. For suites; the program goes by the zeros of one that is not there.
    bool ok() const { return m_ok; }
    Zyl32u word(Register reg) const { return m_words[reg]; }
    int getBit(Register reg, int bit) const { return getBits(reg, bit, bit); }
    /// Bits `high` to `low`, both included.
    int getBits(Register reg, int high, int low) const;
    int getByte(Register reg, int index) const { return getBits(reg, index * 8 + 7, index * 8); }

    /// One request as it stands; false if the gateway refuses.
    static bool query(Zyl32u words[4]);

    using Gateway = int (*)(Zyl64u* key, Zyl32u words[4]);
    /// Who answers: the library that is linked. A test puts a recorded processor here.
    static Gateway gateway;

  private:
    Zyl32u m_words[4] = {};
    bool m_ok = false;
};
