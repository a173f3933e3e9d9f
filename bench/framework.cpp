// The framework's own work around the measurements, at sizes far above a normal run.

#include <cstdio>
#include <memory>
#include <vector>

#include "seconds.h"
#include "stream/mrcstream.h"
#include "zy.h"

namespace {

constexpr int Many = 100000;

/// Names in no order, in the grammar of the library: bases, types and descriptors in turn.
mrString functionName(int number) {
    constexpr const char* Types[] = {"8u", "16s", "32f", "8u16u", "64fc"};
    const auto scattered = static_cast<unsigned>(number) * 2654435761u;
    return mrFormat("zylsBase%04x_%s%s", (scattered >> 8) % 0x4000, Types[scattered % 5],
                    (scattered & 32) != 0 ? "_I" : "");
}

double sortTests() {
    mrTestList list;
    std::vector<std::unique_ptr<zyTest>> tests;
    for (int i = 0; i < Many; ++i) {
        tests.push_back(
            std::make_unique<zyTest>(nullptr, nullptr, nullptr, nullptr, functionName(i), "bench", "Bench"));
        list.append(tests.back().get());
    }
    return seconds([&] { list.sortFunc(); });
}

/// Lines that all differ, so that every one is looked at.
double checkLines() {
    constexpr int Columns = 9;
    g_cstrm.identicalLinesStart(Columns);
    for (int i = 0; i < Many; ++i) {
        g_cstrm << "zylsFind";
        g_cstrm << mrText(i);
        g_cstrm.lineOut(Columns);
    }
    bool found = false;
    const double time = seconds([&] { found = g_cstrm.identicalLinesCheck(); });
    return found ? 0.0 : time;
}

}  // namespace

int main() {
    std::printf("sorting %d registered tests: %.2f s (aim: below 1 s)\n", Many, sortTests());
    std::printf("check for identical lines, %d lines: %.2f s (aim: below 1 s)\n", Many, checkLines());
}
