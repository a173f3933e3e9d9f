#include "machine/mrstop.h"

#include <csignal>
#include <ctime>

#include "machine/mrsignal.h"

namespace {

constexpr const char* StopText = "The run was stopped while the function did not return.";
constexpr const char* WatchdogText = "METRIG_WATCHDOG: the time of a combination is over.";

constexpr double SameRequest = 1.0;  // seconds
constexpr double Grace = 2.0;
constexpr double LongestWatch = 1e8;  // what the timer holds

volatile std::sig_atomic_t stopAsked = 0;
volatile std::sig_atomic_t asking = 0;
volatile std::sig_atomic_t questionLeft = 0;
double lastRequest = -SameRequest;  ///< its moment; of the handlers alone, which take turns
double watchdogSeconds = 0.0;

timer_t timer;
bool hasTimer = false;

/// Of a clock that nobody sets.
double moment() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// 0 stops the timer.
void startTimer(double seconds) {
    if (hasTimer) {
        itimerspec time = {};
        time.it_value.tv_sec = static_cast<std::time_t>(seconds);
        time.it_value.tv_nsec =
            static_cast<long>((seconds - static_cast<double>(time.it_value.tv_sec)) * 1e9);
        timer_settime(timer, 0, &time, nullptr);
    }
}

/// For the framework, which a request may interrupt at any place: the time of a request goes before.
void setTimer(double seconds) {
    if (stopAsked == 0) {
        startTimer(seconds);
        if (stopAsked != 0) {
            startTimer(Grace);
        }
    }
}

void requestStop(int code) {
    if (tsSignal::handOver(code)) {
        return;
    }
    const double now = moment();
    // After a question that was left, only another SIGINT can be the same: the others end the run.
    if (now - lastRequest < SameRequest && (stopAsked != 0 || code == SIGINT)) {
        return;
    }
    if (stopAsked != 0) {
        mrDefaultCourse(code);
        return;
    }
    lastRequest = now;
    if (asking != 0 && code == SIGINT) {
        questionLeft = 1;
    } else {
        stopAsked = 1;
        startTimer(Grace);
    }
}

void timeIsOver(int code) {
    if (!tsSignal::handOver(code)) {
        tsSignal::leave(stopAsked != 0 ? StopText : WatchdogText);
    }
}

void installHandler(int code, void (*handler)(int), int flags) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_ONSTACK | flags;
    for (const int stop : mrStop::Requests) {
        sigaddset(&action.sa_mask, stop);
    }
    sigaction(code, &action, nullptr);
}

bool isIgnored(int code) {
    struct sigaction old = {};
    return sigaction(code, nullptr, &old) == 0 && old.sa_handler == SIG_IGN;
}

}  // namespace

void mrStop::install() {
    for (const int code : Requests) {
        if (!isIgnored(code)) {
            installHandler(code, requestStop, 0);  // without SA_RESTART: a question on the console ends too
        }
    }
    installHandler(TimeSignal, timeIsOver, SA_RESTART);
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = TimeSignal;
    hasTimer = timer_create(CLOCK_MONOTONIC, &event, &timer) == 0;
}

bool mrStop::asked() { return stopAsked != 0; }

void mrStop::beginQuestion() {
    questionLeft = 0;
    asking = 1;
}

bool mrStop::endQuestion() {
    asking = 0;
    return questionLeft == 0 && stopAsked == 0;
}

void mrStop::setWatchdog(double seconds) {
    watchdogSeconds = seconds < LongestWatch ? seconds : LongestWatch;
}

void mrStop::beginCombination() {
    if (watchdogSeconds > 0.0) {
        setTimer(watchdogSeconds);
    }
}

void mrStop::endCombination() {
    if (watchdogSeconds > 0.0) {
        setTimer(0.0);
        if (stopAsked == 0) {
            tsSignal::stay();
        }
    }
}
