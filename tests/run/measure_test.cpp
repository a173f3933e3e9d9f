#include <regex>

#include "tables.h"

namespace {

/// One suite measured as a user would: tables, summary and signal file beside a listing at level PERF.
class CaseConversion : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_folder = std::make_unique<WorkFolder>();
        s_run = run({.arguments = {"-B", "-LPERF", "-rcase", "-u", "-gdone", "-tTimsCaseLatin",
                                   "-l" + s_folder->path()}});
    }
    static void TearDownTestSuite() { s_folder.reset(); }

    static inline std::unique_ptr<WorkFolder> s_folder;
    static inline Outcome s_run;
};

TEST_F(CaseConversion, EndsWellInLittleMemory) {
    expectCleanEnd(s_run);
    EXPECT_LT(s_run.peakKiB, 16 * 1024);
}

TEST_F(CaseConversion, TableHoldsFourFunctionsOfSixLengths) {
    const Table table(s_folder->content("case.csv"));
    ASSERT_EQ(table.head.size(), 5U);
    EXPECT_EQ(table.head[4][0], "Start");
    EXPECT_EQ(table.title,
              "function,Parm1,Parm2,Parm3,Parm4,Parm5,Parm6,Parm7,Parm8,"
              "Comment,Clocks,per,Time (usec),MFlops");
    const std::vector<Cells> functions = {{"zylsLowercaseLatin", "8u", "-"},
                                          {"zylsLowercaseLatin", "8u", "I"},
                                          {"zylsUppercaseLatin", "8u", "-"},
                                          {"zylsUppercaseLatin", "8u", "I"}};
    const Cells lengths = {"32", "128", "512", "2048", "8192", "32768"};
    ASSERT_EQ(table.rows.size(), functions.size() * lengths.size());
    expectFigures(table);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const Cells& row = table.rows[i];
        EXPECT_EQ(Cells(row.begin(), row.begin() + 3), functions[i / lengths.size()]);
        EXPECT_EQ(row[3], lengths[i % lengths.size()]);
        EXPECT_EQ(row[CommentColumn].substr(0, 5), "nLps=");
        EXPECT_EQ(row[UnitColumn], "e");
        EXPECT_GT(std::atof(row[12].c_str()), 0.0) << "microseconds";
        EXPECT_EQ(row[13], "-");
    }
}

TEST_F(CaseConversion, SummaryHoldsALineOfElevenFieldsForEach) {
    const Table summary(s_folder->content("metrig_sum.csv"));
    EXPECT_EQ(
        summary.title,
        "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,Result,ExeName");
    EXPECT_EQ(summary.column(0), (Cells{"zylsLowercaseLatin_8u", "zylsLowercaseLatin_8u_I",
                                        "zylsUppercaseLatin_8u", "zylsUppercaseLatin_8u_I"}));
    for (const Cells& row : summary.rows) {
        ASSERT_EQ(row.size(), SummaryWidth);
        EXPECT_EQ(Cells(row.begin() + 1, row.begin() + 7),
                  (Cells{"Timing", "-", "-", "-", "-", "TimsCaseLatin"}));
        EXPECT_EQ(Cells(row.begin() + 8, row.end()), (Cells{"p_chcase_ia", "OK", "metrig"}));
    }
    EXPECT_EQ(summary.counters(), "Number of tests=4 Successes=4 ");
    ASSERT_EQ(summary.end.size(), 11U);
}

TEST_F(CaseConversion, SignalFileTellsDurationAndEnd) {
    const std::string text = s_folder->content("done.end");
    EXPECT_TRUE(std::regex_match(text, std::regex("\\d\\d:\\d\\d:\\d\\d\n\\w{3} \\w{3} [ \\d]\\d "
                                                  "\\d\\d:\\d\\d:\\d\\d \\d{4}\n\n")))
        << text;
}

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
    std::string text = std::regex_replace(listing, std::regex(folder), "<folder>/");
    for (const auto& [pattern, mask] : masks) {
        text = std::regex_replace(text, std::regex(pattern), mask);
    }
    return text;
}

TEST_F(CaseConversion, ListingToTheLetter) {
    expectGolden("case_perf.txt", masked(s_run.output, s_folder->path()));
}

}  // namespace
