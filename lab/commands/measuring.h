#pragma once

/// A measurement on the command line, begun or resumed, and shown.

#include <functional>
#include <string>

#include "commands/showing.h"
#include "measure/measurement.h"

namespace lab {

/// As runComparison; 0 at the end.
int runMeasurement(const std::string& path, const Showing& showing, double moreSeconds,
                   const std::function<Store(const Watcher&)>& makeStore);

/// The table of a kept measurement on standard output; the exit status. Showing that asks for verdicts is
/// refused.
int showMeasurement(Store& store, const Showing& showing, const std::vector<std::string>& said = {});

}  // namespace lab
