// Stands between metrig and its library, loaded by LD_PRELOAD. METRIG_FAULTS tells what goes wrong where, as
// in "zylsCompare_8u=read zylsEqual_8u=negative@22": at every call, or at the one of that number. A function
// that it does not name is the library's own.

#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>
#include <xmmintrin.h>
#include <zylch.h>

#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <type_traits>

namespace {

volatile std::uintptr_t nowhere = 16;
volatile float zero = 0.0F;
volatile float result;
volatile unsigned char sink;

void read() { sink = *reinterpret_cast<volatile unsigned char*>(nowhere); }
void write() { *reinterpret_cast<volatile unsigned char*>(nowhere) = 1; }
void jump() { reinterpret_cast<void (*)()>(nowhere)(); }
void divide() { asm volatile("xorl %%eax, %%eax\n\tcltd\n\tidivl %%eax" ::: "eax", "edx", "cc"); }
void illegal() { asm volatile("ud2"); }
/// Reads a page that no file stands behind.
void bus() {
    sink = *static_cast<volatile unsigned char*>(
        mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, memfd_create("empty", 0), 0));
}

void trap() { asm volatile("int3"); }
void refusedCall() { std::raise(SIGSYS); }

void throwException() { throw std::bad_alloc(); }
void throwNumber() { throw 3; }
/// Takes all that the process may have, and keeps it.
void useUpMemory() {
    std::size_t pages = 0;
    std::fscanf(std::fopen("/proc/self/statm", "r"), "%zu", &pages);
    const rlimit limit = {pages * 4096 + 0x4000000, RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &limit);
    for (std::size_t size = 0x1000000; size > 8; size /= 2) {
        void* volatile block = nullptr;
        do {
            block = std::malloc(size);
        } while (block != nullptr);
    }
    throw std::bad_alloc();
}

void neverReturn() {
    for (;;) {
        pause();
    }
}
/// As "timeout" does: to the process, and to its group.
void terminateTwice() {
    std::raise(SIGTERM);
    std::raise(SIGTERM);
}
void hangUp() {
    std::raise(SIGHUP);
    neverReturn();
}
void interruptTwice() {
    std::raise(SIGINT);
    usleep(1100000);
    std::raise(SIGINT);
}
void kill() { std::raise(SIGKILL); }

/// Takes stack until there is none.
int deeper(volatile const char* caller) {
    volatile char room[4096];
    room[0] = *caller;
    return room[0] == 1 ? 0 : deeper(room) + room[0];
}
void overflow() { sink = static_cast<unsigned char>(deeper("")); }

/// Flags zero divide in MXCSR, or raises it where it is unmasked.
void flagSse() { result = 1.0F / zero; }
/// Flags an invalid operation in the x87 status.
void flag87() { asm volatile("fldz\n\tfldz\n\tfdivp\n\tfstp %%st(0)" ::: "st", "st(1)"); }

void leaveMmx() { asm volatile("pxor %%mm0, %%mm0" ::: "mm0"); }
void leaveDirection() { asm volatile("std"); }
void unmaskSse() { _mm_setcsr(_mm_getcsr() & ~0x1F80U); }
void blockSignals() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, nullptr);
}
void takeHandlers() {
    for (const int signal : {SIGSEGV, SIGFPE, SIGTERM}) {
        std::signal(signal, SIG_DFL);
    }
}
void takeSignalStack() {
    const stack_t none = {nullptr, SS_DISABLE, 0};
    sigaltstack(&none, nullptr);
}
void changeLocale() { std::setlocale(LC_ALL, "C.UTF-8"); }

/// Leaves other rounding and masks behind.
void changeControl() {
    const unsigned short control = 0xF7F;
    const unsigned mxcsr = 0x7F80;
    asm volatile("fldcw %0\n\tldmxcsr %1" : : "m"(control), "m"(mxcsr));
}

/// End of the buffer that is written, where the function has one.
unsigned char* bufferEnd = nullptr;
void overrun() { std::memset(bufferEnd, 0x5A, 8); }

/// Tells once in what floating-point state the function is called, status flags aside.
void tellState() {
    static bool told = false;
    unsigned short control;
    unsigned mxcsr;
    asm volatile("fnstcw %0\n\tstmxcsr %1" : "=m"(control), "=m"(mxcsr));
    if (!told) {
        std::fprintf(stderr, "x87 %03x mxcsr %04x\n", control & 0xF3FU, mxcsr & ~0x3FU);
    }
    told = true;
}

struct Kind {
    const char* name;
    void (*act)();              ///< null: nothing
    std::optional<int> status;  ///< none: that of the library's function, which is called after `act`
};

