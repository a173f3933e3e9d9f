// What the two timing loops cost and whether their figures are in proportion: an empty body, and bodies of N
// and 2 N dependent multiplications, through the same entries that the suites use.

#include <algorithm>
#include <cstdio>
#include <vector>

#include "steps.h"
#include "zy.h"

namespace {

constexpr int Multiplications = 1000;
constexpr int Calls = 1000;

unsigned value = 3;

ZY_ENTRY int tcall_empty() { return 0; }

ZY_ENTRY int tcall_single() {
    multiply<Multiplications>(value);
    return 0;
}

ZY_ENTRY int tcall_double() {
    multiply<2 * Multiplications>(value);
    return 0;
}

/// Clocks of one call by the statistic method, over at least that many calls in blocks of 100.
template <int (*Call)()>
long long statistic() {
    constexpr int Block = 100;
    int calls = Calls;
    long long clocks = 0;
    zyTimeStat<Call, zyNoInit>(&calls, &clocks, Block, "");
    return clocks;
}

template <int (*Call)()>
long long single() {
    long long clocks = 0;
    zyTimeLoop<Call, zyNoInit>(Calls, &clocks, "");
    return clocks;
}

template <int (*Call)()>
long long lessReads() {
    return single<Call>() - single<tcall_empty>();
}

/// The median over rounds of both in turn: the pace of the processor's core against its tick counter changes
/// now and then, and that must not look like a fault of the loops.
template <long long (*Once)(), long long (*Twice)()>
void printRatio(const char* method) {
    constexpr std::size_t Rounds = 101;
    std::vector<double> ratios;
    for (std::size_t round = 0; round < Rounds; ++round) {
        const long long once = Once();
        ratios.push_back(static_cast<double>(Twice()) / static_cast<double>(once));
    }
    std::nth_element(ratios.begin(), ratios.begin() + Rounds / 2, ratios.end());
    std::printf("%s: %d multiplications over %d, ratio %.3f (aim 2.00 within 1%%)\n", method,
                2 * Multiplications, Multiplications, ratios[Rounds / 2]);
}

}  // namespace

int main() {
    zySetZylEnvironment();
    std::printf("empty body, statistic method: %lld clocks a call (aim: at most 2)\n",
                statistic<tcall_empty>());
    std::printf("empty body, loop method: %lld clocks, the two clock reads\n", single<tcall_empty>());
    printRatio<statistic<tcall_single>, statistic<tcall_double>>("statistic method");
    printRatio<lessReads<tcall_single>, lessReads<tcall_double>>("loop method less its clock reads");
}
