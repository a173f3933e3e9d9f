// The processor's own description, at the head of every listing.

#include <algorithm>
#include <bit>
#include <cstring>

#include "job/mrinfotest.h"
#include "machine/mrcpufeatures.h"
#include "machine/mrfeatureflags.h"
#include "machine/mrlibrary.h"
#include "stream/mrinventory.h"

namespace {

constexpr Zyl32u ExtendedLeaf = 0x80000000;

void print(const char* label, const mrString& value, const char* remark = "") {
    g_ostrm << "    " << label << value << remark << "\n";
}

void print(const char* sentence) { print(sentence, ""); }

mrString word8(Zyl32u value) { return mrFormat("0x%08X", value); }

mrString byte2(int value) { return mrFormat("0x%02X", static_cast<unsigned>(value)); }

/// A number in front of a remark, or under one that has one.
mrString number4(int value) { return mrFormat("%-4d", value); }

mrString vendorString() {
    const CPUID leaf(0);
    const Zyl32u words[] = {leaf.word(CPUID::EBX), leaf.word(CPUID::EDX), leaf.word(CPUID::ECX)};
    char text[sizeof words + 1] = "";
    std::memcpy(text, words, sizeof words);
    return text;
}

mrString brandString() {
    char text[3 * 4 * sizeof(Zyl32u) + 1] = "";
    char* end = text;
    for (Zyl32u leaf = ExtendedLeaf + 2; leaf <= ExtendedLeaf + 4; ++leaf) {
        const CPUID piece(leaf);
        for (const CPUID::Register reg : {CPUID::EAX, CPUID::EBX, CPUID::ECX, CPUID::EDX}) {
            const Zyl32u word = piece.word(reg);
            std::memcpy(end, &word, sizeof word);
            end += sizeof word;
        }
    }
    return text;
}

void printHeader() {
    g_ostrm << "    Zorva(R) Processor Identification\n"
            << "    Got by CPUID Instruction Functions\n";
    print("Largest Standard Function ", word8(CPUID(0).word(CPUID::EAX)));
    print("Largest Extended Function ", word8(CPUID(ExtendedLeaf).word(CPUID::EAX)));
    const mrString vendor = vendorString();
    if (!(vendor == "GenuineZorva")) {
        g_ostrm << "\n    ATTENTION! It is not Genuine Zorva processor.\n    Information below may be "
                   "inadequate.\n";
    }
    print("Vendor-ID      ", vendor);
    print("Brand String   ", brandString());
}

/// Family and model are the ones to look up: the extended fields count only for the families that have them.
void printSignature() {
    const CPUID leaf(1);
    const auto eax = [&](int high, int low) { return leaf.getBits(CPUID::EAX, high, low); };
    constexpr int lastPlainFamily = 15;
    const int family = eax(11, 8);
    const bool extendedModel = family == 6 || family == lastPlainFamily;
    g_ostrm << "\n    Processor Identification Signature\n\n";
    print("Family   ", byte2(family == lastPlainFamily ? family + eax(27, 20) : family));
    print("Model    ", byte2(extendedModel ? eax(19, 16) << 4 | eax(7, 4) : eax(7, 4)));
    print("Stepping ", byte2(eax(3, 0)));
    print("Type     ", byte2(eax(13, 12)));
    print("Brand ID ", byte2(leaf.getByte(CPUID::EBX, 0)));
}

struct Topology {
    int logicals;  ///< per package
    int cores;     ///< per package
};

/// What leaves 1 and 4 have room for, which can be more than there is.
Topology reservedTopology() {
    return {CPUID(1).getByte(CPUID::EBX, 2), CPUID(4).getBits(CPUID::EAX, 31, 26) + 1};
}

/// What leaf 11 tells level by level, where it is there.
Topology topology() {
    constexpr int threadLevel = 1;
    constexpr int coreLevel = 2;
    constexpr Zyl32u maxLevels = 8;
    int threads = 0;
    int logicals = 0;
    for (Zyl32u level = 0; level < maxLevels; ++level) {
        const CPUID leaf(11, level);
        const int type = leaf.getByte(CPUID::ECX, 1);
        const int count = leaf.getBits(CPUID::EBX, 15, 0);
        if (type == 0 || count == 0) {
            break;
        }
        threads = type == threadLevel ? count : threads;
        logicals = type == threadLevel || type == coreLevel ? count : logicals;
    }
    return logicals > 0 ? Topology{logicals, logicals / std::max(threads, 1)} : reservedTopology();
}

void printMultiThreading() {
    g_ostrm << "\n    Multi Threading Features\n\n";
    const FeatureFlag* threading = mrFindFeatureFlag("HTT");
    print(threading->description, mrHasFeature(*threading) ? " is supported" : " is not supported");
    const Topology counts = topology();
    print("Logical Processors ", number4(counts.logicals),
          " - Number of logical processors per physical package");
    print("Cores per Package  ", number4(counts.cores), " - Maximum number of processor cores per package");
}

mrString cacheTypeName(int type) {
    switch (type) {
        case mrCacheLeaf::Data:
            return "Data Cache";
        case mrCacheLeaf::Instruction:
            return "Instruction Cache";
        case mrCacheLeaf::Unified:
            return "Unified Cache";
        default:
            return mrString("code ") + byte2(type);
    }
}

/// False after the last cache.
bool printCacheParms(int index) {
    const mrCacheLeaf cache(index);
    if (cache.type() == mrCacheLeaf::None) {
        return false;
    }
    g_ostrm << "\n";
    print("Cache Type ", cacheTypeName(cache.type()));
    print("Cache Level       ", number4(cache.level()));
    print("Cache Size Kb     ", number4(cache.size() / 1024));
    print("Threads Sharing   ", number4(cache.threadsSharing()),
          " - Maximum number of threads sharing this cache");
    print("Number of Sets    ", number4(cache.sets()));
    print("Line Size         ", number4(cache.lineSize()), " - System coherency line size");
    print("Line Partitions   ", number4(cache.partitions()), " - Physical line partitions");
    print("Associativity     ", number4(cache.ways()), " - Ways of associativity");
    const struct {
        bool holds;
        const char* sentence;
    } properties[] = {
        {cache.fullyAssociative(), "Fully Associative cache"},
        {cache.selfInitializing(), "Self Initializing cache level"},
        {cache.inclusive(), "Cache is inclusive to lower cache levels"},
        {cache.writeBackBit(), "WBINVD/INVD behavior on lower level caches"},
    };
    for (const auto& property : properties) {
        if (property.holds) {
            print(property.sentence);
        }
    }
    return true;
}

mrString associativityName(int code) {
    switch (code) {
        case 0:
            return "Disabled";
        case 1:
            return "Direct mapped";
        case 2:
            return "2-Way";
        case 4:
            return "4-Way";
        case 6:
            return "8-Way";
        case 8:
            return "16-Way";
        case 15:
            return "Fully associative";
        default:
            return mrString("code ") + byte2(code);
    }
}

void printL2Features() {
    const CPUID leaf(ExtendedLeaf + 6);
    g_ostrm << "\n    Extended L2 Cache Features\n\n";
    print("L2 Cache Size Kb       ", mrText(leaf.getBits(CPUID::ECX, 31, 16)));
    print("L2 Cache Line Size     ", mrText(leaf.getByte(CPUID::ECX, 0)));
    print("L2 Cache Associativity ", associativityName(leaf.getBits(CPUID::ECX, 15, 12)));
}

/// What the processor has, and what the library makes use of.
struct FeatureMasks {
    Zyl64u cpu;
    Zyl64u enabled;
};

/// A name that is longer than its field pushes the marks to the right.
void printMaskFlag(const mrString& name, Zyl64u bit, const FeatureMasks& masks, const char* description) {
    const auto mark = [&](Zyl64u mask) { return (mask & bit) != 0 ? "+" : "-"; };
    print("",
          mrFormat("%-20s%-5s%-9s%-30s", name.c_str(), mark(masks.cpu), mark(masks.enabled), description));
}

void printFeatureRows(const FeatureMasks& masks) {
    constexpr Zyl64u avxEnabledByOs = 0x200;
    for (int i = 0; i < mrCpuFeatures::NumFeatures; ++i) {
        const mrCpuFeatures::Row& row = mrCpuFeatures::cpuFeatureArray[i];
        const mrString label = row.label;
        // A row's mask holds the features below it too; its own bit is the highest.
        printMaskFlag(mrString("zylCPUID_") + label, std::bit_floor(row.mask), masks, row.name);
        if (label == "AVX") {
            printMaskFlag("zylAVX_ENABLEDBYOS", avxEnabledByOs, masks, "AVX enabled by the operating system");
        }
    }
}

void printFeatureFlags() {
    g_ostrm << "\n    Feature Flags\n    got by zylGetCpuFeatures & zylGetEnabledCpuFeatures\n\n";
    FeatureMasks masks = {};
    Zyl32u registers[4] = {};
    const int status = zyl_GetCpuFeatures(&masks.cpu, registers);
    if (status != 0) {
        reportStatus(status);
        return;
    }
    masks.enabled = zyl_GetEnabledCpuFeatures();
    print("", mrFormat("%-20s%-5s%-9s", "Features", "CPU", "Enabled"));
    printFeatureRows(masks);
}

}  // namespace

void __mrZorvaCpuTest::printInformation() {
    printHeader();
    printSignature();
    printMultiThreading();
    int index = 0;
    while (index < mrCacheLeaf::MaxCaches && printCacheParms(index)) {
        ++index;
    }
    printL2Features();
    printFeatureFlags();
}
