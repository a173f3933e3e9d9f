#pragma once

/// Programs of the system that are run and waited for: sbatch, squeue, ssh.

#include <string>
#include <vector>

namespace lab {

struct ProgramEnd {
    int status = -1;     ///< of its exit; 128 and the signal that killed it
    std::string output;  ///< standard output and error, unless they went elsewhere
};

/// What a program reads and where it writes.
struct ProgramStart {
    std::vector<std::string> words{};  ///< the first one is looked for in PATH
    std::string input{};               ///< file that it reads; empty: nothing
    bool holdInput = false;            ///< its input stays open, empty, as long as this process lives
    std::string output{};     ///< file that it writes; empty: kept. Its errors go where this process's do
    bool passErrors = false;  ///< as there, though the output is kept
};

/// std::runtime_error if it can't be started. Interrupted (turns/child.h) ends it by SIGTERM first.
ProgramEnd runProgram(const ProgramStart& start);

/// Whether PATH has such a program.
bool isOnPath(const std::string& name);

/// One word for a shell, whatever the text holds.
std::string quoted(const std::string& text);

}  // namespace lab
