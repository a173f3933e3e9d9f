#pragma once

/// A comparison on the command line, begun or resumed: progress and warnings while it runs, the table at its
/// end.

#include <functional>
#include <string>

#include "commands/showing.h"
#include "compare/comparison.h"

namespace lab {

/// Has the store made, which stands at `path` then, runs what is missing and shows all; the exit status.
/// `moreSeconds` go to the time that it may take, when they are above 0.
int runComparison(const std::string& path, const Showing& showing, double moreSeconds,
                  const std::function<Store(const Watcher&)>& makeStore);

}  // namespace lab
