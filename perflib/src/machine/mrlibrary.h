#pragma once

#include "text/mrlist.h"
#include "zyltypes.h"

/// The framework's side of the library under test: it links to none of these control functions but calls them
/// through pointers, which the environment function of a suite fills. Unbound ones get a fallback that
/// answers MR_NOT_BOUND.

constexpr int MR_NOT_BOUND = -2;

extern int (*zyl_GetCpuFeatures)(Zyl64u* mask, Zyl32u registers[4]);
extern Zyl64u (*zyl_GetEnabledCpuFeatures)();
extern int (*zyl_GetMaxCacheSizeB)(int* size);
extern const char* (*zyl_GetStatusString)(int status);
extern int (*zyl_Init)();
extern int (*zyl_SetCpuFeatures)(Zyl64u mask);
extern int (*zyl_SetNumThreads)(int number);
extern int (*zyl_GetNumThreads)(int* number);
/// The clock pair is never null: without a library it reads the time-stamp counter.
using ZylClocksFunc = Zyl64u (*)();
extern ZylClocksFunc zyl_StartCpuClocks;
extern ZylClocksFunc zyl_StopCpuClocks;

using ZylVersionFunc = const ZylLibraryVersion* (*)();

extern void (*zylEnvironment)();                ///< null: no library is bound
extern mrList<ZylVersionFunc>* zylVersionList;  ///< null until the first registration
