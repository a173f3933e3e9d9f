#pragma once

/// The file of a history: one SQLite base.

#include <string>

#include "history/joining.h"

namespace lab {

/// What the user says of what joins a history.
struct JoiningWords {
    std::string label;     ///< of the new build; empty: the first digits of its identity
    std::string oldLabel;  ///< of the old one of a comparison, where it has none of its own yet
    std::string revision;  ///< of the new build
    std::string day;       ///< "2026-11-23"
};

/// What became of it.
struct Joining {
    std::string older;  ///< labels; of a measurement there is none
    std::string newer;
    bool isNew = false;  ///< false: the history had it
};

/// All of a file; std::runtime_error if it is no history.
History readHistory(const std::string& path);

/// One transaction; makes the file if it is not there. A comparison that the history has is brought up to
/// date, not added again. An old build that it does not know is put before the new one, or before all if it
/// knows the new one. std::runtime_error for a file that is something else, for a label that another build
/// has, and for a build with itself without a label of its own.
Joining addToHistory(const std::string& path, const JoinedComparison& joined, const JoiningWords& words);

/// The same for a measurement. A build that the history does not know becomes its last one.
Joining addToHistory(const std::string& path, const JoinedMeasurement& joined, const JoiningWords& words);

/// The index of a build by its label, its revision, its identity or a build-id; all but the label may be cut
/// after four letters. -1: none. Of several the last one.
int findBuild(const History& history, const std::string& text);

}  // namespace lab
