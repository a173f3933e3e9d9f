#include "timing/mrsignal.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <thread>

#include "support/captured_output.h"
#include "support/faults.h"
#include "support/float_flags.h"

namespace {

constexpr const char* Storage = "--ZYL. Signal: Illegal storage access.";
constexpr const char* Instruction = "--ZYL. Signal: Illegal instruction.";
constexpr const char* Float =
    "--ZYL. Signal: FP fail, such as overflow, division by zero, invalid operation.";

constexpr struct {
    void (*fault)();
    int code;
    const char* text;
} Faults[] = {
    {badStore, SIGSEGV, Storage},   {stackOverflow, SIGSEGV, Storage}, {badInstruction, SIGILL, Instruction},
    {integerDivide, SIGFPE, Float}, {x87Divide, SIGFPE, Float},
};

/// The message of the exception that a guarded body ends with, "" if it ends well.
template <class Body>
std::string guarded(Body body) {
    try {
        _g_signal.guard(body);
    } catch (const mrException& exception) {
        return str(exception.msg());
    }
    return "";
}

TEST(Signal, BecomesAnExceptionAnyNumberOfTimes) {
    const KeptFloatState kept;
    for (const auto& row : Faults) {
        for (int round = 0; round < 3; ++round) {
            g_ctrl87.init();  // zero divide is not masked
            EXPECT_EQ(guarded(row.fault), row.text);
            EXPECT_EQ(_g_signal.code(), row.code);
            EXPECT_EQ(wordSSX() & 0x8000, 0x8000U) << "flush-to-zero is off";
            EXPECT_EQ(zylFpuSsx4TS(3, 0, 0) & 0x3F, 0U) << "an x87 exception is pending";
        }
    }
}

TEST(Signal, ComesFromExceptionsThatTheKeyUnmasks) {
    const KeptFloatState kept;
    const auto overflow = [] {
        float value = 3e38f;
        asm volatile("mulss %0, %0" : "+x"(value));
    };
    g_ssx.init();
    EXPECT_EQ(guarded(overflow), "");
    g_ssx.setExceptionValue(4096);
    g_ctrl87.setExceptionValue(32);
    g_ssx.init();
    g_ctrl87.init();
    EXPECT_EQ(guarded(overflow), Float);
    // What a function left pending must not fire in the framework.
    g_ctrl87.init();
    EXPECT_EQ(guarded([] { asm volatile("fld1\n\tfchs\n\tfsqrt" : :); }), "");
    g_ctrl87.start();
    EXPECT_EQ(guarded([] { asm volatile("fwait\n\tfstp %%st(0)" : :); }), "");
}

TEST(Signal, InnerGuardsHandTheOuterPointBack) {
    const KeptFloatState kept;
    std::string course;
    EXPECT_EQ(guarded([&] {
                  course += guarded([] {}) + "1 ";
                  course += guarded(badInstruction) + " 2 ";
                  try {
                      _g_signal.guard([] { throw 3; });
                  } catch (int thrown) {
                      course += std::to_string(thrown) + " ";
                  }
                  course += guarded([] { throw mrException(mrString("own")); });
                  badStore();
                  course += "not reached";
              }),
              Storage);
    EXPECT_EQ(course, std::string("1 ") + Instruction + " 2 3 --ZYL. Exception: own");
}

/// Runs `body` in a process that dies without a core file.
template <class Body>
void dying(Body body) {
    constexpr rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    g_ctrl87.init();
    body();
}

TEST(SignalDeathTest, WithoutAReturnPointEndsTheProcess) {
    const auto segv = testing::KilledBySignal(SIGSEGV);
    for (const auto& row : Faults) {
        EXPECT_EXIT(dying(row.fault), testing::KilledBySignal(row.code), "");
        EXPECT_EXIT(dying([&] {
                        guarded(row.fault);
                        badStore();
                    }),
                    segv, "");
    }
    const auto afterGuard = [] {
        guarded([] {});
        badStore();
    };
    EXPECT_EXIT(dying(afterGuard), segv, "");
    const auto onThread = [] { guarded([] { std::thread(badStore).join(); }); };
    EXPECT_EXIT(dying(onThread), segv, "");
}

}  // namespace
