#include "machine/mrfeatureflags.h"

#include <cstring>

// Mnemonics are those of old listings, "RDRRAND" with its two R included.
constexpr FeatureFlag FeatureFlags[FeatureFlagsCount] = {
    {1, CPUID::EDX, 0, "FPU", "Floating-point unit on chip"},
    {1, CPUID::EDX, 1, "VME", "Virtual 8086 mode extensions"},
    {1, CPUID::EDX, 2, "DE", "Debugging extensions"},
    {1, CPUID::EDX, 3, "PSE", "Page size extensions"},
    {1, CPUID::EDX, 4, "TSC", "Time-stamp counter"},
    {1, CPUID::EDX, 5, "MSR", "Model-specific registers"},
    {1, CPUID::EDX, 6, "PAE", "Physical address extension"},
    {1, CPUID::EDX, 7, "MCE", "Machine check exception"},
    {1, CPUID::EDX, 8, "CX8", "CMPXCHG8B instruction"},
    {1, CPUID::EDX, 9, "APIC", "Local interrupt controller on chip"},
    {1, CPUID::EDX, 10, "", ""},
    {1, CPUID::EDX, 11, "SEP", "SYSENTER and SYSEXIT instructions"},
    {1, CPUID::EDX, 12, "MTRR", "Memory type range registers"},
    {1, CPUID::EDX, 13, "PGE", "Page global bit"},
    {1, CPUID::EDX, 14, "MCA", "Machine check architecture"},
    {1, CPUID::EDX, 15, "CMOV", "Conditional move instructions"},
    {1, CPUID::EDX, 16, "PAT", "Page attribute table"},
    {1, CPUID::EDX, 17, "PSE-36", "36-bit page size extension"},
    {1, CPUID::EDX, 18, "PSN", "Processor serial number"},
    {1, CPUID::EDX, 19, "CLFSH", "CLFLUSH instruction"},
    {1, CPUID::EDX, 20, "", ""},
    {1, CPUID::EDX, 21, "DS", "Debug store"},
    {1, CPUID::EDX, 22, "ACPI", "Thermal monitor and clock control by software"},
    {1, CPUID::EDX, 23, "MMX", "Multimedia Extensions"},
    {1, CPUID::EDX, 24, "FXSR", "FXSAVE and FXRSTOR instructions"},
    {1, CPUID::EDX, 25, "SSE", "Streaming SIMD Extensions"},
    {1, CPUID::EDX, 26, "SSE2", "Streaming SIMD Extensions 2"},
    {1, CPUID::EDX, 27, "SS", "Self snoop"},
    {1, CPUID::EDX, 28, "HTT", "Hyper-Threading Technology"},
    {1, CPUID::EDX, 29, "TM", "Thermal monitor"},
    {1, CPUID::EDX, 30, "IA64", "Processor of a 64-bit architecture in 32-bit emulation"},
    {1, CPUID::EDX, 31, "PBE", "Pending break enable"},
    {1, CPUID::ECX, 0, "SSE3", "Streaming SIMD Extensions 3"},
    {1, CPUID::ECX, 1, "PCLMULQDQ", "Carry-less multiplication instruction"},
    {1, CPUID::ECX, 2, "DTES64", "64-bit debug store"},
    {1, CPUID::ECX, 3, "MONITOR", "MONITOR and MWAIT instructions"},
    {1, CPUID::ECX, 4, "DS-CPL", "Debug store qualified by privilege level"},
    {1, CPUID::ECX, 5, "VMX", "Virtual machine extensions"},
    {1, CPUID::ECX, 6, "SMX", "Safer mode extensions"},
    {1, CPUID::ECX, 7, "EST", "Enhanced speed stepping"},
    {1, CPUID::ECX, 8, "TM2", "Thermal monitor 2"},
    {1, CPUID::ECX, 9, "SSSE3", "Supplemental Streaming SIMD Extensions 3"},
    {1, CPUID::ECX, 10, "CNXT-ID", "L1 context identifier"},
    {1, CPUID::ECX, 11, "", ""},
    {1, CPUID::ECX, 12, "FMA", "Fused multiply-add instructions"},
    {1, CPUID::ECX, 13, "CX16", "CMPXCHG16B instruction"},
    {1, CPUID::ECX, 14, "xTPR", "Task priority message update control"},
    {1, CPUID::ECX, 15, "PDCM", "Performance monitoring and debug capabilities"},
    {1, CPUID::ECX, 16, "", ""},
    {1, CPUID::ECX, 17, "", ""},
    {1, CPUID::ECX, 18, "DCA", "Direct cache access"},
    {1, CPUID::ECX, 19, "SSE4.1", "Streaming SIMD Extensions 4.1"},
    {1, CPUID::ECX, 20, "SSE4.2", "Streaming SIMD Extensions 4.2"},
    {1, CPUID::ECX, 21, "x2APIC", "Extended interrupt controller mode"},
    {1, CPUID::ECX, 22, "MOVBE", "Move with byte swap instruction"},
    {1, CPUID::ECX, 23, "POPCNT", "Bit count instruction"},
    {1, CPUID::ECX, 24, "", ""},
    {1, CPUID::ECX, 25, "AES", "Advanced Encryption Standard instruction set"},
    {1, CPUID::ECX, 26, "XSAVE", "XSAVE and XRSTOR instructions"},
    {1, CPUID::ECX, 27, "OSXSAVE", "XSAVE enabled by the operating system"},
    {1, CPUID::ECX, 28, "AVX", "Advanced Vector Extensions instruction set"},
    {1, CPUID::ECX, 29, "Float16", "16-bit floating-point conversion instructions"},
    {1, CPUID::ECX, 30, "RDRRAND", "Random number instruction"},
    {1, CPUID::ECX, 31, "", ""},
    {0x80000001, CPUID::EDX, 11, "SYSCALL", "SYSCALL and SYSRET instructions"},
    {0x80000001, CPUID::EDX, 20, "XD Bit", "Execute disable bit"},
    {0x80000001, CPUID::EDX, 29, "Zorva(R)64", "64-bit architecture"},
    {0x80000001, CPUID::ECX, 0, "LAHF", "LAHF and SAHF instructions in 64-bit mode"},
};

const FeatureFlag* mrFindFeatureFlag(const char* mnemonic) {
    for (const FeatureFlag& flag : FeatureFlags) {
        if (std::strcmp(flag.mnemonic, mnemonic) == 0) {
            return &flag;
        }
    }
    return nullptr;
}

bool mrHasFeature(const FeatureFlag& flag) { return CPUID(flag.leaf).getBit(flag.reg, flag.bit) != 0; }
