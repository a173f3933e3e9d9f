#include "tables.h"

namespace {

/// The tests that a program lists, in their order.
std::string listedTests(const Invocation& what) {
    const Outcome outcome = run(what);
    expectCleanEnd(outcome);  // a finding of the address-checked build stands on standard error
    return outcome.output.substr(std::min(outcome.output.find("   #\t"), outcome.output.size()));
}

TEST(Construction, EveryTestIsRegisteredInTheOrderOfTheLink) {
    expectGolden("run/golden/registered.txt", listedTests({.arguments = {"-e", "-s-"}}));
    EXPECT_EQ(listedTests({.arguments = {"-e"}, .program = "metrig-bare"}),
              "   #\tFunction\tTest\tSource\t\n   1\t__mrZorvaCpu\t__mrZorvaCpuTest\tmr\t\n");
}

// Sizes that make no sense, and sums of sizes that no int holds, cost their combinations and nothing else.
TEST(ConstructionOfData, IsRefusedForAbsurdSizes) {
    for (const char* shift : {"2147483647", "-2147483648"}) {
        const WorkFolder folder;
        const Outcome outcome =
            run({.arguments = {"-B", "-u", "-nmetrig", "-dVectorLength=-2147483648; -1; 0; 1; 2; 3; 7; 64",
                               "-dlenFind=-2147483648; -1; 0; 1; 2; 64", "-dtrimLen=-1; 0; 1; 64",
                               "-dnumSrc=-2147483648; 0; 1; 3; 2147483647", "-dlength=-1; 0; 1; 64",
                               std::string("-dMutualVectorShift=") + shift, "-dVectorAlign=-2147483648",
                               "-dMethod=Manual", "-dNumLoops=1", "-l" + folder.path()},
                 .environment = {"ASAN_OPTIONS=allocator_may_return_null=1"}});
        EXPECT_EQ(outcome.status, 0) << outcome.signal << outcome.errors;
        const Table summary(folder.content("metrig_sum.csv"));
        EXPECT_EQ(summary.rows.size(), 40U);
        for (const Cells& row : summary.rows) {
            EXPECT_NE(row[WordColumn], "EXCPTFAIL") << row[0];
        }
    }
}

TEST(ConstructionOfData, MayBeMisaligned) {
    const Outcome outcome =
        run({.arguments = {"-B", "-f-RegExpFind", "-dVectorLength=61", "-dAlignVectorsBy=byte",
                           "-dVectorAlign=1", "-dMethod=Manual", "-dNumLoops=1"}});
    EXPECT_EQ(outcome.status, 0) << outcome.signal << outcome.errors;
    EXPECT_TRUE(holds(outcome.output, "| .Failures        : 0 ")) << outcome.output;
}

}  // namespace
