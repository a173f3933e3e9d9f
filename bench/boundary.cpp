// What a figure says of a function behind the boundary of a library, beside what that call really costs: the
// slope of the time from N calls to 2 N.

#include <algorithm>
#include <cstdio>
#include <vector>

#include "steps.h"
#include "zy.h"

namespace {

constexpr int Rounds = 400;
constexpr int TicksOfRound = 40000;

/// The block that the Auto method takes for such a call.
int blockFor(double clocks) {
    constexpr double LongestInBlocks = 200.0;
    constexpr int Block = 100;
    return clocks <= LongestInBlocks ? Block : 1;
}

template <int (*Call)()>
Zyl64u leastBlock(unsigned turns, Zyl64u least) {
    int status = 0;
    return std::min(least, zyTimeBlock<Call, zyNoInit>(turns, status));
}

/// Both in turn, so that what disturbs the machine meets both alike: the least of the blocks, the median of
/// the figures.
template <int (*Call)()>
void printBeside(const char* name) {
    const auto calls =
        static_cast<unsigned>(TicksOfRound / (leastBlock<Call>(100, zyLongestTime) / 100 + 1) + 10);
    Zyl64u once = zyLongestTime;
    Zyl64u twice = zyLongestTime;
    std::vector<long long> figures;
    for (int round = 0; round < Rounds; ++round) {
        once = leastBlock<Call>(calls, once);
        twice = leastBlock<Call>(2 * calls, twice);
        const double slope = static_cast<double>(twice - once) / calls;
        int least = static_cast<int>(calls);
        long long clocks = 0;
        zyTimeStat<Call, zyNoInit>(&least, &clocks, blockFor(slope), "");
        figures.push_back(clocks);
    }
    std::nth_element(figures.begin(), figures.begin() + Rounds / 2, figures.end());
    const long long figure = figures[Rounds / 2];
    const double slope = static_cast<double>(twice - once) / calls;
    std::printf("%s: figure %lld clocks, slope between %u and %u calls %.2f (%+.2f clocks, %+.2f%%)\n", name,
                figure, calls, 2 * calls, slope, static_cast<double>(figure) - slope,
                100.0 * (static_cast<double>(figure) - slope) / slope);
}

ZY_ENTRY int tcall_none() { return stepsNone(); }
ZY_ENTRY int tcall_10() { return steps10(); }
ZY_ENTRY int tcall_100() { return steps100(); }
ZY_ENTRY int tcall_1000() { return steps1000(); }

}  // namespace

int main() {
    zySetZylEnvironment();
    std::printf("figure beside slope (aim: within 1 clock, and within 0.5%%)\n");
    printBeside<tcall_none>("empty function of a library");
    printBeside<tcall_10>("chain of 10 steps");
    printBeside<tcall_100>("chain of 100 steps");
    printBeside<tcall_1000>("chain of 1,000 steps");
}
