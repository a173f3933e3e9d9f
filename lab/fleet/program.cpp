#include "fleet/program.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "turns/child.h"

namespace lab {

namespace {

constexpr int CannotStart = 127;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::generic_category().message(errno));
}

/// Closed with the object.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(); }

    void reset(int number = -1) {
        if (m_number >= 0) {
            close(m_number);
        }
        m_number = number;
    }
    int get() const { return m_number; }

  private:
    int m_number;
};

void openPipe(Descriptor& reading, Descriptor& writing) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        fail("pipe");
    }
    reading.reset(ends[0]);
    writing.reset(ends[1]);
}

void openFile(Descriptor& file, const std::string& path, int flags) {
    file.reset(open(path.c_str(), flags | O_CLOEXEC, 0666));
    if (file.get() < 0) {
        fail(path);
    }
}

/// `alive` stays open, so that whoever reads its other end notices the end of the program.
[[noreturn]] void becomeProgram(char** words, int input, int output, int alive, bool passErrors) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        std::signal(signal, SIG_DFL);
    }
    fcntl(alive, F_SETFD, 0);
    if (dup2(input, 0) == 0 && dup2(output, 1) == 1 && (passErrors || dup2(output, 2) == 2)) {
        execvp(words[0], words);
    }
    _exit(CannotStart);
}

/// A child that is waited for, and ended if that is given up.
class Running {
  public:
    explicit Running(pid_t process) : m_process(process) {}
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        if (m_process > 0) {
            kill(m_process, SIGTERM);
            wait();
        }
    }

    int wait() {
        int status = 0;
        while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
        m_process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

  private:
    pid_t m_process;
};

/// Until the writing end is closed by all.
void readAll(int from, std::string& text) {
    for (char buffer[4096];;) {
        throwIfInterrupted();
        pollfd end{from, POLLIN, 0};
        if (poll(&end, 1, 200) <= 0) {
            continue;
        }
        const ssize_t size = read(from, buffer, sizeof buffer);
        if (size == 0 || (size < 0 && errno != EINTR)) {
            return;
        }
        text.append(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
    }
}

}  // namespace

ProgramEnd runProgram(const ProgramStart& start) {
    throwIfInterrupted();
    Descriptor input;
    Descriptor held;
    Descriptor output;
    Descriptor kept;
    if (start.holdInput) {
        openPipe(input, held);
    } else {
        openFile(input, start.input.empty() ? "/dev/null" : start.input, O_RDONLY);
    }
    openPipe(kept, output);
    Descriptor file;
    if (!start.output.empty()) {
        openFile(file, start.output, O_WRONLY | O_CREAT | O_TRUNC);
    }
    std::vector<std::string> words = start.words;
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    const pid_t process = fork();
    if (process < 0) {
        fail("fork");
    }
    if (process == 0) {
        becomeProgram(pointers.data(), input.get(), start.output.empty() ? output.get() : file.get(),
                      output.get(), start.passErrors || !start.output.empty());
    }
    Running running(process);
    output.reset();
    ProgramEnd end;
    readAll(kept.get(), end.output);
    end.status = running.wait();
    if (end.status == CannotStart && end.output.empty()) {
        throw std::runtime_error(start.words.front() + ": can't be run");
    }
    return end;
}

bool isOnPath(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((std::filesystem::path(folder) / name).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

std::string quoted(const std::string& text) {
    constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-/=:,+@%";
    if (!text.empty() && text.find_first_not_of(plain) == std::string::npos) {
        return text;
    }
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return word + "'";
}

}  // namespace lab
