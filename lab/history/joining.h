#pragma once

/// From a kept comparison to what a history keeps of it.

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "history/history.h"
#include "store/store.h"

namespace lab {

/// A comparison before it has a place among builds. The findings' points are indices into `points`, the
/// builds have no label yet.
struct JoinedComparison {
    std::array<BuildEntry, 2> sides;  ///< old, new
    Method method;
    std::vector<PointName> points;
    ComparisonEntry entry;
};

/// std::runtime_error if the comparison is not finished.
JoinedComparison joinedFrom(Store& store);

/// What the values of a point's pairs, logarithms of new / old, come to: Finding's pairs, middle, error, push
/// and energy. `grain` is the step of the clock as a part of the shortest turn.
Finding findingOf(const std::vector<double>& values, double grain, double margin);

}  // namespace lab
