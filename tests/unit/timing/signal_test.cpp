#include "timing/mrsignal.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <thread>

#include "support/captured_output.h"
#include "support/float_flags.h"

namespace {

// Faults as a function under test has them. Plain code would be undefined, and a compiler may do without it.

void badStore() {
    volatile char* address = nullptr;
    asm volatile("movb $0, (%0)" : : "r"(address) : "memory");
}

void badInstruction() { asm volatile("ud2"); }

void integerDivide() {
    asm volatile("xorl %%edx, %%edx\n\tmovl $1, %%eax\n\tdivl %0" : : "r"(0) : "eax", "edx", "cc");
}

void x87Divide() { asm volatile("fld1\n\tfldz\n\tfdivrp\n\tfwait\n\tfstp %%st(0)" : :); }

[[gnu::noinline]] int useUpTheStack(volatile int* depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(*depth);
    // The condition always holds, but only at run time.
    return *depth >= 0 ? useUpTheStack(depth) + room[0] : room[0];
}

void stackOverflow() {
    volatile int depth = 0;
    useUpTheStack(&depth);
}

constexpr struct {
    const char* what;
    void (*fault)();
    int code;
    const char* text;
} Faults[] = {
    {"store", badStore, SIGSEGV, "Illegal storage access."},
    {"instruction", badInstruction, SIGILL, "Illegal instruction."},
    {"integer divide", integerDivide, SIGFPE,
     "FP fail, such as overflow, division by zero, invalid operation."},
    {"x87 divide", x87Divide, SIGFPE, "FP fail, such as overflow, division by zero, invalid operation."},
    {"stack", stackOverflow, SIGSEGV, "Illegal storage access."},
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

class Signal : public testing::Test {
  protected:
    Signal() {
        g_ctrl87.init();
        g_ssx.init();
    }

    KeptFloatState m_kept;
};

TEST_F(Signal, BecomesAnExceptionAnyNumberOfTimes) {
    for (const auto& row : Faults) {
        for (int round = 0; round < 3; ++round) {
            g_ctrl87.init();  // zero divide is not masked
            EXPECT_EQ(guarded(row.fault), std::string("--ZYL. Signal: ") + row.text) << row.what;
            EXPECT_EQ(_g_signal.code(), row.code);
        }
    }
}

TEST_F(Signal, LeavesFloatingPointUsable) {
    for (const auto& row : Faults) {
        g_ctrl87.init();
        guarded(row.fault);
        EXPECT_EQ(wordSSX() & FlushToZero, FlushToZero) << row.what;
        EXPECT_EQ(statusWord87() & 0x3F, 0U) << row.what;
    }
}

TEST_F(Signal, UnmaskedExceptionsOfTheKeyAreSignals) {
    constexpr const char* Text =
        "--ZYL. Signal: FP fail, such as overflow, division by zero, invalid operation.";
    const auto overflow = [] {
        volatile float large = 3e38f;
        float product = large;
        asm volatile("mulss %0, %0" : "+x"(product));
    };
    EXPECT_EQ(guarded(overflow), "");
    g_ssx.setExceptionValue(4096);
    g_ctrl87.setExceptionValue(32);
    g_ssx.init();
    g_ctrl87.init();
    EXPECT_EQ(guarded(overflow), Text);
    g_ctrl87.init();
    // What the function left pending must not fire in the framework.
    EXPECT_EQ(guarded([] { asm volatile("fld1\n\tfchs\n\tfsqrt" : :); }), "");
    g_ctrl87.start();
    EXPECT_EQ(guarded([] { asm volatile("fwait\n\tfstp %%st(0)" : :); }), "");
}

TEST_F(Signal, InnerGuardsHandTheOuterPointBack) {
    std::string course;
    const std::string outer = guarded([&] {
        course += guarded([] {}) + "1";
        course += guarded(badInstruction) + "2";
        try {
            _g_signal.guard([] { throw 3; });
        } catch (int thrown) {
            course += std::to_string(thrown);
        }
        try {
            _g_signal.guard([] { throw mrException(mrString("own")); });
        } catch (const mrException& exception) {
            course += str(exception.msg());
        }
        badStore();
        course += "not reached";
    });
    EXPECT_EQ(course, "1--ZYL. Signal: Illegal instruction.23--ZYL. Exception: own");
    EXPECT_EQ(outer, "--ZYL. Signal: Illegal storage access.");
}

TEST(SignalTexts, AreCutToTheirRoom) {
    const mrString text = std::string(300, 'x').c_str();
    const mrException refusal(text);
    EXPECT_EQ(str(refusal.info()), std::string(257, 'x'));
    EXPECT_EQ(str(refusal.msg()), "--ZYL. Exception: " + std::string(255, 'x'));
    const mrException copy = mrException("signal");
    EXPECT_EQ(str(copy.info()), "signal");
    EXPECT_EQ(str(copy.msg()), "--ZYL. Signal: signal");
    const int code = tsSignal::m_code;
    tsSignal::m_code = SIGTERM;
    EXPECT_STREQ(_g_signal.getInfo(), "Unknown exception");
    tsSignal::m_code = code;
}

/// Runs `body` in a process that dies without a core file.
template <class Body>
void dying(Body body) {
    constexpr rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    body();
}

TEST(SignalDeathTest, OutsideAGuardEndsTheProcess) {
    for (const auto& row : Faults) {
        EXPECT_EXIT(dying([&] {
                        g_ctrl87.init();
                        row.fault();
                    }),
                    testing::KilledBySignal(row.code), "")
            << row.what;
    }
    EXPECT_EXIT(dying([] {
                    _g_signal.guard([] {});
                    badStore();
                }),
                testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(dying([] {
                    guarded(badInstruction);
                    badInstruction();
                }),
                testing::KilledBySignal(SIGILL), "");
}

TEST(SignalDeathTest, OnAThreadOfTheFunctionEndsTheProcess) {
    EXPECT_EXIT(dying([] { guarded([] { std::thread(badStore).join(); }); }),
                testing::KilledBySignal(SIGSEGV), "");
}

}  // namespace
