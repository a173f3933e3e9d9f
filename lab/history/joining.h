#pragma once

/// From a kept comparison or measurement to what a history keeps of it.

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

/// A measurement before its build has a place. The figures' points are indices into `points`.
struct JoinedMeasurement {
    BuildEntry build;
    std::vector<PointName> points;
    MeasurementEntry entry;
};

/// std::runtime_error if the comparison is not finished.
JoinedComparison joinedFrom(Store& store);

/// The same of a measurement.
JoinedMeasurement joinedMeasurementFrom(Store& store);

/// What the values of a point's pairs, logarithms of new / old, come to: Finding's pairs, middle, error, push
/// and energy. `grain` is the step of the clock as a part of the shortest turn.
Finding findingOf(const std::vector<double>& values, double grain, double margin);

}  // namespace lab
