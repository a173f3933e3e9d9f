#pragma once

#include <string>

#include "history/overview.h"

namespace lab {

/// A history as one HTML document: a line a function, levels over builds, changes, how they are told.
std::string historyPage(const std::string& title, const Overview& overview);

}  // namespace lab
