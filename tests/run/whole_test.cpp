#include "tables.h"

namespace {

void expectSummary(const Table& summary) {
    std::string lines;
    for (Cells row : summary.rows) {
        ASSERT_EQ(row.size(), SummaryWidth);
        row.erase(row.begin() + 7);  // the seconds
        lines += joined(row) + "\n";
    }
    expectGolden("run/golden/summary.txt", lines);
    EXPECT_EQ(summary.counters(), "Number of tests=40 Successes=39 Failures=1 Fails=1 -FAIL=1 ");
}

/// Each function has a name line, and after it a line with a figure for each combination.
void expectResults(const Table& table) {
    std::string lines;
    for (const Cells& row : table.rows) {
        ASSERT_EQ(row.size(), ResultWidth) << row[0];
        const bool isNameLine = row[CommentColumn] == "parmNames";
        EXPECT_TRUE(isNameLine || std::atof(row[ClocksColumn].c_str()) > 0.0) << row[0];
        lines += joined(Cells(row.begin(), row.begin() + CommentColumn)) + (isNameLine ? ":\n" : "\n");
    }
    expectGolden("run/golden/results.txt", lines);
}

// Everything with its default parameters, in a folder without "reperf.txt", which is one failure.
TEST(WholeRun, TellsEveryTestInOrder) {
    const WorkFolder folder;
    const Outcome outcome =
        run({.arguments = {"-B", "-r", "-u", "-q+", "-c1", "-l" + folder.path()}, .folder = folder.path()});
    expectCleanEnd(outcome);
    EXPECT_LT(outcome.peakKiB, 24 * 1024);
    expectSummary(Table(folder.content("metrig_sum.csv")));
    expectResults(Table(folder.content("metrig.csv")));
    EXPECT_EQ(linesWith(outcome.output, "-- "), Cells{"-- One of argument list for timing is empty"});
}

TEST(WholeRunWithPatterns, OneRowForEachPattern) {
    const WorkFolder folder;
    const std::string text = readFile(METRIG_SOURCE_DIR "/examples/reperf.txt");
    folder.file("reperf.txt", text);
    const Outcome outcome =
        run({.arguments = {"-B", "-r", "-u", "-c1", "-f=zylsRegExpFind_8u", "-l" + folder.path()},
             .folder = folder.path()});
    expectCleanEnd(outcome);
    EXPECT_EQ(Table(folder.content("metrig_sum.csv")).counters(), "Number of tests=1 Successes=1 ");
    const Table table(folder.content("metrig.csv"));
    EXPECT_EQ(table.rows.size(), linesWith(text, "P:").size());
    for (const Cells& row : table.rows) {  // a pattern with a comma takes two cells: counted from the back
        ASSERT_GE(row.size(), ResultWidth);
        EXPECT_GT(std::atof(row[row.size() - 4].c_str()), 0.0) << row[4];
        EXPECT_EQ(row[row.size() - 3], "pattern");
    }
}

}  // namespace
