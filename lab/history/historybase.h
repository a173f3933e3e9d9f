#pragma once

/// The tables of a history's file.

#include <string>

#include "store/sqlite.h"

namespace lab {

/// std::runtime_error if the base is no history, or one of another version.
void checkHistory(Database& base, const std::string& path);

/// For writing: makes the tables in an empty base, and those that an older history lacks. Fails as
/// checkHistory() does. Within a transaction.
void prepareHistory(Database& base, const std::string& path);

/// Histories from before measurements joined them have no tables for these.
bool hasMeasurements(Database& base);

}  // namespace lab
