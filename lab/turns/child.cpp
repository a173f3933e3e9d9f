#include "turns/child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t PrintedKept = 4096;
constexpr std::size_t LongestLine = 1 << 20;

volatile std::sig_atomic_t interrupts = 0;

extern "C" void noteInterrupt(int signal) {
    interrupts = interrupts + 1;
    std::signal(signal, SIG_DFL);
}

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::generic_category().message(errno));
}

struct Pipe {
    Pipe() {
        if (pipe2(ends, O_CLOEXEC) != 0) {
            fail("pipe");
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeReading();
        closeWriting();
    }

    int takeReading() { return std::exchange(ends[0], -1); }
    int takeWriting() { return std::exchange(ends[1], -1); }
    void closeReading() {
        if (ends[0] >= 0) {
            close(takeReading());
        }
    }
    void closeWriting() {
        if (ends[1] >= 0) {
            close(takeWriting());
        }
    }

    int ends[2] = {-1, -1};
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

/// What this process has but for the instrument's own variables, then `more`, which wins.
std::vector<std::string> childEnvironment(const std::vector<std::string>& more) {
    std::vector<std::string> result;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        const std::string_view name = text.substr(0, text.find('=') + 1);
        bool replaced = name.starts_with("METRIG_");
        for (const std::string& other : more) {
            replaced = replaced || std::string_view(other).starts_with(name);
        }
        if (!replaced) {
            result.emplace_back(text);
        }
    }
    result.insert(result.end(), more.begin(), more.end());
    return result;
}

/// In the child, where nothing may be allocated any more. Writes errno to `failed` if the program can't
/// start.
[[noreturn]] void becomeProgram(pid_t parent, int in, int out, int console, int failed, const char* program,
                                char** arguments, char** environment) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        std::signal(signal, SIG_DFL);
    }
    // a parent that died before the line above would never tell
    if (getppid() == parent && dup2(null, 0) == 0 && dup2(console, 1) == 1 && dup2(console, 2) == 2 &&
        fcntl(in, F_SETFD, 0) == 0 && fcntl(out, F_SETFD, 0) == 0) {
        execve(program, arguments, environment);
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(failed, &error, sizeof error);
    _exit(127);
}

}  // namespace

void noteInterrupts() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        action.sa_handler = noteInterrupt;
        sigaction(signal, &action, nullptr);
    }
}

void throwIfInterrupted() {
    if (interrupts != 0) {
        throw Interrupted();
    }
}

