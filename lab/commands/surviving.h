#pragma once

/// What "run" and "check" share: the instrument that they start, and on which library.

#include <string>

#include "commands/commandline.h"
#include "survive/survivor.h"

namespace lab {

struct SurvivalOptions {
    std::string library;  ///< folder of the shared objects; empty: those that the system finds
    std::string instrument;
    double patience = 300.0;  ///< seconds
};

void addSurvival(CLI::App& command, SurvivalOptions& options);

/// The instrument with the keys of the line. std::runtime_error if there is none of the library's width.
SupervisedStart startOf(const SurvivalOptions& options, const CommandLine& line);

/// A line on standard error, of its own while the instrument writes to the same terminal.
void sayBeside(const std::string& text);

}  // namespace lab
