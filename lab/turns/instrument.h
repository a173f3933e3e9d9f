#pragma once

/// An instrument that takes turns, as the driver sees it: points, turns, and how it may be lost.

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "turns/child.h"
#include "turns/message.h"

namespace lab {

/// What came in place of an answer.
struct Loss {
    /// In words for people: "SIGSEGV" is a result of the test, "killed by signal 9 (Killed)" an end.
    std::string what;
    bool alive = false;  ///< only the test has ended, and the instrument goes on with the next one
};

/// A turn, or why there is none.
struct Take {
    TicksMessage ticks;
    int status = 0;  ///< the library's
    std::optional<Loss> loss;
};

class Instrument {
  public:
    /// Starts it and hears its first line. std::runtime_error if it does not start, is no instrument that
    /// takes turns, or speaks another version.
    Instrument(const ChildStart& start, std::chrono::milliseconds patience);

    const HelloMessage& hello() const { return m_hello; }
    pid_t process() const { return m_child.process(); }

    /// Where the walk stands; nothing before the first step and after the end.
    const std::optional<PointMessage>& point() const { return m_point; }
    /// Of the last test that has ended.
    const ResultMessage& result() const { return m_result; }
    /// Set when the process was lost.
    const std::optional<Loss>& loss() const { return m_loss; }
    /// Function of the last point that was seen.
    const std::string& lastFunction() const { return m_lastFunction; }
    /// The last lines it printed.
    std::string lastWords() const { return m_child.lastWords(); }

    /// To the next point; false at the end of the run and at a loss.
    bool step();
    /// To the first point after the test of this one.
    bool skip();

    /// So many blocks of so many calls at the point. At a loss where the test alone has ended the next step
    /// goes on after it.
    Take take(long long calls, int blocks);

    /// Ends the run.
    void quit();

  private:
    bool leave(const char* word);
    bool hearPoint();
    bool lose(const std::string& what);
    std::optional<Message> hear();

    Child m_child;
    HelloMessage m_hello;
    std::optional<PointMessage> m_point;
    ResultMessage m_result;
    std::optional<Loss> m_loss;
    std::string m_lastFunction;
    bool m_ended = false;
};

}  // namespace lab
