#pragma once

#include <pthread.h>
#include <csetjmp>
#include <csignal>

#include "timing/mrexception.h"

/// Turns SIGFPE, SIGILL and SIGSEGV in a function under test into an mrException that the test survives: the
/// handler stores the code and jumps to the return point armed last. Without one, or on a thread that is not
/// the one of the measurements, the signal takes its default course: a crash of the framework itself is not
/// hidden.
class tsSignal {
  public:
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

    /// True once SIGINT or SIGTERM has asked the run to end.
    static bool stopAsked() { return m_stopAsked != 0; }

    /// What the installed handler does: `thread` is unused and kept for handlers of systems that pass it.
    static void sig_fpe(int code, int thread);

    static jmp_buf m_jmpbuf;
    static volatile std::sig_atomic_t m_code;

  private:
    void guardCall(void (*body)(void*), void* context);
    static void handler(int code);
    static void defaultCourse(int code);
    static void askStop(int code);

    static volatile std::sig_atomic_t m_armed;
    static volatile std::sig_atomic_t m_stopAsked;
    static pthread_t m_thread;
};

extern tsSignal _g_signal;
