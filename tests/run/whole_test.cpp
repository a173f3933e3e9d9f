#include "functions.h"
#include "tables.h"

namespace {

/// The functions in the order of a sorted run.
std::vector<MeasuredFunction> sortedFunctions() {
    std::vector<MeasuredFunction> functions(std::begin(measuredFunctions), std::end(measuredFunctions));
    std::ranges::sort(functions, {}, &MeasuredFunction::place);
    return functions;
}

void expectSummary(const Table& summary) {
    std::vector<Cells> expected = {
        {"__mrZorvaCpu", "Information", "-", "-", "-", "-", "__mrZorvaCpuTest", "mr", "OK", "metrig"}};
    for (const MeasuredFunction& function : sortedFunctions()) {
        const char* result = function.rows > 0 ? "OK" : "DATAFAIL";
        expected.push_back({std::string(function.name), "Timing", "-", "-", "-", "-",
                            std::string(function.suite), std::string(function.source), result, "metrig"});
    }
    std::vector<Cells> rows = summary.rows;
    for (Cells& row : rows) {
        ASSERT_EQ(row.size(), SummaryWidth);
        row.erase(row.begin() + 7);  // the seconds
    }
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(summary.counters(), "Number of tests=40 Successes=39 Failures=1 Fails=1 -FAIL=1 ");
}

/// Each function has a name line, and its results after it.
void expectResults(const Table& table) {
    std::string nameLines;
    auto row = table.rows.begin();
    for (const MeasuredFunction& function : sortedFunctions()) {
        ASSERT_NE(row, table.rows.end()) << function.name;
        const Cells name = *row++;
        for (const std::string& cell : name) {
            nameLines += cell + (&cell == &name.back() ? "\n" : ",");
        }
        int count = 0;
        for (; row != table.rows.end() && (*row)[CommentColumn] != "parmNames"; ++row, ++count) {
            EXPECT_TRUE(std::equal(name.begin(), name.begin() + 3, row->begin())) << function.name;
            EXPECT_GT(std::atof((*row)[ClocksColumn].c_str()), 0.0) << function.name;
        }
        EXPECT_EQ(count, function.rows) << function.name;
    }
    EXPECT_EQ(row, table.rows.end());
    expectGolden("run/golden/name_lines.txt", nameLines);
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
