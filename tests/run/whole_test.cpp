#include <filesystem>

#include "functions.h"
#include "tables.h"

namespace {

/// The functions in the order of a sorted run.
std::vector<MeasuredFunction> sortedFunctions() {
    std::vector<MeasuredFunction> functions(std::begin(measuredFunctions), std::end(measuredFunctions));
    std::ranges::sort(functions, {}, &MeasuredFunction::place);
    return functions;
}

/// Everything with its default parameters, in a folder without "reperf.txt".
class WholeRun : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_folder = std::make_unique<WorkFolder>();
        s_run = run({.arguments = {"-B", "-r", "-u", "-q+", "-c1", "-l" + s_folder->path()},
                     .folder = s_folder->path()});
    }
    static void TearDownTestSuite() { s_folder.reset(); }

    static inline std::unique_ptr<WorkFolder> s_folder;
    static inline Outcome s_run;
};

TEST_F(WholeRun, EndsWellInLittleMemory) {
    expectCleanEnd(s_run);
    EXPECT_LT(s_run.peakKiB, 24 * 1024);
}

TEST_F(WholeRun, SummaryTellsEveryTestInOrder) {
    const Table summary(s_folder->content("metrig_sum.csv"));
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

TEST_F(WholeRun, TableHoldsAllRowsBehindTheirNameLines) {
    const Table table(s_folder->content("metrig.csv"));
    Table results = table;
    std::erase_if(results.rows, [](const Cells& row) { return row[CommentColumn] == "parmNames"; });
    EXPECT_EQ(results.rows.size(), 438U);
    expectFigures(results);
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
        }
        EXPECT_EQ(count, function.rows) << function.name;
    }
    EXPECT_EQ(row, table.rows.end());
    expectGolden("name_lines.txt", nameLines);
}

TEST_F(WholeRun, LastParameterTurnsFastest) {
    Cells walk;
    for (const Cells& row : Table(s_folder->content("metrig.csv")).rows) {
        if (row[0] == "zylsFind" && row[CommentColumn] != "parmNames") {
            walk.push_back(row[3] + " " + row[4] + " " + row[5]);
        }
    }
    ASSERT_GE(walk.size(), 6U);
    walk.resize(6);
    EXPECT_EQ(walk, (Cells{"32 8 -", "32 8 hardSearch", "128 8 -", "128 8 hardSearch", "128 32 -",
                           "128 32 hardSearch"}));
}

TEST_F(WholeRun, MissingPatternFileIsOneFailure) {
    const Cells lines = linesOf(s_run.output);
    const auto words = std::ranges::find(lines, "-- One of argument list for timing is empty");
    ASSERT_NE(words, lines.end());
    EXPECT_TRUE((words - 1)->starts_with("| Function  : zylsRegExpFind_8u "));
    EXPECT_TRUE((words + 1)->starts_with("| -DATAFAIL   zylsRegExpFind_8u "));
    EXPECT_EQ(linesWith(s_run.output, "-- ").size(), 1U);
}

TEST(WholeRunWithPatterns, OneRowForEachPattern) {
    const std::string patterns = METRIG_SOURCE_DIR "/examples/reperf.txt";
    if (!std::filesystem::exists(patterns)) {
        GTEST_SKIP() << "no sample of patterns";
    }
    const WorkFolder folder;
    const std::string text = readFile(patterns);
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
