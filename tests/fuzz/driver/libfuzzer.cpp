/// libFuzzer reports no signal that has a handler already, and the framework's stand before main.

#include <csignal>
#include <initializer_list>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    for (const int code : {SIGFPE, SIGILL, SIGSEGV, SIGBUS, SIGABRT, SIGINT, SIGTERM}) {
        std::signal(code, SIG_DFL);
    }
    return 0;
}
