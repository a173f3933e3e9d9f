#pragma once

/// What a command shows or hands on: a store, or a table that metrig wrote.

#include <string>

#include "commands/commandline.h"
#include "results/resulttable.h"

namespace lab {

struct Source {
    std::string file;
    std::string names;  ///< a table of names (-q), if any
};

/// The options of it. `source` is held until the command line is read.
void addSource(CLI::App& command, Source& source);

/// Whether the file is a store, by its first bytes. std::runtime_error if it can't be read.
bool isStore(const std::string& file);

/// The table; what was left out of it is said on standard error. std::runtime_error names file and line.
ResultTable tableOf(const Source& source);

}  // namespace lab