constexpr Kind kinds[] = {
    {"read", read, {}},
    {"write", write, {}},
    {"jump", jump, {}},
    {"overflow", overflow, {}},
    {"divide", divide, {}},
    {"illegal", illegal, {}},
    {"bus", bus, {}},
    {"abort", std::abort, {}},
    {"trap", trap, {}},
    {"syscall", refusedCall, {}},
    {"throw", throwException, {}},
    {"number", throwNumber, {}},
    {"memory", useUpMemory, {}},
    {"hang", neverReturn, {}},
    {"sse", flagSse, {}},
    {"x87", flag87, {}},
    {"control", changeControl, {}},
    {"state", tellState, {}},
    {"mmx", leaveMmx, {}},
    {"direction", leaveDirection, 0},
    {"unmask", unmaskSse, {}},
    {"mask", blockSignals, {}},
    {"handlers", takeHandlers, {}},
    {"stack", takeSignalStack, {}},
    {"locale", changeLocale, {}},
    {"overrun", overrun, {}},
    {"nothing", nullptr, 0},
    {"negative", nullptr, -8},
    {"positive", nullptr, 5},
    {"terminate", terminateTwice, {}},
    {"hangup", hangUp, {}},
    {"interrupt", interruptTwice, {}},
    {"kill", kill, {}},
};

/// One function of the library and what it is told to do.
class Fault {
  public:
    explicit Fault(const char* function) : m_next(dlsym(RTLD_NEXT, function)) {
        const char* faults = std::getenv("METRIG_FAULTS");
        const std::string text = std::string(" ") + (faults != nullptr ? faults : "") + " ";
        const std::string key = std::string(" ") + function + "=";
        const std::size_t at = text.find(key);
        if (at == std::string::npos) {
            return;
        }
        const std::size_t start = at + key.size();
        const std::string value = text.substr(start, text.find(' ', start) - start);
        const std::size_t sign = value.find('@');
        for (const Kind& kind : kinds) {
            if (value.substr(0, sign) == kind.name) {
                m_kind = &kind;
            }
        }
        m_number = sign == std::string::npos ? 0 : std::atoi(value.c_str() + sign + 1);
    }

    template <typename... Args>
    int call(int (* /*function*/)(Args...), std::type_identity_t<Args>... args) {
        if (m_kind != nullptr && (m_number == 0 || ++m_calls == m_number)) {
            if (m_kind->act != nullptr) {
                m_kind->act();
            }
            if (m_kind->status) {
                return *m_kind->status;
            }
        }
        return reinterpret_cast<int (*)(Args...)>(m_next)(args...);
    }

  private:
    void* m_next;
    const Kind* m_kind = nullptr;
    int m_number = 0;  ///< 0: every call
    int m_calls = 0;
};

}  // namespace

// Puts F between, with the parameters and the arguments of its signature.
#define FAULT(F, parameters, ...) \
    static Fault fault_##F(#F);   \
    int F parameters { return fault_##F.call(F, __VA_ARGS__); }

FAULT(zylsCompare_8u, (const Zyl8u* a, const Zyl8u* b, int len, int* order), a, b, len, order)
FAULT(zylsCompareIgnoreCaseLatin_8u, (const Zyl8u* a, const Zyl8u* b, int len, int* order), a, b, len, order)
FAULT(zylsEqual_8u, (const Zyl8u* a, const Zyl8u* b, int len, int* equal), a, b, len, equal)
FAULT(zylsFindC_8u, (const Zyl8u* src, int len, Zyl8u value, int* index), src, len, value, index)
FAULT(zylsFindRevC_8u, (const Zyl8u* src, int len, Zyl8u value, int* index), src, len, value, index)
FAULT(zylsHash_8u32u, (const Zyl8u* src, int len, Zyl32u* hash), src, len, hash)
FAULT(zylsHash_16u32u, (const Zyl16u* src, int len, Zyl32u* hash), src, len, hash)
FAULT(zylsHashMSCS_8u32u, (const Zyl8u* src, int len, Zyl32u* hash), src, len, hash)
FAULT(zylsHashMSCS_16u32u, (const Zyl16u* src, int len, Zyl32u* hash), src, len, hash)
FAULT(zylsInsert_8u, (const Zyl8u* src, int len, const Zyl8u* ins, int lenIns, Zyl8u* dst, int start), src,
      len, ins, lenIns, dst, start)
FAULT(zylsRemove_8u, (const Zyl8u* src, int len, Zyl8u* dst, int start, int count), src, len, dst, start,
      count)
FAULT(zylsTrimC_8u_I, (Zyl8u * srcDst, int* len, Zyl8u value), srcDst, len, value)
FAULT(zylsTrimC_8u, (const Zyl8u* src, int len, Zyl8u value, Zyl8u* dst, int* lenDst), src, len, value, dst,
      lenDst)

static Fault fault_zylsReplaceC_8u("zylsReplaceC_8u");
int zylsReplaceC_8u(const Zyl8u* src, Zyl8u* dst, int len, Zyl8u oldValue, Zyl8u newValue) {
    bufferEnd = dst + len;
    return fault_zylsReplaceC_8u.call(zylsReplaceC_8u, src, dst, len, oldValue, newValue);
}
