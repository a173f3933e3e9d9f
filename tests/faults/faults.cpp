// Stands between metrig and its library, loaded by LD_PRELOAD. METRIG_FAULTS tells what goes wrong where, as
// in "zylsCompare_8u=read zylsEqual_8u=negative@22": at every call, or at the one of that number. A function
// that it does not name is the library's own.

#include <dlfcn.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>
#include <xmmintrin.h>
#include <zylch.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <string>

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

int throwException() { throw std::bad_alloc(); }
int throwNumber() { throw 3; }
/// Takes all that the process may have, and keeps it.
int useUpMemory() {
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

int returnNone() { return 0; }
int returnNegative() { return -8; }
int returnPositive() { return 5; }

// Ways to end a process that none of its own handlers sees.

void exitProcess() { std::exit(3); }
void exitAtOnce() { _exit(4); }
void exitQuickly() { std::quick_exit(5); }
/// Behind the compiler's back.
[[gnu::noinline]] void spoil(char* start, std::size_t size) {
    std::memset(start, 0x41, size);
    asm volatile("" ::: "memory");
}
/// Writes over the head of the block behind its own, which is found out when that is given back.
void damageHeap() {
    const std::size_t size = 50000;  // of the end of the heap, so side by side
    char* block = static_cast<char*>(std::malloc(size));
    char* next = static_cast<char*>(std::malloc(size));
    spoil(block, size + 32);
    std::free(next);
    std::free(block);
}
void unmapHeap() {
    std::FILE* maps = std::fopen("/proc/self/maps", "r");
    char line[512];
    while (std::fgets(line, sizeof line, maps) != nullptr) {
        unsigned long begin = 0;
        unsigned long end = 0;
        if (std::strstr(line, "[heap]") != nullptr && std::sscanf(line, "%lx-%lx", &begin, &end) == 2) {
            munmap(reinterpret_cast<void*>(begin), end - begin);
        }
    }
}
void smashStack() {
    char here = 0;
    spoil(&here, 0x4000);
}
void spin() {
    for (;;) {
        sink = sink + 1;
    }
}
void spinDeaf() {
    blockSignals();
    spin();
}
void readDeaf() {
    blockSignals();
    read();
}
void readByDefault() {
    takeHandlers();
    read();
}
void overflowWithoutStack() {
    takeSignalStack();
    overflow();
}
void crashThread() {
    pthread_t thread;
    pthread_create(
        &thread, nullptr, [](void*) -> void* { return read(), nullptr; }, nullptr);
    pthread_join(thread, nullptr);
}
void leaveThread() { pthread_exit(nullptr); }
void closeAll() {
    for (int number = 0; number < 1024; ++number) {
        close(number);
    }
}
void freeze() { std::raise(SIGSTOP); }
/// By a signal that nobody waits for.
void wakeUp() {
    const itimerval soon = {{0, 0}, {0, 10000}};
    setitimer(ITIMER_REAL, &soon, nullptr);
    neverReturn();
}
void refuseAllCalls() { prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT); }
void becomeAnother() { execl("/bin/true", "true", nullptr); }
void waitForItself() {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    pthread_mutex_lock(&mutex);
}

/// A function that leaves damage behind, of which another one dies in the same process.
bool poisonous = false;
void poison() { poisonous = true; }
void dieIfPoisoned() {
    if (poisonous) {
        kill();
    }
}

/// What is done in a call, and what is called in the place of the library's function; null: nothing, and
/// that.
struct Kind {
    const char* name;
    void (*act)();
    int (*instead)();
};

constexpr Kind kinds[] = {
    {"read", read, nullptr},
    {"write", write, nullptr},
    {"jump", jump, nullptr},
    {"overflow", overflow, nullptr},
    {"divide", divide, nullptr},
    {"illegal", illegal, nullptr},
    {"bus", bus, nullptr},
    {"abort", std::abort, nullptr},
    {"trap", trap, nullptr},
    {"syscall", refusedCall, nullptr},
    {"throw", nullptr, throwException},
    {"number", nullptr, throwNumber},
    {"memory", nullptr, useUpMemory},
    {"hang", neverReturn, nullptr},
    {"sse", flagSse, nullptr},
    {"x87", flag87, nullptr},
    {"control", changeControl, nullptr},
    {"state", tellState, nullptr},
    {"mmx", leaveMmx, nullptr},
    {"direction", leaveDirection, returnNone},
    {"unmask", unmaskSse, nullptr},
    {"mask", blockSignals, nullptr},
    {"handlers", takeHandlers, nullptr},
    {"stack", takeSignalStack, nullptr},
    {"locale", changeLocale, nullptr},
    {"overrun", overrun, nullptr},
    {"nothing", nullptr, returnNone},
    {"negative", nullptr, returnNegative},
    {"positive", nullptr, returnPositive},
    {"terminate", terminateTwice, nullptr},
    {"hangup", hangUp, nullptr},
    {"interrupt", interruptTwice, nullptr},
    {"kill", kill, nullptr},
    {"exit", exitProcess, nullptr},
    {"_exit", exitAtOnce, nullptr},
    {"quick", exitQuickly, nullptr},
    {"heap", damageHeap, nullptr},
    {"unheap", unmapHeap, nullptr},
    {"smash", smashStack, nullptr},
    {"spin", spin, nullptr},
    {"deaf", spinDeaf, nullptr},
    {"deafread", readDeaf, nullptr},
    {"default", readByDefault, nullptr},
    {"nostack", overflowWithoutStack, nullptr},
    {"thread", crashThread, nullptr},
    {"leave", leaveThread, nullptr},
    {"close", closeAll, nullptr},
    {"freeze", freeze, nullptr},
    {"alarm", wakeUp, nullptr},
    {"sandbox", refuseAllCalls, nullptr},
    {"exec", becomeAnother, nullptr},
    {"deadlock", waitForItself, nullptr},
    {"poison", poison, nullptr},
    {"poisoned", dieIfPoisoned, nullptr},
};

