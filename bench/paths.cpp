// The three code paths of the library over the rows of a default run, in turn on the same data. Printed is
// how many rows keep the order AVX2 <= SSE2 <= plain, and those that do not. A figure is the best block of
// calls, with what a call through a pointer costs, so a ratio is somewhat nearer to 1 than that of the bare
// calls.
//   bench_paths [<vector lengths>]      other lengths than those of a default run, as "1; 300; +1"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

#include "seconds.h"
#include "suites.h"
#include "zylcore.h"

namespace {

enum Path { Plain, Sse2, Avx2, Paths };

constexpr double Tolerance = 1.05;
constexpr double BlockClocks = 20000.0;
/// Blocks of each path; for a row out of order as many as this time holds, since what the machine slows down
/// must have its chance to be fast before it counts.
constexpr int Rounds = 20;
constexpr double MostSeconds = 0.5;

using Clocks = std::array<double, Paths>;

struct Row {
    mrString name;
    Clocks clocks;

    double ratio(Path wide, Path narrow) const { return clocks[wide] / clocks[narrow]; }
    bool inOrder() const { return ratio(Sse2, Plain) <= Tolerance && ratio(Avx2, Sse2) <= Tolerance; }
};

std::array<Zyl64u, Paths> masksOfPaths() {
    constexpr Zyl64u Sse2Bit = 0x4;
    constexpr Zyl64u Avx2Bit = 0x8000;
    Zyl64u mask = 0;
    zylGetCpuFeatures(&mask, nullptr);
    return {mask & ~(Sse2Bit | Avx2Bit), mask & ~Avx2Bit, mask};
}

/// Clocks of one call, of a block.
double timeBlock(const mrTest& test, int calls) {
    const FuncCall call = test.m_funcCall;
    const FuncCall init = test.m_funcInit;
    const Zyl64u start = zyl_StartCpuClocks();
    if (init == nullptr) {
        for (int i = 0; i < calls; ++i) {
            call();
        }
    } else {
        for (int i = 0; i < calls; ++i) {
            init();
            call();
        }
    }
    return static_cast<double>(zyl_StopCpuClocks() - start) / calls;
}

/// A block of each path.
void addRound(const mrTest& test, int calls, Clocks& best) {
    static const std::array<Zyl64u, Paths> masks = masksOfPaths();
    for (std::size_t path = 0; path < Paths; ++path) {
        zylSetCpuFeatures(masks[path]);
        timeBlock(test, 2);
        best[path] = std::min(best[path], timeBlock(test, calls));
    }
}

/// The combination in hand.
Row measure(const mrTest& test, mrString name) {
    Row row{std::move(name), {}};
    row.clocks.fill(std::numeric_limits<double>::max());
    addRound(test, 1, row.clocks);
    const double slowest = *std::max_element(row.clocks.begin(), row.clocks.end());
    const int calls = std::max(1, static_cast<int>(BlockClocks / slowest));
    row.clocks.fill(std::numeric_limits<double>::max());
    double spent = 0.0;
    for (int round = 0; round < Rounds || (spent < MostSeconds && !row.inOrder()); ++round) {
        spent += seconds([&] { addRound(test, calls, row.clocks); });
    }
    return row;
}

/// The function and the values of its parameters, or the number of the row where it has none.
mrString rowName(const mrTest& test, int number) {
    mrString name = test.m_name;
    for (const mrParameter* parm : test.m_parms) {
        if (!parm->name().empty()) {
            name += mrString(" ") + parm->valueString();
        }
    }
    return test.m_parms.begin() == test.m_parms.end() ? name + mrFormat(" #%d", number) : name;
}

void measureTest(mrTest& test, std::vector<Row>& rows) {
    test.beginTest();
    if (!test.canStart()) {
        return;
    }
    int number = 0;
    for (test.m_first = true; test.canContinue(); test.m_first = false) {
        ++number;
        if (test.initData()) {
            rows.push_back(measure(test, rowName(test, number)));
        }
        test.flushData();
    }
}

/// The geometric mean of one path over another.
double meanRatio(const std::vector<Row>& rows, Path wide, Path narrow) {
    double sum = 0.0;
    for (const Row& row : rows) {
        sum += std::log(row.ratio(wide, narrow));
    }
    return std::exp(sum / static_cast<double>(rows.size()));
}

void print(const Row& row) {
    std::printf("    %-40s clocks plain %.1f, SSE2 %.1f, AVX2 %.1f; ratios %.2f, %.2f\n", row.name.c_str(),
                row.clocks[Plain], row.clocks[Sse2], row.clocks[Avx2], row.ratio(Sse2, Plain),
                row.ratio(Avx2, Sse2));
}

}  // namespace

int main(int argc, char** argv) {
    bindSuites();
    if (argc > 1) {
        g_vectorLength.translate(argv[1]);
    }
    std::vector<Row> rows;
    for (mrTest* test : *pTestList) {
        measureTest(*test, rows);
    }
    const auto isInOrder = [](const Row& row) { return row.inOrder(); };
    std::printf("code paths: %d of %zu rows keep AVX2 <= SSE2 <= plain within 5%% (aim: all)\n",
                static_cast<int>(std::count_if(rows.begin(), rows.end(), isInOrder)), rows.size());
    std::printf("code paths: mean ratios SSE2/plain %.3f, AVX2/SSE2 %.3f\n", meanRatio(rows, Sse2, Plain),
                meanRatio(rows, Avx2, Sse2));
    for (const Row& row : rows) {
        if (!row.inOrder()) {
            print(row);
        }
    }
}
