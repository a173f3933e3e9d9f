#pragma once

/// Which files a side consists of: those that its instrument really maps.

#include <array>
#include <string>
#include <vector>

#include "store/store.h"

namespace lab {

/// The name of a program among the objects of its side.
inline const std::string programObject = "program";

/// Facts of the file; std::runtime_error if it can't be read or is no object file.
StoredObject objectAt(const std::string& path, const std::string& name);

/// The objects `names` in the folder. std::runtime_error if one is missing, or they are of both widths.
std::vector<StoredObject> objectsIn(const std::string& folder, const std::vector<std::string>& names);

/// Gives sides with folder, instrument and keys the objects of their folders that the instrument maps, by the
/// names that it asks for them by. std::runtime_error if it does not start, maps none of a folder's, or would
/// take an object of one side from elsewhere on the other; NotComparable for a folder of the other width.
void findObjectsInFolders(std::array<StoredSide, 2>& sides);

/// Gives a side that is a program its objects: the program itself first, and what it maps but for the
/// system's own objects. std::runtime_error if it does not start.
void findObjectsOfProgram(StoredSide& side);

}  // namespace lab
