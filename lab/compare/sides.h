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

/// What the files tell of both sides: two folders, compared by the instrument asked for or by that of their
/// width, or two programs that are instruments themselves. std::runtime_error for a folder without the shared
/// objects, where there is no instrument of their width, or one does not start; NotComparable for different
/// widths.
std::array<StoredSide, 2> findSides(const Settings& settings);

/// Gives a side with name and keys its folder and the three shared objects in it. std::runtime_error for a
/// folder without them.
void findFiles(StoredSide& side);

/// The path of a shared object that is not what it was when the sides were found; empty if all are.
std::string changedObject(std::span<const StoredSide> sides);

/// Whether the side is a program, and the first of its objects.
bool isProgram(const StoredSide& side);

/// Whether both sides are the same to the byte.
bool areSameObjects(const std::array<StoredSide, 2>& sides);
/// Whether they also get the same keys.
bool isSelfComparison(const std::array<StoredSide, 2>& sides);

/// Functions whose code is the same to the byte on both sides, of those named.
std::vector<std::string> functionsOfEqualCode(const std::array<StoredSide, 2>& sides,
                                              const std::vector<std::string>& functions);

}  // namespace lab
