// Long walks: a function over many lengths, one call each, with a table that is written and checked for
// identical lines. What a line costs, the making of its data aside, must not depend on how many there are.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "seconds.h"
#include "stream/mrcstream.h"
#include "suites.h"

namespace {

mrString steps(int lines) { return mrFormat("1; %d; +1", lines); }

mrString duplicates(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i) {
        text += "64; ";
    }
    return text.c_str();
}

/// Every combination of the walk without its measurement.
void makeData(mrTest& test) {
    test.beginTest();
    test.canStart();
    for (test.m_first = true; test.canContinue(); test.m_first = false) {
        test.initData();
        test.flushData();
    }
}

/// In a process of its own, so that the peak of its memory is that of this walk.
void measure(const char* kind, mrString lengths, int lines) {
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    std::fflush(stdout);
    if (fork() == 0) {
        g_vectorLength.translate(lengths);
        mrTest& test = findTest("zylsEqual_8u");
        const double data = seconds([&] { makeData(test); });
        const double run = seconds([&] { test.run(); });
        rusage after{};
        getrusage(RUSAGE_SELF, &after);
        const double growth = static_cast<double>(after.ru_maxrss - before.ru_maxrss);
        std::printf("%-12s %6d lines: %5.2f s, %5.2f s of it for data, %5.1f us a line for the rest, ", kind,
                    lines, run, data, (run - data) * 1e6 / lines);
        std::printf("%4.2f KiB a line\n", growth / lines);
        std::fflush(stdout);
        _exit(0);
    }
    wait(nullptr);
}

}  // namespace

int main() {
    bindSuites();
    mrCpuTicker::getFreq();  // takes seconds, once
    g_tool.setMethodLoop(1);
    g_cstrm.addStream("/dev/null", false);
    mrSession().putTableTitle();
    for (const int lines : {5000, 10000, 20000}) {
        measure("all differ", steps(lines), lines);
        measure("all the same", duplicates(lines), lines);
    }
}
