#pragma once

#include "show/course.h"
#include "show/report.h"
#include "store/store.h"

namespace lab {

/// How the comparison in the store went; `report` is what reportOf() tells of it.
Course courseOf(Store& store, const Report& report);

}  // namespace lab
