// Five hundred tests that crash one after the other, each with its data still there. Linked to the framework
// alone it is a whole program.

#include <csignal>

#include "zy.h"

namespace {

constexpr int Tests = 500;
constexpr int Length = 4096;

zyVector src;

ZY_ENTRY int tcall_zylsCrash_8u() { return std::raise(SIGSEGV); }

mrResult tim_loop(int loops, long long* ticks) {
    return zyTimeLoop<tcall_zylsCrash_8u, zyNoInit>(loops, ticks, "zylsCrash_8u");
}

class TimsFaulty : public zyTest {
  public:
    explicit TimsFaulty(int number)
        : zyTest(tcall_zylsCrash_8u, nullptr, tim_loop, nullptr,
                 mrString("zylsCrash") + mrText(number) + "_8u", "tests/suites/faulty_suite",
                 "TimsFaulty//ZY_REG") {}

    bool canStart() override {
        src.init(func, zyArgSrc);
        return true;
    }
    bool initData() override { return src.createVector(Length, -1); }
    void flushData() override { src.deleteVector(); }
};

[[maybe_unused]] const bool registered = [] {
    for (int number = 1; number <= Tests; ++number) {
        mrRegTest(new TimsFaulty(number));
    }
    return true;
}();

}  // namespace
