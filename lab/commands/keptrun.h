#pragma once

/// A run that keeps what it measures, begun or resumed: progress and warnings while it runs, the table at its
/// end.

#include <functional>
#include <string>
#include <vector>

#include "compare/comparison.h"

namespace lab {

/// What the kinds of run differ by.
struct KeptRun {
    std::function<Store(const Watcher&)> make;             ///< the store, begun or opened
    std::function<void(Store&, const Watcher&)> go;        ///< what is missing
    std::function<std::string(const Progress&)> progress;  ///< in a line
    /// The exit status. `said` are warnings that whoever reads the table has just read.
    std::function<int(Store&, const std::vector<std::string>& said)> show;
};

/// `path` is that of the store, named to who interrupts the run.
int runKept(const std::string& path, const KeptRun& run);

/// Takes those of `said` out of `warnings`.
void leaveOut(const std::vector<std::string>& said, std::vector<std::string>& warnings);

}  // namespace lab
