// Two instruments on the same work: ten functions of the suites at three lengths, measured in turn by this
// program's Auto method and by Google Benchmark. Printed is the ratio of the figures, ours over theirs, both
// in clocks of the same tick frequency. Ours is the best block of calls, theirs the mean of all, so a ratio
// somewhat below 1 is what a quiet machine gives.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "suites.h"

namespace {

constexpr const char* Functions[] = {"zylsCompare_8u",        "zylsCompareIgnoreCaseLatin_8u",
                                     "zylsConcat_8u",         "zylsEqual_8u",
                                     "zylsFind_8u",           "zylsFindC_8u",
                                     "zylsFindCAny_8u",       "zylsFindRevC_8u",
                                     "zylsLowercaseLatin_8u", "zylsUppercaseLatin_8u"};
constexpr int Lengths[] = {128, 2048, 32768};
constexpr int Rounds = 5;
constexpr double BenchmarkSeconds = 0.05;

/// Keeps the time of one iteration, in nanoseconds, and prints nothing.
class KeepTime : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        nanoseconds = runs.front().GetAdjustedRealTime();
    }

    double nanoseconds = 0.0;
};

double ours(mrTest& test) {
    test.m_tool = g_tool;
    test.runTiming();
    return test.m_tool.m_funcClocks;
}

double theirs(const mrTest& test) {
    const FuncCall call = test.m_funcCall;
    benchmark::ClearRegisteredBenchmarks();
    benchmark::RegisterBenchmark(test.m_name.c_str(), [call](benchmark::State& state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(call());
        }
    })->MinTime(BenchmarkSeconds);
    KeepTime reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.nanoseconds * mrCpuTicker::getFreq() / 1000.0;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The medians and the spread, in percent of the median, of the rounds of one instrument.
struct Rounded {
    double clocks;
    double spread;
};

Rounded rounded(const std::vector<double>& rounds) {
    const double middle = median(rounds);
    const auto [least, most] = std::minmax_element(rounds.begin(), rounds.end());
    return {middle, (*most - *least) / middle * 100.0};
}

/// Both instruments in turn on one function and length; the ratio of their medians.
double compare(mrTest& test, int length) {
    g_vectorLength.translate(mrText(length));
    test.beginTest();
    if (!test.canStart() || !test.canContinue() || !test.initData()) {
        std::printf("%-30s %6d  no data\n", test.m_name.c_str(), length);
        return 1.0;
    }
    std::vector<double> ourClocks;
    std::vector<double> theirClocks;
    for (int round = 0; round < Rounds; ++round) {
        ourClocks.push_back(ours(test));
        theirClocks.push_back(theirs(test));
    }
    test.flushData();
    const Rounded a = rounded(ourClocks);
    const Rounded b = rounded(theirClocks);
    std::printf("%-30s %6d %10.0f %5.1f%% %12.1f %5.1f%% %7.3f\n", test.m_name.c_str(), length, a.clocks,
                a.spread, b.clocks, b.spread, a.clocks / b.clocks);
    return a.clocks / b.clocks;
}

}  // namespace

int main() {
    bindSuites();
    std::printf("%-30s %6s %10s %6s %12s %6s %7s\n", "function", "length", "clocks", "spread", "theirs",
                "spread", "ratio");
    std::vector<double> ratios;
    for (const char* name : Functions) {
        for (const int length : Lengths) {
            ratios.push_back(compare(findTest(name), length));
        }
    }
    std::printf("median of the %zu ratios: %.3f, from %.3f to %.3f\n", ratios.size(), median(ratios),
                *std::min_element(ratios.begin(), ratios.end()),
                *std::max_element(ratios.begin(), ratios.end()));
}
