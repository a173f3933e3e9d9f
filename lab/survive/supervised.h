#pragma once

/// One process of a supervised run.

#include <csignal>
#include <string>
#include <vector>

namespace lab {

class Journal;

/// What is started, with standard input, output and error of this process.
struct SupervisedStart {
    std::string program;
    std::vector<std::string> arguments;
    std::vector<std::string> environment;  ///< "NAME=value", beside what this process has
    bool silent = false;                   ///< /dev/null in their place
    bool batch = false;                    ///< /dev/null in the place of standard input
};

/// How a process ended.
struct ProcessEnd {
    int status = 0;  ///< as a shell tells it: 128 and the signal's number, where it was one
    bool killed = false;
    std::string words;  ///< "killed by signal 11 (Segmentation fault)"
};

/// SIGINT, SIGTERM and SIGHUP go to the process of the run, if there is one, and are counted. Those that this
/// process was started deaf to stay ignored.
class Requests {
  public:
    Requests();
    Requests(const Requests&) = delete;
    Requests& operator=(const Requests&) = delete;
    ~Requests();

    /// The run was asked to end.
    static bool any();
    /// More than once; what comes within a second is the same.
    static bool repeated();

  private:
    struct sigaction m_before[3]{};
};

/// Runs it to its end. A process whose journal does not grow for `patience` seconds is killed, but for one
/// that asks the user something; so is one that does not end within ten seconds after it was asked to. It
/// never outlives this process. std::runtime_error if it can't be started.
ProcessEnd runSupervised(const SupervisedStart& start, const Journal& journal, double patience);

}  // namespace lab
