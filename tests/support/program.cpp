#include "support/program.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace {

int checked(int result, const char* call) {
    if (result < 0) {
        throw std::runtime_error(std::string(call) + " failed");
    }
    return result;
}

/// A file in memory, closed with the object and in every program that is started.
struct File {
    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(number); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(number); }

    const int number = checked(memfd_create("channel", MFD_CLOEXEC), "memfd_create");
};

[[noreturn]] void becomeProgram(const Invocation& what) {
    const bool isPath = what.program.find('/') != std::string::npos;
    const std::string path = isPath ? what.program : METRIG_BIN_DIR "/" + what.program;
    std::vector<char*> arguments;
    if (emulated() && !isPath) {
        arguments.push_back(const_cast<char*>(METRIG_EMULATOR));
    }
    arguments.push_back(const_cast<char*>(path.c_str()));
    for (const std::string& argument : what.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    for (const std::string& variable : what.environment) {
        putenv(const_cast<char*>(variable.c_str()));
    }
    if (what.folder.empty() || chdir(what.folder.c_str()) == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        alarm(what.seconds);
        execv(arguments[0], arguments.data());
    }
    _exit(127);
}

}  // namespace

Outcome run(const Invocation& what) {
    const File in;
    const File out;
    const File errors;
    std::ofstream(in.path(), std::ios::binary) << what.input;
    const pid_t id = checked(fork(), "fork");
    if (id == 0) {
        dup2(in.number, STDIN_FILENO);
        dup2(out.number, STDOUT_FILENO);
        dup2(errors.number, STDERR_FILENO);
        becomeProgram(what);
    }
    int state = 0;
    rusage usage{};
    checked(wait4(id, &state, 0, &usage), "wait4");
    return {.output = readFile(out.path()),
            .errors = readFile(errors.path()),
            .status = WIFEXITED(state) ? WEXITSTATUS(state) : -1,
            .signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0,
            .peakKiB = usage.ru_maxrss};
}
