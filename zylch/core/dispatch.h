#pragma once

/// Which of its three forms each string function runs.

#include "zyltypes.h"

enum ZylCodePath { zylPathPlain, zylPathSse2, zylPathAvx2, zylPathCount };

/// The code path in force, a ZylCodePath. Plain until the first zylInit. Read as data by the string
/// functions, so that the choice costs them no call; only zylInit and zylSetCpuFeatures write it.
extern "C" ZYL_API int zylCodePath;