/// One function of the library and what it is told to do.
class Fault {
  public:
    Fault() = default;
    explicit Fault(const char* function) : m_function(function), m_next(dlsym(RTLD_NEXT, function)) {
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

    /// By the address of its name.
    const char* function() const { return m_function; }

    /// A call begins; what is to be called in its place.
    void* visit() {
        if (m_kind == nullptr || (m_number != 0 && ++m_calls != m_number)) {
            return m_next;
        }
        if (m_kind->act != nullptr) {
            m_kind->act();
        }
        return m_kind->instead != nullptr ? reinterpret_cast<void*>(m_kind->instead) : m_next;
    }

  private:
    const char* m_function = nullptr;
    void* m_next = nullptr;
    const Kind* m_kind = nullptr;
    int m_number = 0;  ///< 0: every call
    int m_calls = 0;
};

Fault faults[64];

}  // namespace

/// For the functions below: what the call of the function of that name is to go to.
extern "C" [[gnu::visibility("hidden"), gnu::used]] void* visit(const char* function) {
    Fault* fault = std::ranges::find_if(
        faults, [&](const Fault& at) { return at.function() == function || at.function() == nullptr; });
    if (fault->function() == nullptr) {
        *fault = Fault(function);
    }
    return fault->visit();
}

// Puts F between, whatever its arguments: they stay where they are, in registers and on the stack. The name
// stands behind a call, which leaves its address.
#ifdef __x86_64__
#define FAULT(F)                                                           \
    asm(".text; .globl " #F "; .type " #F ", @function\n" #F               \
        ":\n"                                                              \
        "push %rdi; push %rsi; push %rdx; push %rcx; push %r8; push %r9\n" \
        "call 1f; .asciz \"" #F                                            \
        "\"\n"                                                             \
        "1: mov (%rsp), %rdi; call visit; add $8, %rsp\n"                  \
        "pop %r9; pop %r8; pop %rcx; pop %rdx; pop %rsi; pop %rdi; jmp *%rax\n");
#else
#define FAULT(F)                                             \
    asm(".text; .globl " #F "; .type " #F ", @function\n" #F \
        ":\n"                                                \
        "sub $8, %esp; call 1f; .asciz \"" #F                \
        "\"\n"                                               \
        "1: call visit; add $12, %esp; jmp *%eax\n");
#endif

FAULT(zylsCompare_8u)
FAULT(zylsCompareIgnoreCaseLatin_8u)
FAULT(zylsConcat_8u)
FAULT(zylsConcat_8u_D2L)
FAULT(zylsConcatC_8u_D2L)
FAULT(zylsConvertUTF_8u16u)
FAULT(zylsConvertUTF_16u8u)
FAULT(zylsEqual_8u)
FAULT(zylsFind_8u)
FAULT(zylsFindC_8u)
FAULT(zylsFindCAny_8u)
FAULT(zylsFindC_Z_8u)
FAULT(zylsFindRev_8u)
FAULT(zylsFindRevC_8u)
FAULT(zylsFindRevCAny_8u)
FAULT(zylsFind_Z_8u)
FAULT(zylsHash_8u32u)
FAULT(zylsHash_16u32u)
FAULT(zylsHashMSCS_8u32u)
FAULT(zylsHashMSCS_16u32u)
FAULT(zylsHashSJ2_8u32u)
FAULT(zylsHashSJ2_16u32u)
FAULT(zylsInsert_8u)
FAULT(zylsInsert_8u_I)
FAULT(zylsLowercaseLatin_8u)
FAULT(zylsLowercaseLatin_8u_I)
FAULT(zylsRegExpFind_8u)
FAULT(zylsRegExpReplace_8u)
FAULT(zylsRemove_8u)
FAULT(zylsRemove_8u_I)
FAULT(zylsSplitC_8u_D2L)
FAULT(zylsTrimC_8u)
FAULT(zylsTrimC_8u_I)
FAULT(zylsTrimCAny_8u)
FAULT(zylsTrimEndCAny_8u)
FAULT(zylsTrimStartCAny_8u)
FAULT(zylsUppercaseLatin_8u)
FAULT(zylsUppercaseLatin_8u_I)

int zylsReplaceC_8u(const Zyl8u* src, Zyl8u* dst, int len, Zyl8u oldValue, Zyl8u newValue) {
    bufferEnd = dst + len;
    return reinterpret_cast<decltype(&zylsReplaceC_8u)>(visit("zylsReplaceC_8u"))(src, dst, len, oldValue,
                                                                                  newValue);
}
