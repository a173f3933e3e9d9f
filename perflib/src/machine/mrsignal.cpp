#include "machine/mrsignal.h"

#include <cstring>
#include <exception>

#include "machine/mrfloat.h"
#include "machine/mrstop.h"

namespace {

/// The handler runs here, so that a function under test that used up the stack is survived like any other
/// fault.
constexpr std::size_t HandlerStackSize = 64 * 1024;
alignas(16) char handlerStack[HandlerStackSize];

/// As they stand when all handlers are installed.
struct sigaction installed[NSIG];
sigset_t installedMask = {};

/// What a jump returns with: one is for the other of the two ways to leave a guarded call.
enum JumpReason : int { Fault = -1, Left = 1 };

void install(int code, void (*handler)(int), int flags) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(code, &action, nullptr);
}

void useHandlerStack(int flags) {
    stack_t stack = {};
    stack.ss_sp = handlerStack;
    stack.ss_size = sizeof handlerStack;
    stack.ss_flags = flags;
    sigaltstack(&stack, nullptr);
}

template <class Visit>
void forReliedOn(Visit visit) {
    for (const tsSignal::Caught& caught : tsSignal::Signals) {
        visit(caught.code);
    }
    for (const int code : mrStop::Requests) {
        visit(code);
    }
    visit(mrStop::TimeSignal);
    for (const int code : tsSignal::Ignored) {
        visit(code);
    }
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
volatile std::sig_atomic_t tsSignal::m_leavable = 0;
const char* volatile tsSignal::m_leaveText = nullptr;
pthread_t tsSignal::m_thread;

tsSignal::tsSignal() {
    m_thread = pthread_self();
    useHandlerStack(0);
    for (const Caught& caught : Signals) {
        install(caught.code, handler, SA_ONSTACK);
    }
    mrStop::install();
    for (const int code : Ignored) {
        install(code, SIG_IGN, 0);
    }
    forReliedOn([](int code) { sigaction(code, nullptr, &installed[code]); });
    pthread_sigmask(SIG_SETMASK, nullptr, &installedMask);
}

tsSignal::~tsSignal() {
    for (const Caught& caught : Signals) {
        std::signal(caught.code, SIG_DFL);
    }
    useHandlerStack(SS_DISABLE);
}

const char* tsSignal::getInfo() const {
    for (const Caught& caught : Signals) {
        if (caught.code == m_code) {
            return caught.text;
        }
    }
    return UnknownSignal;
}

void tsSignal::guardCall(void (*body)(void*), void* context) {
    const SavedReturnPoint outer(m_jmpbuf, m_armed);
    const int reason = _setjmp(m_jmpbuf);
    if (reason != 0) {
        m_armed = 0;
        m_leavable = 0;
        // The kernel gave the handler a fresh floating-point state, and the jump kept it.
        mrRestoreFloatState();
        throw mrException(reason == Left ? m_leaveText : getInfo());
    }
    m_armed = 1;
    try {
        body(context);
    } catch (const std::exception& exception) {
        throw mrException(mrString(exception.what()));
    }
}

tsSignal::Leavable::Leavable() {
    m_leavable = 1;
    if (m_leaveText != nullptr) {
        m_leavable = 0;
        throw mrException(m_leaveText);
    }
}

void tsSignal::leave(const char* text) {
    m_leaveText = text;
    if (m_leavable != 0 && m_armed != 0) {
        jump(Left);
    }
}

bool tsSignal::handOver(int code) {
    return pthread_equal(pthread_self(), m_thread) == 0 && pthread_kill(m_thread, code) == 0;
}

bool tsSignal::restoreHandlers() {
    bool changed = false;
    forReliedOn([&](int code) {
        struct sigaction now = {};
        sigaction(code, nullptr, &now);
        if (now.sa_handler != installed[code].sa_handler) {
            sigaction(code, &installed[code], nullptr);
            changed = true;
        }
    });
    return changed;
}

bool tsSignal::restoreStack() {
    stack_t now = {};
    sigaltstack(nullptr, &now);
    const bool changed = now.ss_sp != handlerStack || (now.ss_flags & SS_DISABLE) != 0;
    if (changed) {
        useHandlerStack(0);
    }
    return changed;
}

bool tsSignal::restoreMask() {
    sigset_t before = {};
    pthread_sigmask(SIG_SETMASK, &installedMask, &before);
    return std::memcmp(&before, &installedMask, sizeof before) != 0;
}

void tsSignal::handler(int code) {
    if (m_armed == 0 || pthread_equal(pthread_self(), m_thread) == 0) {
        mrDefaultCourse(code);
        return;
    }
    sig_fpe(code, 0);
}

void tsSignal::sig_fpe(int code, int) {
    m_code = code;
    jump(Fault);
}

void tsSignal::jump(int reason) {
    // _setjmp keeps no mask: a signal left blocked would kill the process the second time.
    restoreMask();
    longjmp(m_jmpbuf, reason);
}

void mrDefaultCourse(int code) {
    std::signal(code, SIG_DFL);
    raise(code);
}
