#include <regex>

#include "tables.h"

namespace {

/// The listing without what differs from run to run: figures, dates, the machine and the folder.
std::string masked(const std::string& listing, const std::string& folder) {
    const std::pair<const char*, const char*> masks[] = {
        {R"(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})", "Day Mon dd hh:mm:ss yyyy"},
        {R"((\| (CPU|OS|Computer|Library) +: )[^\n]*)", "$1..."},
        {R"(numThreads = \d+)", "numThreads = #"},
        {R"(nLps=\d+ +)", "nLps=# "},
        {R"(perf= *[^/]+/)", "perf=#/"},
        {R"(= *\S+ clocks)", "=# clocks"},
        {R"((Total time +: )\d\d:\d\d:\d\d)", "$1hh:mm:ss"},
    };
    std::string text = replaced(listing, folder, "<folder>/");
    for (const auto& [pattern, mask] : masks) {
        text = std::regex_replace(text, std::regex(pattern), mask);
    }
    return text;
}

// One suite measured as a user would: tables, summary and signal file beside a listing at level PERF.
TEST(CaseConversion, ListingToTheLetterAndItsFiles) {
    const WorkFolder folder;
    const Outcome outcome = run(
        {.arguments = {"-B", "-LPERF", "-rcase", "-u", "-gdone", "-tTimsCaseLatin", "-l" + folder.path()}});
    expectCleanEnd(outcome);
    expectGolden("run/golden/case_perf.txt", masked(outcome.output, folder.path()));
    const Table table(folder.content("case.csv"));
    EXPECT_EQ(table.title,
              "function,Parm1,Parm2,Parm3,Parm4,Parm5,Parm6,Parm7,Parm8,"
              "Comment,Clocks,per,Time (usec),MFlops");
    EXPECT_EQ(table.rows.size(), 24U);
    expectFigures(table);
    for (const Cells& row : table.rows) {
        EXPECT_TRUE(row[CommentColumn].starts_with("nLps=")) << row[CommentColumn];
        EXPECT_EQ(row[UnitColumn], "e");
        EXPECT_GT(std::atof(row[12].c_str()), 0.0) << "microseconds";
        EXPECT_EQ(row[13], "-");
    }
    const std::regex durationAndEnd(
        "\\d\\d:\\d\\d:\\d\\d\n\\w{3} \\w{3} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d \\d{4}\n\n");
    EXPECT_TRUE(std::regex_match(folder.content("done.end"), durationAndEnd)) << folder.content("done.end");
}

}  // namespace
