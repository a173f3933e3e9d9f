#pragma once

#include <csignal>

/// Requests to end the run, and the time that a call of a function under test is given.
///
/// The first SIGINT, SIGTERM or SIGHUP lets the combination in progress end, and gives up a call that has not
/// returned two seconds later. Another one within a second counts as the same, one after that ends the
/// process. A signal that the run was started deaf to stays ignored.
class mrStop {
  public:
    static constexpr int Requests[] = {SIGINT, SIGTERM, SIGHUP};
    /// Of the timer: nothing else is likely to use it, unlike SIGALRM.
    static constexpr int TimeSignal = SIGVTALRM;

    /// Called once, with the handlers of tsSignal.
    static void install();

    /// True once the run has been asked to end.
    static bool asked();

    /// Runs `ask`, which waits for an answer on the console; false if a signal came instead. A first SIGINT
    /// there does not count as a request to end the run.
    template <class Ask>
    static bool answered(Ask ask) {
        beginQuestion();
        ask();
        return endQuestion();
    }

    /// The most seconds of a combination; 0, as at the start, for no limit.
    static void setWatchdog(double seconds);
    /// Around a combination: the watchdog's time runs. An end without a beginning does no harm.
    static void beginCombination();
    static void endCombination();

  private:
    static void beginQuestion();
    static bool endQuestion();
};
