#pragma once

/// An instrument as a child process, spoken to in lines.

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace lab {

/// The user or the system asks this process to end.
struct Interrupted {};

/// From now on SIGINT, SIGTERM and SIGHUP are noted, and what waits throws Interrupted. A second one ends the
/// process at once.
void noteInterrupts();

/// Interrupted if such a signal has come.
void throwIfInterrupted();

/// What a child is started with.
struct ChildStart {
    std::string program;
    std::vector<std::string> arguments;
    std::vector<std::string> environment;  ///< "NAME=value", beside what this process has
    /// Of the program, and runs in its place under its name; empty: the program itself.
    std::string copy = {};
};

/// A process in a group of its own, which ends with the one that started it. The descriptors that it speaks
/// by are named in its METRIG_TURNS; what it prints is kept in part.
class Child {
  public:
    enum class Answer {
        Line,    ///< a line has come
        Gone,    ///< the child has closed its end
        Silent,  ///< no line within the patience
    };

    /// std::runtime_error if the system refuses a process or the program.
    Child(const ChildStart& start, std::chrono::milliseconds patience);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() { finish(); }

    /// `line` is without its line end. A child that is gone is noticed by the answer.
    void say(const std::string& line);

    /// `line` is without its line end. Interrupted as above.
    Answer hear(std::string& line);

    /// Ends the child and what it started, and waits for its end. `grace` is how long it may take to end by
    /// itself.
    void finish(std::chrono::milliseconds grace = std::chrono::milliseconds(0));

    /// How it ended, in words: "exited with status 3", "killed by signal 11 (Segmentation fault)". Ends it.
    std::string ending();

    /// The last lines that it printed, without line end; empty if it was silent.
    std::string lastWords() const;

    pid_t process() const { return m_process; }

  private:
    void drainConsole();
    bool hasEnded() const;
    bool takeLine(std::string& line);
    bool readMore();

    pid_t m_process = -1;
    int m_to = -1;
    int m_from = -1;
    int m_console = -1;
    std::chrono::milliseconds m_patience;
    bool m_reaped = false;
    bool m_killed = false;  ///< by this object
    int m_status = 0;
    std::string m_heard;
    std::string m_printed;
};

}  // namespace lab
