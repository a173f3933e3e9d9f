#pragma once

/// The signal part of the family; the stand-in keeps only its identity.

#include "zyltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

ZYL_API const ZylLibraryVersion* zylsGetLibVersion(void);

#ifdef __cplusplus
}
#endif
