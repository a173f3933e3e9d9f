#pragma once

/// Control functions: initialisation, processor features, clocks, floating-point state.

#include "zyltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Chooses the best code path for this processor. Returns 0.
ZYL_API int zylInit(void);

/// Restricts the library to the code path that `mask` allows (bits as zylGetCpuFeatures gives them).
/// zylStsNotSupportedErr, with the path unchanged, if `mask` holds a bit that this processor lacks or is 0.
ZYL_API int zylSetCpuFeatures(Zyl64u mask);

/// The processor's feature mask in `*mask`. `registers` may be null.
/// If `*mask` holds the eight bytes "rawcpuid" on entry the call is a gateway to the CPUID instruction
/// instead: registers[0] is the leaf and registers[2] the sub-leaf; EAX, EBX, ECX, EDX come back in
/// registers[0] to [3], and the first four bytes of the key are overwritten. zylStsNullPtrErr if `mask`, or
/// the registers a gateway call needs, are null.
ZYL_API int zylGetCpuFeatures(Zyl64u* mask, Zyl32u registers[4]);

/// The mask in force: that of the last zylInit or accepted zylSetCpuFeatures, 0 (the plain code path) before
/// the first of them.
ZYL_API Zyl64u zylGetEnabledCpuFeatures(void);

/// The largest cache of the processor in bytes, from CPUID leaf 4 (leaf 0x80000006 where 4 is missing).
/// zylStsNotSupportedErr and 0 in `*size` if the processor does not tell.
ZYL_API int zylGetMaxCacheSizeB(int* size);

/// One line without line end for any status, never null.
ZYL_API const char* zylGetStatusString(int status);

/// The library is single threaded: 1 is accepted with 0, more with zylStsThreadsNote, less with
/// zylStsSizeErr.
ZYL_API int zylSetNumThreads(int number);
ZYL_API int zylGetNumThreads(int* number);

/// The time-stamp counter. The Start forms keep earlier work from sinking into the timed stretch, the Stop
/// forms keep timed work from leaking out of it; the Tscp forms use RDTSCP and need bit 27 of EDX of leaf
/// 0x80000001.
ZYL_API Zyl64u zylStartTsc(void);
ZYL_API Zyl64u zylStopTsc(void);
ZYL_API Zyl64u zylStartTscp(void);
ZYL_API Zyl64u zylStopTscp(void);
ZYL_API Zyl64u zylGetCpuClocks(void);

/// Access to the floating-point control and status registers; the word that was read, otherwise 0.
/// 1 sets the x87 control word and 5 MXCSR (bits of `value` under `mask`); 2, 3 and 6 read the x87 control
/// word, the x87 status word and MXCSR; 4 clears the x87 exception flags; 7 clears the six exception flags of
/// MXCSR. A pending x87 exception of earlier code never fires here: reading leaves it pending, and 1 clears
/// the x87 exception flags before it sets the word.
ZYL_API unsigned zylFpuSsx4TS(int op, unsigned value, unsigned mask);

#ifdef __cplusplus
}
#endif
