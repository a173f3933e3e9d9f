#include "timing/mrsignal.h"

#include <cstring>
#include <exception>

#include "timing/mrfloat.h"

namespace {

struct CaughtSignal {
    int code;
    const char* text;
};

constexpr const char* UnknownSignal = "Unknown exception";

constexpr CaughtSignal Caught[] = {
    {SIGFPE, "FP fail, such as overflow, division by zero, invalid operation."},
    {SIGILL, "Illegal instruction."},
    {SIGSEGV, "Illegal storage access."},
    {SIGBUS, UnknownSignal},
    {SIGABRT, UnknownSignal},
};

/// The handler runs here, so that a function under test that used up the stack is survived like any other
/// fault.
constexpr std::size_t HandlerStackSize = 64 * 1024;
alignas(16) char handlerStack[HandlerStackSize];

constexpr int StopSignals[] = {SIGINT, SIGTERM};

void install(int code, void (*handler)(int), int flags) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(code, &action, nullptr);
}

/// A run that was started deaf to the signal stays so. Without SA_RESTART, so that a question on the console
/// ends too.
void installStop(int code, void (*handler)(int)) {
    struct sigaction old = {};
    if (sigaction(code, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) {
        install(code, handler, 0);
    }
}

void useHandlerStack(int flags) {
    stack_t stack = {};
    stack.ss_sp = handlerStack;
    stack.ss_size = sizeof handlerStack;
    stack.ss_flags = flags;
    sigaltstack(&stack, nullptr);
}

/// Saves the return point in force and hands it back at the end, by return or by exception.
class SavedReturnPoint {
  public:
    SavedReturnPoint(jmp_buf& point, volatile std::sig_atomic_t& armed)
        : m_point(point), m_armed(armed), m_wasArmed(armed) {
        std::memcpy(&m_saved, &point, sizeof m_saved);
    }
    SavedReturnPoint(const SavedReturnPoint&) = delete;
    SavedReturnPoint& operator=(const SavedReturnPoint&) = delete;
    ~SavedReturnPoint() {
        std::memcpy(&m_point, &m_saved, sizeof m_saved);
        m_armed = m_wasArmed;
    }

  private:
    jmp_buf& m_point;
    volatile std::sig_atomic_t& m_armed;
    std::sig_atomic_t m_wasArmed;
    jmp_buf m_saved;
};

}  // namespace

jmp_buf tsSignal::m_jmpbuf;
volatile std::sig_atomic_t tsSignal::m_code = 0;
volatile std::sig_atomic_t tsSignal::m_armed = 0;
volatile std::sig_atomic_t tsSignal::m_stopAsked = 0;
pthread_t tsSignal::m_thread;

tsSignal::tsSignal() {
    m_thread = pthread_self();
    useHandlerStack(0);
    for (const CaughtSignal& caught : Caught) {
        install(caught.code, handler, SA_ONSTACK);
    }
    for (const int code : StopSignals) {
        installStop(code, askStop);
    }
    // What these would end the run for is told as a failed write.
    install(SIGPIPE, SIG_IGN, 0);
    install(SIGXFSZ, SIG_IGN, 0);
}

tsSignal::~tsSignal() {
    for (const CaughtSignal& caught : Caught) {
        std::signal(caught.code, SIG_DFL);
    }
    useHandlerStack(SS_DISABLE);
}

const char* tsSignal::getInfo() const {
    for (const CaughtSignal& caught : Caught) {
        if (caught.code == m_code) {
            return caught.text;
        }
    }
    return UnknownSignal;
}

void tsSignal::guardCall(void (*body)(void*), void* context) {
    const SavedReturnPoint outer(m_jmpbuf, m_armed);
    if (_setjmp(m_jmpbuf) != 0) {
        m_armed = 0;
        // The kernel gave the handler a fresh floating-point state, and the jump kept it.
        mrRestoreFloatState();
        throw mrException(getInfo());
    }
    m_armed = 1;
    try {
        body(context);
    } catch (const std::exception& exception) {
        throw mrException(mrString(exception.what()));
    }
}

void tsSignal::handler(int code) {
    if (m_armed == 0 || pthread_equal(pthread_self(), m_thread) == 0) {
        defaultCourse(code);
        return;
    }
    sig_fpe(code, 0);
}

void tsSignal::sig_fpe(int code, int) {
    m_code = code;
    // _setjmp keeps no mask: a signal left blocked would kill the process the second time.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, code);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    longjmp(m_jmpbuf, -1);
}

/// Pending until the handler returns; then the default action ends the process where the fault was.
void tsSignal::defaultCourse(int code) {
    std::signal(code, SIG_DFL);
    raise(code);
}

void tsSignal::askStop(int) {
    m_stopAsked = 1;
    // The next one ends the process at once.
    for (const int code : StopSignals) {
        std::signal(code, SIG_DFL);
    }
}
