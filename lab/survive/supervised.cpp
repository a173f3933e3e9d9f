#include "survive/supervised.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "survive/journal.h"

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int requestSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr double SameRequest = 1.0;  // seconds, as the instrument has it
constexpr double RequestGrace = 10.0;
constexpr int Step = 100;  // milliseconds
/// The most that a step counts: this process may have been stopped meanwhile, and the other one with it.
constexpr double LongestStep = 1.0;

// of the handlers
volatile std::sig_atomic_t current = 0;
volatile std::sig_atomic_t requests = 0;
double lastRequest = 0.0;

double moment() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

extern "C" void handOn(int signal) {
    const int error = errno;
    const double now = moment();
    if (requests == 0 || now - lastRequest > SameRequest) {
        requests = requests + 1;
        lastRequest = now;
    }
    if (current != 0) {
        kill(current, signal);
    }
    errno = error;
}

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

/// What this process has, then `more`, which wins.
std::vector<std::string> environmentWith(const std::vector<std::string>& more) {
    std::vector<std::string> result = more;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        const std::string_view name = text.substr(0, text.find('=') + 1);
        if (std::none_of(more.begin(), more.end(),
                         [&](const std::string& other) { return other.starts_with(name); })) {
            result.emplace_back(text);
        }
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

/// In the child, where nothing may be allocated any more. Writes errno to `failed` if the program can't
/// start.
[[noreturn]] void becomeProgram(pid_t parent, const SupervisedStart& start, char** arguments,
                                char** environment, int failed) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    bool ready = getppid() == parent;  // a parent that died before the line above would never tell
    if (start.silent || start.batch) {
        ready = ready && dup2(null, 0) == 0;
    }
    if (start.silent) {
        ready = ready && dup2(null, 1) == 1 && dup2(null, 2) == 2;
    }
    if (ready) {
        execve(arguments[0], arguments, environment);
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(failed, &error, sizeof error);
    _exit(127);
}

pid_t startProcess(const SupervisedStart& start, int journal) {
    std::vector<std::string> arguments = start.arguments;
    arguments.insert(arguments.begin(), start.program);
    std::vector<std::string> more = start.environment;
    more.push_back("METRIG_JOURNAL=" + std::to_string(journal));
    std::vector<std::string> environment = environmentWith(more);
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> envp = pointers(environment);
    int failed[2];
    if (pipe2(failed, O_CLOEXEC) != 0) {
        fail("pipe", errno);
    }
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process == 0) {
        becomeProgram(parent, start, const_cast<char**>(argv.data()), const_cast<char**>(envp.data()),
                      failed[1]);
    }
    int error = process < 0 ? errno : 0;
    close(failed[1]);
    while (read(failed[0], &error, sizeof error) < 0 && errno == EINTR) {
    }
    close(failed[0]);
    if (error != 0) {
        if (process > 0) {
            waitpid(process, nullptr, 0);
        }
        fail(start.program, error);
    }
    return process;
}

/// Why a process is not waited for any longer.
class Patience {
  public:
    Patience(const Journal& journal, double seconds)
        : m_journal(journal), m_left(seconds), m_seconds(seconds) {}

    /// After a step of `seconds`. Empty as long as there is patience.
    std::string judge(double seconds) {
        const double step = std::min(seconds, LongestStep);
        const std::size_t size = m_journal.size();
        const bool progress = size != m_size || m_journal.asks();
        m_size = size;
        m_left = progress ? m_seconds : m_left - step;
        m_sinceRequest += Requests::any() ? step : 0.0;
        if (m_sinceRequest > RequestGrace) {
            return "did not return when the run was asked to end";
        }
        char words[64];
        std::snprintf(words, sizeof words, "did not return within %g s", m_seconds);
        return m_left <= 0.0 ? words : "";
    }

  private:
    const Journal& m_journal;
    std::size_t m_size = 0;
    double m_left;
    double m_seconds;
    double m_sinceRequest = 0.0;
};

ProcessEnd endOf(int status, const std::string& lostPatience) {
    if (WIFEXITED(status)) {
        return {WEXITSTATUS(status), false, "exited with status " + std::to_string(WEXITSTATUS(status))};
    }
    const int signal = WTERMSIG(status);
    const std::string words = "killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    return {128 + signal, true, lostPatience.empty() ? words : lostPatience};
}

}  // namespace

Requests::Requests() {
    for (std::size_t i = 0; i < std::size(requestSignals); ++i) {
        struct sigaction action {};
        action.sa_handler = handOn;
        sigaction(requestSignals[i], nullptr, &m_before[i]);
        if (m_before[i].sa_handler != SIG_IGN) {
            sigaction(requestSignals[i], &action, nullptr);
        }
    }
}

Requests::~Requests() {
    for (std::size_t i = 0; i < std::size(requestSignals); ++i) {
        sigaction(requestSignals[i], &m_before[i], nullptr);
    }
}

bool Requests::any() { return requests != 0; }

bool Requests::repeated() { return requests > 1; }

ProcessEnd runSupervised(const SupervisedStart& start, const Journal& journal, double patience) {
    const int known = requests;
    const pid_t process = startProcess(start, journal.descriptor());
    current = process;
    if (requests != known) {
        kill(process, SIGTERM);  // one came while there was nobody to hand it to
    }
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    Patience waiting(journal, patience);
    std::string lostPatience;
    siginfo_t ended{};
    for (Clock::time_point last = Clock::now();;) {
        if (waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            ended.si_pid == process) {
            break;
        }
        pollfd end = {handle, POLLIN, 0};
        poll(&end, 1, Step);
        const Clock::time_point now = Clock::now();
        if (lostPatience.empty()) {
            lostPatience = waiting.judge(std::chrono::duration<double>(now - last).count());
            if (!lostPatience.empty()) {
                kill(process, SIGKILL);
            }
        }
        last = now;
    }
    current = 0;  // from here on the number may become another process's
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (handle >= 0) {
        close(handle);
    }
    return endOf(status, lostPatience);
}

}  // namespace lab
