#pragma once

/// What tells the files of metrig-lab from other SQLite files, and from each other.

#include <cstdint>
#include <memory>
#include <string>

#include "store/sqlite.h"

namespace lab {

/// Version of the tables.
constexpr int StoreVersion = 1;

/// The application id that SQLite keeps in a file.
enum class BaseId : std::int64_t {
    one = 0x6D6C6162,     ///< "mlab": one comparison or measurement
    merged = 0x6D6C6D67,  ///< "mlmg": sessions of a comparison on several machines
};

/// `flags` as Database takes them. std::runtime_error if the file is another one, or of another version.
std::unique_ptr<Database> openBase(const std::string& path, int flags, BaseId id);

/// Whether the file is there and is of that kind.
bool isBase(const std::string& path, BaseId id);

void setBaseId(Database& base, BaseId id);

}  // namespace lab
