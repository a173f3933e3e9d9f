#pragma once

/// Runs a built program the way a user does, and keeps what came back.

#include <string>
#include <vector>

#include "support/work_folder.h"

struct Invocation {
    std::vector<std::string> arguments{};
    std::string folder{};                    ///< current folder of the program; empty: that of the test
    std::string input{};                     ///< all that it finds on standard input
    std::vector<std::string> environment{};  ///< "NAME=value", besides what the test itself has
    std::string program = "metrig";          ///< in the folder of built programs, unless it is a path
    unsigned seconds = 60;                   ///< SIGALRM ends it if it takes longer
};

struct Outcome {
    std::string output;  ///< standard output
    std::string errors;  ///< standard error
    int status = -1;     ///< exit status, -1 if a signal ended it
    int signal = 0;      ///< that signal
    long peakKiB = 0;    ///< most memory that was resident at a time
};

/// What a shell command says to start the program: its path, after the emulator where there is one.
#define METRIG_COMMAND METRIG_EMULATOR " " METRIG_BIN_DIR "/metrig"

/// Whether the programs under test run under an emulator, which knows no unmasked float exceptions and gives
/// them a processor of its own.
constexpr bool emulated() { return sizeof METRIG_EMULATOR > 1; }

/// Returns when the program has ended. std::runtime_error if the system refuses a file or a process.
Outcome run(const Invocation& what);
