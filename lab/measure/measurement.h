#pragma once

/// A measurement of one build from its first process to its last, kept in a store as it goes.

#include <string>

#include "compare/comparison.h"
#include "compare/settings.h"
#include "store/store.h"

namespace lab {

struct MeasureSettings : RunSettings {
    std::string folder;   ///< of the shared objects
    int processes = 10;   ///< one after the other, each on a fresh copy of the library
    double over = 0.0;    ///< seconds that the starts of the processes are spread over, at least
    std::string against;  ///< path of an earlier measurement; empty: none

    /// Tenths of a second at a point, all processes together.
    MeasureSettings() { shape = {20, 500.0, 20}; }
};

/// What resuming needs of the settings, for the store, and back.
NamedTexts settingTexts(const MeasureSettings& settings);
MeasureSettings measureSettingsFrom(const StoredHead& head);

/// Finds and starts the build, lists its points and keeps all that in a new store. Interrupted,
/// NotComparable if the earlier measurement is of another machine, or std::runtime_error for wrong files.
Store beginMeasurement(const MeasureSettings& settings, const std::string& path, const Watcher& watcher);

/// Runs the processes that are missing until the time is over. A pair of the watcher's progress is a process,
/// its closed points those that this one has visited. Interrupted, and std::runtime_error as above or if the
/// files are others than at the beginning. `moreSeconds` go to the time that it may take, when they are
/// above 0.
void continueMeasurement(Store& store, const Watcher& watcher, double moreSeconds = 0.0);

}  // namespace lab
