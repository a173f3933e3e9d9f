#include "tables.h"

namespace {

/// One function under one method; the table is kept with what the console showed.
struct Measurement {
    Measurement(const char* level, const char* method, const char* lengths, Cells more = {}) {
        const WorkFolder folder;
        Cells arguments = {"-B",
                           "-r",
                           "-f=zylsLowercaseLatin_8u",
                           level,
                           "-l" + folder.path(),
                           std::string("-dMethod=") + method,
                           "-c1",
                           std::string("-dVectorLength=") + lengths};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome outcome = run({.arguments = arguments});
        expectCleanEnd(outcome);
        listing = outcome.output;
        table = Table(folder.content("metrig.csv"));
        expectFigures(table);
    }

    std::string listing;
    Table table{""};
};

const Cells defaultLengths = {"32", "128", "512", "2048", "8192", "32768"};
const char defaultWalk[] = "\n for (VectorLength = 32; VectorLength <= 32768; VectorLength *= 4)\n";

/// The figures of the console, which show an accuracy only where one was looked for.
Cells figures(const std::string& listing) {
    Cells lines = linesOf(listing);
    std::erase_if(lines, [](const std::string& line) { return !holds(line, "  perf="); });
    return lines;
}

/// The path of open steps at each "trace into" line of a nesting without a flaw.
std::vector<Cells> tracePaths(const std::string& listing) {
    const std::string into = " trace into   ";
    const std::string outOf = " trace out of ";
    std::vector<Cells> paths;
    Cells open;
    for (const std::string& line : linesWith(listing, "******")) {
        const std::size_t depth = line.find(' ') - 5;
        const std::string name = line.substr(depth + 5 + into.size());
        if (holds(line, into)) {
            open.push_back(name);
            paths.push_back(open);
            EXPECT_EQ(depth, open.size()) << line;
        } else {
            EXPECT_TRUE(holds(line, outOf)) << line;
            EXPECT_EQ(depth, open.size()) << line;
            if (open.empty() || open.back() != name) {
                ADD_FAILURE() << "not open: " << line;
                return paths;
            }
            open.pop_back();
        }
    }
    EXPECT_TRUE(open.empty());
    return paths;
}

TEST(Methods, ManualAndTheNestingOfItsSteps) {
    const Measurement manual("-LTRACE", "Manual", "16; 64; *2", {"-dNumLoops=100"});
    EXPECT_TRUE(holds(manual.listing,
                      "\n Method = Manual\n NumLoops = 100\n for (VectorLength = 16; "
                      "VectorLength <= 64; VectorLength *= 2)\n AlignVectorsBy"));
    EXPECT_EQ(manual.table.column(3), (Cells{"16", "32", "64"}));
    EXPECT_EQ(manual.table.column(CommentColumn), Cells(3, "nLps=100"));
    for (const std::string& line : figures(manual.listing)) {
        EXPECT_TRUE(line.starts_with("  nLps=100    perf=")) << line;
    }
    const Cells measuring = {"loopData", "runTiming", "customLoopTiming", "runTimFunc", "zylFunctionCalls"};
    EXPECT_EQ(std::ranges::count(tracePaths(manual.listing), measuring), 3);
    EXPECT_TRUE(linesWith(manual.listing, "    Manual method").empty());  // level INFO is none of TRACE
}

TEST(Methods, StatisticAndALengthThatIsNone) {
    const Measurement statistic("-LPERF", "Statistic", "many", {"-dNumCalls=20"});
    EXPECT_TRUE(holds(statistic.listing,
                      "\n Method = Statistic\n NumCalls = 20\n TotalCpuClocks = 10000\n"
                      "-Invalid value of VectorLength = many" +
                          std::string(defaultWalk)));
    EXPECT_EQ(statistic.table.column(3), defaultLengths);
    for (const std::string& comment : statistic.table.column(CommentColumn)) {
        EXPECT_TRUE(comment.starts_with("nCalls=")) << comment;
        EXPECT_GE(std::atoi(comment.c_str() + 7), 20) << comment;
    }
    for (const std::string& line : figures(statistic.listing)) {
        EXPECT_TRUE(line.starts_with("  nCalls=")) << line;
    }
    EXPECT_TRUE(linesWith(statistic.listing, "******").empty());
}

TEST(Methods, IterativeAndTheVectorsOfEachCall) {
    const Measurement iterative("-LDATA", "Iterative", "3; 0; -5; 17");
    EXPECT_TRUE(holds(iterative.listing,
                      "\n Method = Iterative\n StartNumLoops = 1\n StopNumLoops = 2048\n "
                      "MinCpuClocks = 10000\n Accuracy = 5\n"));
    EXPECT_EQ(iterative.table.column(3), (Cells{"3", "17"}));  // what can't be had is passed over
    EXPECT_EQ(linesWith(iterative.listing, "-- Memory fail: can't allocate "),
              (Cells{"-- Memory fail: can't allocate 0 bytes", "-- Memory fail: can't allocate -5 bytes"}));
    for (const std::string& comment : iterative.table.column(CommentColumn)) {
        EXPECT_TRUE(comment.starts_with("nLps=")) << comment;
    }
    const std::string twos = "   2   2   2   2   2   2   2   2   2   2   2   2   2   2   2";
    const std::string source = "======== Object 1: Vector 8u len=17\n  65" + twos + "  65\n";
    const std::string before = source + "\n======== Object 2: Vector 8u len=17\n   2   2" + twos + "\n";
    const std::string after = source + "\n======== Object 2: Vector 8u len=17\n  97" + twos + "  97\n";
    EXPECT_TRUE(
        holds(iterative.listing, " === before function calls === OBJECTS OUTPUT START ========\n" + before));
    EXPECT_TRUE(
        holds(iterative.listing, " === after function calls === OBJECTS OUTPUT START ========\n" + after));
}

TEST(Methods, AutoStepByStepAndLimitsThatConflict) {
    const Measurement automatic("-LINFO", "Auto", "16; 64; *0");
    EXPECT_TRUE(holds(automatic.listing,
                      "\n-Conflict between iterator limits and operation" + std::string(defaultWalk)));
    EXPECT_EQ(automatic.table.column(3), defaultLengths);
    const Cells steps = {
        "    Auto method: start",     "        minClocks  = 10000",  "    Prior Measurement: ",
        "        numLoops   = 1",     "        numClocks  = ",       "        funcClocks = ",
        "        result     = ",      "    Iteration Measurement: ", "        startLoops = ",
        "        maxLoops   = ",      "        stopLoops  = ",       "        stopClocks = ",
        "        accuracy   = 0.00%", "        funcClocks = ",       "        result     = successfully",
        "    Auto method: stop",      "  acc=0.00%  nLps="};
    const Cells lines = linesOf(automatic.listing);
    auto line = lines.begin();
    for (const std::string& length : defaultLengths) {
        line = std::find(line, lines.end(), "VectorLength=" + length + " ");
        for (const std::string& step : steps) {
            // a second prior measurement may stand between
            line = std::find_if(line, lines.end(), [&](const std::string& l) { return l.starts_with(step); });
            ASSERT_NE(line++, lines.end()) << "length " << length << ": " << step;
        }
    }
    EXPECT_EQ(linesWith(automatic.listing, steps.front()).size(), defaultLengths.size());
    EXPECT_TRUE(linesWith(automatic.listing, "******").empty());
}

}  // namespace
