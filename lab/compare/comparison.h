#pragma once

/// A comparison from its first process to its last, kept in a store as it goes.

#include <functional>
#include <string>

#include "compare/settings.h"
#include "compare/sides.h"
#include "store/store.h"

namespace lab {

/// How far a comparison is.
struct Progress {
    int pair = 0;  ///< the running one, from 1
    int mostPairs = 0;
    int closedPoints = 0;
    int points = 0;
    double secondsLeft = 0.0;  ///< about; until all points are closed or the time is over
};

/// Whoever watches a comparison.
struct Watcher {
    std::function<void(const Progress&)> progress;    ///< after each function and pair
    std::function<void(const std::string&)> warning;  ///< each one once
    std::function<void(const std::string&)> note;     ///< what happens now
};

/// Finds and starts both sides, lists their points and keeps all that in a new store. Interrupted,
/// NotComparable, or std::runtime_error for wrong files.
Store beginComparison(const Settings& settings, const std::string& path, const Watcher& watcher);

/// Runs the pairs that are missing until all points are closed or the time is over. NotComparable if the
/// files are others than when the comparison began; Interrupted and std::runtime_error as above.
/// `moreSeconds` go to the time that it may take, when they are above 0.
void continueComparison(Store& store, const Watcher& watcher, double moreSeconds = 0.0);

}  // namespace lab
