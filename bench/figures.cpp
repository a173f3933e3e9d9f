// Figures of the chains by other means than turns, one line each:
//   bench_figures benchmark     Google Benchmark, 0.1 s each: mean nanoseconds of real time and of processor
//   time bench_figures medians       11 epochs of 9 ms, the median of their means in nanoseconds
//   bench_figures slope         clocks of the tick counter: the slope of the time from N to 2 N calls

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "chains.h"
#include "zy.h"

namespace {

constexpr double SecondsOfBody = 0.1;

class KeepTimes : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        real = runs.front().GetAdjustedRealTime();
        processor = runs.front().GetAdjustedCPUTime();
    }

    double real = 0.0;
    double processor = 0.0;
};

template <int (*Call)()>
void printBenchmark(const char* name) {
    benchmark::ClearRegisteredBenchmarks();
    benchmark::RegisterBenchmark(name, [](benchmark::State& state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(Call());
        }
    })->MinTime(SecondsOfBody);
    KeepTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    std::printf("%s %.6f %.6f\n", name, times.real, times.processor);
}

template <int (*Call)()>
double nanosecondsOfCall(long calls) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    for (long i = 0; i < calls; ++i) {
        Call();
        zyKeepTurn();
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() /
           static_cast<double>(calls);
}

template <int (*Call)()>
void printMedian(const char* name) {
    constexpr std::size_t Epochs = 11;
    constexpr double LongEnough = 1e5;  // nanoseconds
    long calls = 1;
    while (nanosecondsOfCall<Call>(calls) * static_cast<double>(calls) < LongEnough) {
        calls *= 2;
    }
    calls = static_cast<long>(SecondsOfBody * 1e9 / Epochs / nanosecondsOfCall<Call>(calls)) + 1;
    std::vector<double> epochs;
    for (std::size_t i = 0; i < Epochs; ++i) {
        epochs.push_back(nanosecondsOfCall<Call>(calls));
    }
    std::nth_element(epochs.begin(), epochs.begin() + Epochs / 2, epochs.end());
    std::printf("%s %.6f\n", name, epochs[Epochs / 2]);
}

/// The least of many blocks of each size, in turn.
template <int (*Call)()>
void printSlope(const char* name) {
    constexpr int Rounds = 2000;
    constexpr double TicksOfBlock = 60000.0;
    int status = 0;
    const double one = static_cast<double>(zyTimeBlock<Call, zyNoInit>(100, status)) / 100.0;
    const auto calls = static_cast<unsigned>(std::max(1.0, TicksOfBlock / one));
    Zyl64u once = zyLongestTime;
    Zyl64u twice = zyLongestTime;
    for (int i = 0; i < Rounds; ++i) {
        once = std::min(once, zyTimeBlock<Call, zyNoInit>(calls, status));
        twice = std::min(twice, zyTimeBlock<Call, zyNoInit>(2 * calls, status));
    }
    std::printf("%s %.6f\n", name, static_cast<double>(twice - once) / calls);
}

#define PRINT_BENCHMARK(name, count, times) printBenchmark<chain<count, times>>(#name);
#define PRINT_MEDIAN(name, count, times) printMedian<chain<count, times>>(#name);
#define PRINT_SLOPE(name, count, times) printSlope<chain<count, times>>(#name);

}  // namespace

int main(int argc, char** argv) {
    const std::string way = argc > 1 ? argv[1] : "";
    zySetZylEnvironment();
    if (way == "benchmark") {
        FOR_EACH_CHAIN(PRINT_BENCHMARK)
    } else if (way == "medians") {
        FOR_EACH_CHAIN(PRINT_MEDIAN)
    } else if (way == "slope") {
        FOR_EACH_CHAIN(PRINT_SLOPE)
    } else {
        std::fputs("use: bench_figures benchmark|medians|slope\n", stderr);
        return 2;
    }
    return 0;
}
