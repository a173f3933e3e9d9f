#pragma once

#include "show/report.h"
#include "store/store.h"

namespace lab {

/// What a store holds, as it is shown. Of an unfinished comparison too.
Report reportOf(Store& store);

}  // namespace lab