Child::Child(const ChildStart& start, std::chrono::milliseconds patience) : m_patience(patience) {
    throwIfInterrupted();
    std::signal(SIGPIPE, SIG_IGN);  // what is said to a child that is gone is noticed by its answer
    Pipe to;
    Pipe from;
    Pipe console;
    Pipe failed;
    std::vector<std::string> arguments = start.arguments;
    arguments.insert(arguments.begin(), start.program);
    std::vector<std::string> more = start.environment;
    more.push_back("METRIG_TURNS=" + std::to_string(to.ends[0]) + "," + std::to_string(from.ends[1]));
    std::vector<std::string> environment = childEnvironment(more);
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> envp = pointers(environment);
    const std::string& program = start.copy.empty() ? start.program : start.copy;
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process < 0) {
        fail("fork");
    }
    if (m_process == 0) {
        becomeProgram(parent, to.ends[0], from.ends[1], console.ends[1], failed.ends[1], program.c_str(),
                      const_cast<char**>(argv.data()), const_cast<char**>(envp.data()));
    }
    setpgid(m_process, m_process);  // here too: a kill of the group may come before the child got so far
    m_to = to.takeWriting();
    m_from = from.takeReading();
    m_console = console.takeReading();
    fcntl(m_from, F_SETFL, O_NONBLOCK);
    fcntl(m_console, F_SETFL, O_NONBLOCK);
    failed.closeWriting();
    int error = 0;
    ssize_t size = -1;
    while ((size = read(failed.ends[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    if (size == sizeof error) {
        finish();
        errno = error;
        fail(start.program);
    }
}

void Child::say(const std::string& line) {
    const std::string text = line + "\n";
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t size = write(m_to, text.data() + written, text.size() - written);
        if (size < 0 && errno != EINTR) {
            return;
        }
        written += size > 0 ? static_cast<std::size_t>(size) : 0;
    }
}

bool Child::takeLine(std::string& line) {
    const std::size_t end = m_heard.find('\n');
    if (end == std::string::npos) {
        return false;
    }
    line.assign(m_heard, 0, end);
    m_heard.erase(0, end + 1);
    return true;
}

/// False at the end of what the child says, and when it says what is no line.
bool Child::readMore() {
    char buffer[4096];
    const ssize_t size = read(m_from, buffer, sizeof buffer);
    if (size > 0) {
        m_heard.append(buffer, static_cast<std::size_t>(size));
    }
    return (size > 0 || (size < 0 && (errno == EAGAIN || errno == EINTR))) && m_heard.size() <= LongestLine;
}

void Child::drainConsole() {
    char buffer[4096];
    ssize_t size = 0;
    while (m_console >= 0 && (size = read(m_console, buffer, sizeof buffer)) > 0) {
        m_printed.append(buffer, static_cast<std::size_t>(size));
        if (m_printed.size() > 2 * PrintedKept) {
            m_printed.erase(0, m_printed.size() - PrintedKept);
        }
    }
    if (size == 0 && m_console >= 0) {
        close(std::exchange(m_console, -1));
    }
}

Child::Answer Child::hear(std::string& line) {
    const Clock::time_point limit = Clock::now() + m_patience;
    while (!takeLine(line)) {
        throwIfInterrupted();
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now());
        if (left.count() <= 0) {
            return Answer::Silent;
        }
        pollfd ends[2] = {{m_from, POLLIN, 0}, {m_console, POLLIN, 0}};
        // in steps: a signal that came between the question above and this wait must not be slept over
        const int ready = poll(ends, 2, static_cast<int>(std::min<long long>(left.count(), 200)));
        if (ready > 0 && ends[1].revents != 0) {
            drainConsole();
        }
        if (ready > 0 && ends[0].revents != 0 && !readMore()) {
            return Answer::Gone;
        }
    }
    return Answer::Line;
}

void Child::finish(std::chrono::milliseconds grace) {
    if (m_process > 0 && !m_reaped) {
        if (m_to >= 0) {
            close(std::exchange(m_to, -1));
        }
        const Clock::time_point limit = Clock::now() + grace;
        while (!hasEnded() && Clock::now() < limit) {
            drainConsole();
            usleep(500);
        }
        m_killed = !hasEnded();
        // the process is not waited for yet, so the group is still its own
        kill(-m_process, SIGKILL);
        while (waitpid(m_process, &m_status, 0) < 0 && errno == EINTR) {
        }
        m_reaped = true;
        drainConsole();
    }
    for (int* end : {&m_to, &m_from, &m_console}) {
        if (*end >= 0) {
            close(std::exchange(*end, -1));
        }
    }
}

bool Child::hasEnded() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == m_process;
}

std::string Child::ending() {
    // who has closed its end is about to go; who has not must not be waited for
    finish(std::chrono::milliseconds(500));
    if (WIFEXITED(m_status)) {
        return "exited with status " + std::to_string(WEXITSTATUS(m_status));
    }
    if (WIFSIGNALED(m_status) && !m_killed) {
        return "killed by signal " + std::to_string(WTERMSIG(m_status)) + " (" +
               strsignal(WTERMSIG(m_status)) + ")";
    }
    return "stopped answering";
}

std::string Child::lastWords() const {
    const std::size_t end = m_printed.find_last_not_of(" \r\n");
    if (end == std::string::npos) {
        return "";
    }
    const std::size_t kept = end + 1 > 400 ? end + 1 - 400 : 0;
    const std::size_t start = kept == 0 ? 0 : m_printed.find('\n', kept) + 1;
    return m_printed.substr(start > end ? kept : start, end + 1 - (start > end ? kept : start));
}

}  // namespace lab
