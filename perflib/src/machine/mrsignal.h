#pragma once

#include <pthread.h>
#include <csetjmp>
#include <csignal>

#include "text/mrexception.h"

/// Turns a signal in a function under test into an mrException that the test survives: the handler stores the
/// code and jumps to the return point armed last. Without one, or on a thread that is not the one of the
/// measurements, the signal takes its default course: a crash of the framework itself is not hidden.
class tsSignal {
  public:
    struct Caught {
        int code;
        const char* text;  ///< of its report
    };
    static constexpr const char* UnknownSignal = "Unknown exception";
    /// The signals that a test survives.
    static constexpr Caught Signals[] = {
        {SIGFPE, "FP fail, such as overflow, division by zero, invalid operation."},
        {SIGILL, "Illegal instruction."},
        {SIGSEGV, "Illegal storage access."},
        {SIGBUS, UnknownSignal},
        {SIGABRT, UnknownSignal},
        {SIGTRAP, UnknownSignal},
        {SIGSYS, UnknownSignal},
    };
    /// What these would end the run for is told as a failed write.
    static constexpr int Ignored[] = {SIGPIPE, SIGXFSZ};

    tsSignal();
    tsSignal(const tsSignal&) = delete;
    tsSignal& operator=(const tsSignal&) = delete;
    ~tsSignal();

    /// The last signal, 0 before the first.
    int code() const { return m_code; }
    /// Its text.
    const char* getInfo() const;

    /// Runs `body` with a return point of its own. A signal inside it throws mrException from here; nothing
    /// between is unwound. A std::exception, of a suite without memory or of the library, becomes one too.
    /// The return point that was armed before is back in force afterwards, however `body` is left.
    template <class Body>
    void guard(Body body) {
        guardCall([](void* context) { (*static_cast<Body*>(context))(); }, &body);
    }

    /// For a guarded call of a suite or of the library: while one lives, the call can be given up. Its making
    /// throws mrException if giving up was asked for before.
    class Leavable {
      public:
        Leavable();
        Leavable(const Leavable&) = delete;
        Leavable& operator=(const Leavable&) = delete;
        ~Leavable() { m_leavable = 0; }
    };
    /// True inside such a call.
    static bool isLeavable() { return m_leavable != 0; }
    /// Gives up the call in progress, or else the next one: the guard around it throws mrException with
    /// `text`, which has to stay. For signal handlers.
    static void leave(const char* text);
    /// No call is to be given up any more.
    static void stay() { m_leaveText = nullptr; }
    /// On another thread than that of the measurements: sends the signal there and returns true.
    static bool handOver(int code);

    // What a function under test may have taken away: each puts it back and returns true if that was needed.

    static bool restoreHandlers();
    static bool restoreStack();
    static bool restoreMask();

    /// What the installed handler does: `thread` is unused and kept for handlers of systems that pass it.
    static void sig_fpe(int code, int thread);

    static jmp_buf m_jmpbuf;
    static volatile std::sig_atomic_t m_code;

  private:
    void guardCall(void (*body)(void*), void* context);
    static void handler(int code);
    [[noreturn]] static void jump(int reason);

    static volatile std::sig_atomic_t m_armed;
    static volatile std::sig_atomic_t m_leavable;
    static const char* volatile m_leaveText;
    static pthread_t m_thread;
};

/// The default action of a signal, from its handler: pending until that returns, then the process ends where
/// the signal met it.
void mrDefaultCourse(int code);

extern tsSignal _g_signal;
