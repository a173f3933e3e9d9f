#include "machine/mrsignal.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <thread>

#include "support/captured_output.h"
#include "support/faults.h"
#include "support/float_flags.h"

namespace {

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
              "--ZYL. Signal: Illegal storage access.");
    EXPECT_EQ(course, "1 --ZYL. Signal: Illegal instruction. 2 3 --ZYL. Exception: own");
}

// Whether there never was a guard, one has ended well or by a fault, or another thread has it.
TEST(SignalDeathTest, WithoutAReturnPointEndsTheProcess) {
    static constexpr void (*bodies[])() = {
        [] {},
        [] { guarded([] {}); },
        [] { guarded(badStore); },
        [] { guarded([] { std::thread(badStore).join(); }), std::_Exit(0); },
    };
    for (const auto body : bodies) {
        const auto dying = [body] {
            constexpr rlimit none = {0, 0};
            setrlimit(RLIMIT_CORE, &none);
            body();
            badStore();
        };
        EXPECT_EXIT(dying(), testing::KilledBySignal(SIGSEGV), "");
    }
}

}  // namespace
