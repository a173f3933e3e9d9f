#include "tables.h"

namespace {

const char steps[] =
    "******* trace into   runTiming\n"
    "******** trace into   customLoopTiming\n"
    "********* trace into   runTimFunc\n"
    "********** trace into   zylFunctionCalls\n"
    "********** trace out of zylFunctionCalls\n"
    "********* trace out of runTimFunc\n"
    "******** trace out of customLoopTiming\n"
    "******* trace out of runTiming\n"
    "  nLps=100    perf=";

#define TWOS "   2   2   2   2   2   2   2   2   2   2   2   2   2   2   2"
#define SOURCE "======== Object 1: Vector 8u len=17\n  65" TWOS "  65\n"
#define OBJECTS \
    " function calls === OBJECTS OUTPUT START ========\n" SOURCE "\n======== Object 2: Vector 8u len=17\n"

// Each method that can be chosen, and the levels of output that show how a function is measured. The method
// of a run without a choice is in case_perf.txt.
TEST(Methods, AreChosenByTheirParameters) {
    const struct {
        Cells arguments;
        Cells lengths;
        const char* comment;  ///< start of each
        Cells console;        ///< parts, in their order
        std::string function = "zylsLowercaseLatin_8u";
    } rows[] = {
        {{"-LTRACE", "-dMethod=Manual", "-dNumLoops=100", "-dVectorLength=16; 64; *2"},
         {"16", "32", "64"},
         "nLps=100",
         {"\n Method = Manual\n NumLoops = 100\n for (VectorLength = 16; "
          "VectorLength <= 64; VectorLength *= 2)\n AlignVectorsBy",
          steps, steps, steps, "\n***** trace out of main\n"}},
        {{"-LPERF", "-dMethod=Statistic", "-dNumCalls=20", "-dVectorLength=64; many"},
         {"32", "128", "512", "2048", "8192", "32768"},
         "nCalls=",
         {"\n Method = Statistic\n NumCalls = 20\n TotalCpuClocks = 10000\n"
          "-Invalid value of VectorLength = many\n for (VectorLength = 32; VectorLength <= 32768; ",
          "\n  nCalls="}},
        // What can't be had is passed over.
        {{"-LDATA", "-dMethod=Iterative", "-dVectorLength=3; 0; -5; 17"},
         {"3", "17"},
         "nLps=",
         {"\n Method = Iterative\n StartNumLoops = 1\n StopNumLoops = 2048\n "
          "MinCpuClocks = 10000\n Accuracy = 5\n",
          "\n-- Memory fail: can't allocate 0 bytes\n", "\n-- Memory fail: can't allocate -5 bytes\n",
          " === before" OBJECTS "   2   2" TWOS "\n", " === after" OBJECTS "  97" TWOS "  97\n"}},
        // To find nothing is measured, but not among near misses: these would lie in front of the text.
        {{"-LPERF", "-dMethod=Manual", "-dVectorLength=3; 7; 2147483647", "-dlenFind=0; 2"},
         {"3", "3", "3", "3", "7", "7", "7"},
         "nLps=10",
         {"VectorLength=7 lenFind=0 hardSearch=- ", "-- Memory fail: can't allocate 2147483648 bytes\n"},
         "zylsFind_8u"},
    };
    for (const auto& row : rows) {
        const WorkFolder folder;
        const Cells common = {"-B", "-r", "-f=" + row.function, "-c1", "-l" + folder.path()};
        const Outcome outcome = run({.arguments = common + row.arguments});
        expectCleanEnd(outcome);
        const Table table(folder.content("metrig.csv"));
        expectFigures(table);
        EXPECT_EQ(table.column(3), row.lengths);
        for (const std::string& comment : table.column(CommentColumn)) {
            EXPECT_TRUE(comment.starts_with(row.comment)) << comment;
        }
        std::size_t at = 0;
        for (const std::string& part : row.console) {
            at = outcome.output.find(part, at + 1);
            ASSERT_NE(at, std::string::npos) << part << "\n" << outcome.output;
        }
        EXPECT_FALSE(holds(outcome.output, "    Manual method")) << "level INFO, which was not asked for";
    }
}

}  // namespace
