#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "machine/mrcpuid.h"

/// What a processor answers to CPUID. Vendor and brand stand for the leaves that hold them.
struct ProcessorRecord {
    struct Leaf {
        Zyl32u leaf;
        Zyl32u subleaf;
        Zyl32u words[4];
    };
    const char* vendor;
    const char* brand;
    Zyl32u highest;
    Zyl32u highestExtended;  ///< 0: it has no extended leaves
    std::vector<Leaf> leaves;
};

/// Puts a recorded processor behind the CPUID queries for as long as it lives.
class RecordedProcessor {
  public:
    explicit RecordedProcessor(ProcessorRecord record) {
        s_record = std::move(record);
        CPUID::gateway = answer;
    }
    RecordedProcessor(const RecordedProcessor&) = delete;
    ~RecordedProcessor() { CPUID::gateway = m_before; }

  private:
    static int answer(Zyl64u* key, Zyl32u words[4]) {
        if (std::memcmp(key, "rawcpuid", sizeof *key) != 0) {
            return -1;
        }
        std::memset(key, 0, 4);
        registers(words[0], words[2], words);
        return 0;
    }

    static void registers(Zyl32u leaf, Zyl32u subleaf, Zyl32u words[4]) {
        const bool extended = leaf >= 0x80000000;
        // A leaf that is not there is answered with the highest plain one.
        if (leaf > (extended ? s_record.highestExtended : s_record.highest)) {
            return registers(s_record.highest, subleaf, words);
        }
        std::memset(words, 0, 4 * sizeof *words);
        if (leaf == 0) {
            std::string vendor = s_record.vendor;
            vendor.resize(12);
            words[0] = s_record.highest;
            std::memcpy(&words[1], vendor.data(), 4);
            std::memcpy(&words[3], vendor.data() + 4, 4);
            std::memcpy(&words[2], vendor.data() + 8, 4);
        } else if (leaf == 0x80000000) {
            words[0] = s_record.highestExtended;
        } else if (leaf >= 0x80000002 && leaf <= 0x80000004) {
            std::string brand = s_record.brand;
            brand.resize(48);
            std::memcpy(words, &brand[(leaf - 0x80000002) * 16], 16);
        }
        for (const ProcessorRecord::Leaf& entry : s_record.leaves) {
            if (entry.leaf == leaf && entry.subleaf == subleaf) {
                std::memcpy(words, entry.words, sizeof entry.words);
            }
        }
    }

    static inline ProcessorRecord s_record;
    const CPUID::Gateway m_before = CPUID::gateway;
};
