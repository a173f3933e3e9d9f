#include "support/program.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

int checked(int result, const char* call) {
    if (result < 0) {
        throw std::runtime_error(std::string(call) + " failed");
    }
    return result;
}

/// A descriptor that is closed with the object and in every program that is started.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(); }

    int number() const { return m_number; }
    void reset(int number = -1) {
        if (m_number >= 0) {
            close(m_number);
        }
        m_number = number;
    }

  private:
    int m_number;
};

/// Both ends of the program's input and output.
struct Channels {
    explicit Channels(bool terminal) {
        if (terminal) {
            openTerminal();
        } else {
            openPipe(in, toProgram);
            openPipe(fromProgram, out);
        }
    }

    Descriptor in, out;                 ///< the program's
    Descriptor toProgram, fromProgram;  ///< the test's
    Descriptor errors{checked(memfd_create("errors", MFD_CLOEXEC), "memfd_create")};

  private:
    static void openPipe(Descriptor& readEnd, Descriptor& writeEnd) {
        int ends[2];
        checked(pipe2(ends, O_CLOEXEC), "pipe2");
        readEnd.reset(ends[0]);
        writeEnd.reset(ends[1]);
    }

    void openTerminal() {
        fromProgram.reset(checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt"));
        toProgram.reset(dup(fromProgram.number()));
        checked(grantpt(fromProgram.number()), "grantpt");
        checked(unlockpt(fromProgram.number()), "unlockpt");
        in.reset(checked(open(ptsname(fromProgram.number()), O_RDWR | O_NOCTTY | O_CLOEXEC), "open"));
        out.reset(dup(in.number()));
    }
};

[[noreturn]] void becomeProgram(const Invocation& what, const Channels& channels) {
    dup2(channels.in.number(), STDIN_FILENO);
    dup2(what.output.empty() ? channels.out.number() : open(what.output.c_str(), O_WRONLY), STDOUT_FILENO);
    dup2(channels.errors.number(), STDERR_FILENO);
    const bool isPath = what.program.find('/') != std::string::npos;
    std::string path = isPath ? what.program : METRIG_BIN_DIR "/" + what.program;
    std::vector<char*> arguments{path.data()};
    std::vector<std::string> copies = what.arguments;
    for (std::string& argument : copies) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    std::vector<std::string> variables = what.environment;
    for (std::string& variable : variables) {
        putenv(variable.data());
    }
    if (what.folder.empty() || chdir(what.folder.c_str()) == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        execv(path.c_str(), arguments.data());
    }
    _exit(127);
}

using Clock = std::chrono::steady_clock;

/// The program while it runs.
class Child {
  public:
    explicit Child(const Invocation& what)
        : m_answers(what.answers),
          m_terminal(what.terminal),
          m_channels(what.terminal),
          m_deadline(Clock::now() + std::chrono::seconds(what.seconds)) {
        m_id = checked(fork(), "fork");
        if (m_id == 0) {
            becomeProgram(what, m_channels);
        }
        m_channels.in.reset();
        m_channels.out.reset();
    }

    Outcome result() {
        do {
            answer();
        } while (readOutput());
        Outcome outcome;
        int state = 0;
        rusage usage{};
        while (wait4(m_id, &state, WNOHANG, &usage) == 0) {
            killIfLate();
            poll(nullptr, 0, 1);
        }
        outcome.output = m_output;
        outcome.errors = readFile("/proc/self/fd/" + std::to_string(m_channels.errors.number()));
        outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
        outcome.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
        outcome.peakKiB = usage.ru_maxrss;
        return outcome;
    }

  private:
    void killIfLate() const {
        if (Clock::now() > m_deadline) {
            kill(m_id, SIGKILL);
        }
    }

    /// Types what the text printed so far asks for.
    void answer() {
        while (m_next < m_answers.size()) {
            const Answer& next = m_answers[m_next];
            const std::size_t at = m_output.find(next.prompt, m_seen);
            if (at == std::string::npos) {
                return;
            }
            m_seen = at + next.prompt.size();
            ++m_next;
            [[maybe_unused]] const auto written =
                write(m_channels.toProgram.number(), next.text.data(), next.text.size());
        }
        if (!m_terminal) {
            m_channels.toProgram.reset();
        }
    }

    /// Waits a moment for output; false once there is none to come.
    bool readOutput() {
        killIfLate();
        pollfd ready{m_channels.fromProgram.number(), POLLIN, 0};
        if (poll(&ready, 1, 100) <= 0) {
            return true;
        }
        char buffer[65536];
        const auto count = read(ready.fd, buffer, sizeof buffer);
        for (ssize_t i = 0; i < count; ++i) {
            if (!m_terminal || buffer[i] != '\r') {
                m_output += buffer[i];
            }
        }
        return count > 0;
    }

    std::vector<Answer> m_answers;
    bool m_terminal;
    Channels m_channels;
    Clock::time_point m_deadline;
    pid_t m_id = 0;
    std::string m_output;
    std::size_t m_seen = 0;
    std::size_t m_next = 0;
};

}  // namespace

WorkFolder::WorkFolder() {
    m_path = (std::filesystem::temp_directory_path() / "metrig_run_XXXXXX").string();
    if (mkdtemp(m_path.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    m_path += '/';
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string WorkFolder::path(const std::string& name) const { return m_path + name; }

std::string WorkFolder::file(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
}

std::string WorkFolder::content(const std::string& name) const { return readFile(path(name)); }

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool hasTerminals() { return Descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)).number() >= 0; }

Outcome run(const Invocation& what) {
    std::signal(SIGPIPE, SIG_IGN);  // a program may be gone before it is answered
    return Child(what).result();
}
