#pragma once

/// Commands as a user types them.

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace lab {

struct Outcome {
    int status = -1;
    std::string output;  ///< both streams
};

inline Outcome shell(const std::string& command) {
    Outcome outcome;
    std::FILE* pipe = popen(("exec 2>&1; " + command).c_str(), "r");
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        outcome.output.push_back(static_cast<char>(c));
    }
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

}  // namespace lab
