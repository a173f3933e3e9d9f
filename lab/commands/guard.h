#pragma once

/// The ways in which a command fails, each with its words and its status.

#include <functional>
#include <string>

#include "show/report.h"

namespace lab {

/// Says it on standard error; the status.
int complain(const std::string& text, ExitStatus status);

/// Runs what may end in one of the known ways; the exit status. `store` is what can be resumed then, if
/// anything.
int guarded(const std::string& store, const std::function<int()>& work);

}  // namespace lab
