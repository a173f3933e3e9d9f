#pragma once

#include "job/mrregistry.h"
#include "machine/mrcpuid.h"
#include "zylch.h"
#include "zylcore.h"

/// Binds the framework to the library under test. A unit that includes this registers the environment and the
/// version before anything else of its own; the last environment given counts, and equal versions show once.

/// Fills the framework's pointers. The clock pair is the one that serialises by RDTSCP where the processor
/// has it.
inline void zySetZylEnvironment() {
    zyl_GetCpuFeatures = zylGetCpuFeatures;
    zyl_GetEnabledCpuFeatures = zylGetEnabledCpuFeatures;
    zyl_Init = zylInit;
    zyl_SetCpuFeatures = zylSetCpuFeatures;
    zyl_GetMaxCacheSizeB = zylGetMaxCacheSizeB;
    zyl_GetStatusString = zylGetStatusString;
    constexpr Zyl32u ExtendedFeatures = 0x80000001;
    constexpr int Rdtscp = 27;
    const bool hasRdtscp = CPUID(ExtendedFeatures).getBit(CPUID::EDX, Rdtscp) != 0;
    zyl_StartCpuClocks = hasRdtscp ? zylStartTscp : zylStartTsc;
    zyl_StopCpuClocks = hasRdtscp ? zylStopTscp : zylStopTsc;
    zyl_SetNumThreads = zylSetNumThreads;
    zyl_GetNumThreads = zylGetNumThreads;
}

inline const ZylLibraryVersion* zyGetZylVersion_zylch() { return zylchGetLibVersion(); }

// NOLINTBEGIN(misc-definitions-in-headers): each unit that includes this registers for itself.
namespace {

[[maybe_unused]] const bool regZylEnvironment = mrRegZylEnvironment(zySetZylEnvironment) != 0;
[[maybe_unused]] const bool regVersion_zylch = mrRegZylVersion(zyGetZylVersion_zylch) != 0;

}  // namespace
// NOLINTEND(misc-definitions-in-headers)
