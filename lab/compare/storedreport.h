#pragma once

#include <vector>

#include "show/report.h"
#include "store/store.h"

namespace lab {

/// One of the sides of a store.
Build buildOf(const StoredSide& side);
Machine machineOf(const StoredHead& head, const std::vector<StoredPair>& pairs);

/// What a store holds, as it is shown. Of an unfinished comparison too.
Report reportOf(Store& store);

}  // namespace lab
