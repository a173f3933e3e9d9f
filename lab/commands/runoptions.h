#pragma once

#include "commands/commandline.h"
#include "compare/settings.h"

namespace lab {

/// The options that every run with turns has; the values there are the defaults.
void addRunOptions(CLI::App& command, RunSettings& settings, bool& noWait);

}  // namespace lab
