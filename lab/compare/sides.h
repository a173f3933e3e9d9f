#pragma once

/// The builds before anything is started.

#include <span>
#include <stdexcept>

#include "compare/settings.h"
#include "store/store.h"

namespace lab {

/// The sides can't be compared; the text is the reason.
struct NotComparable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What the files tell of both sides. std::runtime_error for a folder without the shared objects, and where
/// no instrument of their width is built; NotComparable for objects of different widths.
std::array<StoredSide, 2> findSides(const Settings& settings);

/// What the files in the folder tell of a side with these keys, its instrument aside. std::runtime_error for
/// a folder without the shared objects.
StoredSide findFiles(const std::string& folder, const std::vector<std::string>& keys);

/// The path of a shared object that is not what it was when the sides were found; empty if all are.
std::string changedObject(std::span<const StoredSide> sides);

/// Whether both sides are the same to the byte.
bool areSameObjects(const std::array<StoredSide, 2>& sides);
/// Whether they also get the same keys.
bool isSelfComparison(const std::array<StoredSide, 2>& sides);

/// Functions whose code is the same to the byte on both sides, of those named.
std::vector<std::string> functionsOfEqualCode(const std::array<StoredSide, 2>& sides,
                                              const std::vector<std::string>& functions);

}  // namespace lab
