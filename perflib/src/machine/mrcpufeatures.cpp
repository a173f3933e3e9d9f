#include "machine/mrcpufeatures.h"

#include <memory>

// Masks are sums: a feature brings what it stands on, a code path all that it uses. Neighbours of equal mask
// are the 32-bit and the 64-bit build of one path.
constexpr mrCpuFeatures::Row mrCpuFeatures::cpuFeatureArray[NumRows] = {
    {"MMX", 0x1, "Multimedia Extensions"},
    {"SSE", 0x3, "Streaming SIMD Extensions"},
    {"SSE2", 0x7, "Streaming SIMD Extensions 2"},
    {"SSE3", 0xf, "Streaming SIMD Extensions 3"},
    {"SSSE3", 0x1f, "Supplemental Streaming SIMD Extensions 3"},
    {"MOVBE", 0x3f, "Move with byte swap instruction"},
    {"SSE41", 0x5f, "Streaming SIMD Extensions 4.1"},
    {"SSE42", 0xdf, "Streaming SIMD Extensions 4.2"},
    {"AVX", 0x1df, "Advanced Vector Extensions instruction set"},
    {"AES", 0x400, "Advanced Encryption Standard instruction set"},
    {"CLMUL", 0x800, "Carry-less multiplication instruction"},
    {"RDRAND", 0x2000, "Random number instruction"},
    {"F16C", 0x4000, "16-bit floating-point conversion instructions"},
    {"AVX2", 0x81df, "Advanced Vector Extensions 2 instruction set"},
    {"ADCOX", 0x10000, "Multi-precision addition instructions ADCX and ADOX"},
    {"RDSEED", 0x20000, "Random seed instruction"},
    {"PREFETCHW", 0x40000, "Prefetch for writing instruction"},
    {"SHA", 0x80000, "Secure Hash Algorithm instruction set"},
    {"AVX512F", 0x100000, "Advanced Vector Extensions 512 Foundation instruction set"},
    {"AVX512CD", 0x200000, "Advanced Vector Extensions 512 CD instruction set"},
    {"AVX512ER", 0x400000, "Advanced Vector Extensions 512 ER instruction set"},
    {"AVX512PF", 0x800000, "Advanced Vector Extensions 512 PF instruction set"},
    {"AVX512BW", 0x1000000, "Advanced Vector Extensions 512 BW instruction set"},
    {"AVX512DQ", 0x2000000, "Advanced Vector Extensions 512 DQ instruction set"},
    {"AVX512VL", 0x4000000, "Advanced Vector Extensions 512 VL instruction set"},
    {"AVX512VBMI", 0x8000000, "Advanced Vector Extensions 512 VBMI instruction set"},
    {"MPX", 0x10000000, "Memory Protection Extensions"},
    {"AVX512_4FMADDPS", 0x20000000, "Advanced Vector Extensions 512 4FMADDPS instruction set"},
    {"AVX512_4VNNIW", 0x40000000, "Advanced Vector Extensions 512 4VNNIW instruction set"},
    {"AVX512IFMA", 0x100000000, "Advanced Vector Extensions 512 IFMA instruction set"},
    {"WIDEVEC", 0x80000000, "Wide vector instruction set"},
    {"AVX512VPOPCNTDQ", 0x400000000, "Advanced Vector Extensions 512 VPOPCNTDQ instruction set"},
    {"AVX512_BITALG", 0x800000000, "Advanced Vector Extensions 512 BITALG instruction set"},
    {"AVX512_FP16", 0x1000000000, "Advanced Vector Extensions 512 FP16 instruction set"},
    {"D0", 0x3, "D0 library version"},
    {"D1", 0x7, "D1 library version"},
    {"D2", 0xf, "D2 library version"},
    {"D3", 0x3f, "D3 library version"},
    {"D4", 0x3f, "D4 library version"},
    {"D5", 0xdf, "D5 library version"},
    {"D6", 0xdf, "D6 library version"},
    {"D7", 0x6cdf, "D7 library version"},
    {"D8", 0x6cdf, "D8 library version"},
    {"D9", 0x1df, "D9 library version"},
    {"D10", 0x1df, "D10 library version"},
    {"D11", 0x6ddf, "D11 library version"},
    {"D12", 0x6ddf, "D12 library version"},
    {"D13", 0x81df, "D13 library version"},
    {"D14", 0x81df, "D14 library version"},
    {"D15", 0xfeddf, "D15 library version"},
    {"D16", 0xfeddf, "D16 library version"},
    {"D17", 0xf081df, "D17 library version"},
    {"D18", 0xf7eddf, "D18 library version"},
    {"D19", 0x73081df, "D19 library version"},
    {"D20", 0x737eddf, "D20 library version"},
    {"D21", 0x10f3feddf, "D21 library version"},
    {"D22", 0x110f3feddf, "D22 library version"},
};

namespace {

using Row = mrCpuFeatures::Row;

/// The first row for which `holds` is true, or null.
template <class Condition>
const Row* findRow(Condition holds) {
    for (const Row& row : mrCpuFeatures::cpuFeatureArray) {
        if (holds(row)) {
            return &row;
        }
    }
    return nullptr;
}

const Row* findMask(unsigned long long mask) {
    return findRow([&](const Row& row) { return row.mask == mask; });
}

}  // namespace

unsigned long long mrCpuFeatures::cpuFeatures(mrString list) {
    int count = 0;
    split(nullptr, list, ',', count);
    const auto labels = std::make_unique<mrString[]>(static_cast<std::size_t>(count));
    split(labels.get(), list, ',', count);
    unsigned long long mask = 0;
    for (int i = 0; i < count; ++i) {
        const mrString& label = labels[static_cast<std::size_t>(i)];
        const Row* found = findRow([&](const Row& row) { return label == row.label; });
        mask |= found != nullptr ? found->mask : 0;
    }
    return mask;
}

mrString mrCpuFeatures::cpuName(unsigned long long mask) {
    const Row* row = findMask(mask);
    return row != nullptr ? row->name : "Unknown processor";
}

mrString mrCpuFeatures::cpuLabel(unsigned long long mask) {
    const Row* row = findMask(mask);
    return row != nullptr ? row->label : "Undefined";
}

mrString mrCpuFeatures::optimizedList() {
    mrString text;
    for (const Row& row : cpuFeatureArray) {
        text << listLine(row);
    }
    return text;
}

mrString mrCpuFeatures::listLine(const Row& row) {
    constexpr int labelWidth = 9;
    const mrString label = mrString(row.label).padRight(labelWidth);
    if (row.mask == 0) {
        return label + ": non optimized code\n";
    }
    const mrString name = row.name;
    return name.beginsWith("Techno") ? "" : label + ": optimized for " + name + "\n";
}

void split(mrString* items, const mrString& text, char separator, int& count) {
    count = 0;
    int start = 0;
    for (int i = 0; i <= text.length(); ++i) {
        if (i == text.length() || text[i] == separator) {
            if (items != nullptr) {
                items[count] = text.substr(start, i - start);
            }
            ++count;
            start = i + 1;
        }
    }
}
