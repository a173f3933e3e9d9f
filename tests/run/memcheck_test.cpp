#include "tables.h"

namespace {

TEST(Memcheck, FindsNothingInARunOfAllFunctions) {
    const WorkFolder folder;
    folder.file("reperf.txt", readFile(METRIG_SOURCE_DIR "/examples/reperf.txt"));
    // Data that were never given back are the system's to take; what nobody points to any more is a leak.
    const Outcome outcome = run(
        {.arguments = {"-q", "--error-exitcode=9", "--leak-check=full", "--errors-for-leak-kinds=definite",
                       "--show-leak-kinds=definite", METRIG_BIN_DIR "/metrig", "-B", "-r", "-u", "-q", "-o",
                       "-nmetrig", "-dVectorLength=64; 1024", "-dMethod=Manual", "-dNumLoops=2",
                       "-l" + folder.path()},
         .folder = folder.path(),
         .program = METRIG_VALGRIND,
         .seconds = 240});
    expectCleanEnd(outcome);
    EXPECT_EQ(Table(folder.content("metrig_sum.csv")).counters(), "Number of tests=40 Successes=40 ");
}

}  // namespace
