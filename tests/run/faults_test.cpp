#include "tables.h"

namespace {

/// A function in a run, in the order of the run, and what the run has to tell of it.
struct FaultRow {
    std::string function;
    std::string fault;   ///< kind of the fault; empty: the function is in order
    std::string word;    ///< of the result
    int rows;            ///< result lines that it leaves
    std::string status;  ///< x87 and MXCSR column of the summary
    std::string words;   ///< a whole line of the console; empty: none
};

class Faults : public testing::Test {
  protected:
    /// Measures the functions of the table in one run and compares each with its row.
    void expectFaults(const std::vector<FaultRow>& table, const std::string& counters, Cells arguments) {
        std::string faults = "METRIG_FAULTS=";
        arguments.insert(arguments.end(), {"-B", "-r", "-u", "-c1", "-l" + m_folder.path()});
        for (const FaultRow& row : table) {
            arguments.push_back("-f=" + row.function);
            faults += row.fault.empty() ? "" : row.function + "=" + row.fault + " ";
        }
        m_outcome = run(
            {.arguments = arguments, .environment = {faults, "LD_PRELOAD=" METRIG_LIB_DIR "/libfaults.so"}});
        EXPECT_EQ(m_outcome.status, 0) << "signal " << m_outcome.signal << "\n" << m_outcome.output;
        m_results = Table(m_folder.content("metrig.csv"));
        expectFigures(m_results);
        const Table summary(m_folder.content("metrig_sum.csv"));
        EXPECT_EQ(summary.counters(), counters);
        ASSERT_EQ(summary.rows.size(), table.size());
        for (std::size_t i = 0; i < table.size(); ++i) {
            expectSummaryLine(summary.rows[i], table[i]);
            expectListing(table[i]);
            expectResultLines(table[i]);
        }
        EXPECT_TRUE(m_results.rows.empty()) << m_results.rows[0][0];
    }

    Outcome m_outcome;

  private:
    static void expectSummaryLine(const Cells& line, const FaultRow& expected) {
        ASSERT_EQ(line.size(), SummaryWidth) << line[0];
        EXPECT_EQ(line[0], expected.function);
        EXPECT_EQ(line[WordColumn], expected.word) << expected.function;
        EXPECT_EQ(line[StatusColumn87] + line[StatusColumnSSX], expected.status) << expected.function;
    }

    /// Between the title of the test and its result.
    void expectListing(const FaultRow& expected) const {
        const std::size_t begin = m_outcome.output.find("| Function  : " + expected.function + " ");
        const std::size_t end = m_outcome.output.find("\n| -" + expected.word + " ", begin);
        ASSERT_NE(end, std::string::npos) << expected.function;
        const std::string part = m_outcome.output.substr(begin, end + 1 - begin);
        EXPECT_TRUE(expected.words.empty() ? !holds(part, "\n--") : holds(part, "\n" + expected.words + "\n"))
            << expected.words << "\n"
            << part;
    }

    /// Takes the lines of the function off the front of those that are left.
    void expectResultLines(const FaultRow& expected) {
        std::vector<Cells>& rows = m_results.rows;
        const auto other = std::ranges::find_if(
            rows, [&](const Cells& row) { return row[0] + "_" + row[1] != expected.function; });
        EXPECT_EQ(other - rows.begin(), expected.rows) << expected.function;
        rows.erase(rows.begin(), other);
    }

    WorkFolder m_folder;
    Table m_results{""};
};

const char storage[] = "--ZYL. Signal: Illegal storage access. in zylFunctionCalls";
const char arithmetic[] =
    "--ZYL. Signal: FP fail, such as overflow, division by zero, invalid operation. in zylFunctionCalls";
const char instruction[] = "--ZYL. Signal: Illegal instruction. in zylFunctionCalls";

TEST_F(Faults, SignalsEndOneTestEach) {
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "read", "EXCPTFAIL", 0, "--", storage},
        {"zylsCompareIgnoreCaseLatin_8u", "read@500", "EXCPTFAIL", 0, "--", storage},
        {"zylsConcat_8u", "", "OK", 1, "--", ""},
        {"zylsEqual_8u", "write", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindC_8u", "jump", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindRevC_8u", "overflow", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindRevCAny_8u", "", "OK", 2, "--", ""},
        {"zylsHash_8u32u", "divide", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsHash_16u32u", "divide", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsHashMSCS_8u32u", "illegal", "EXCPTFAIL", 0, "--", instruction},
        {"zylsHashMSCS_16u32u", "state", "OK", 4, "--", ""},
        {"zylsInsert_8u", "", "OK", 1, "--", ""},
    };
    expectFaults(table, "Number of tests=12 Successes=4 Failures=8 Fails=8 -EXCPTFAIL=8 ",
                 {"-dVectorLength=64", "-LPERF"});
    // 53 bits with zero divide unmasked; all masked and flushed to zero
    EXPECT_EQ(m_outcome.errors, "x87 23b mxcsr 9f80\n");
}

TEST_F(Faults, StatusesAndFlagsAreNotesOrFails) {
    // Ten loops and a warm-up for each of three lengths: 11 calls each. Of a combination the last call
    // counts.
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "negative", "FUNCFAIL", 0, "--",
         "-- lib function fail on test parameters:\nVectorLength=64 "},
        {"zylsCompareIgnoreCaseLatin_8u", "negative@22", "FUNCFAIL", 1, "--",
         "-- lib function fail on test parameters:\nVectorLength=128 "},
        {"zylsEqual_8u", "positive", "FUNCWRN", 3, "--",
         "-- lib function note on test parameters:\nVectorLength=256 "},
        {"zylsFindC_8u", "positive@33", "FUNCWRN", 3, "--",
         "-- lib function note on test parameters:\nVectorLength=256 "},
        {"zylsFindRevC_8u", "x87", "BADSTSWRN", 3, "?-", "-- Status    87: ?Invalid "},
        {"zylsHash_8u32u", "sse", "BADSTSWRN", 4, "-?", "-- Status    SSX: ?Zerodivide "},
        {"zylsHash_16u32u", "negative@2", "OK", 4, "--", ""},
        {"zylsHashMSCS_8u32u", "", "OK", 4, "--", ""},
    };
    expectFaults(table,
                 "Number of tests=8 Successes=2 Failures=6 Fails=2 -FAIL=2 Notes=4 -NOTE=2 -BADSTSWRN=2 ",
                 {"-dVectorLength=64; 128; 256", "-LWARN", "-dMethod=Manual", "-dNumLoops=10"});
}

TEST_F(Faults, UnmaskedFloatExceptionIsASignal) {
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "sse", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsEqual_8u", "x87", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsFind_8u", "", "OK", 4, "--", ""},
        {"zylsHash_8u32u", "negative", "FUNCFAIL", 0, "--",
         "-- lib function fail on test parameters:\nlength=4 "},
    };
    expectFaults(table, "Number of tests=4 Successes=1 Failures=3 Fails=3 -FAIL=1 -EXCPTFAIL=2 ",
                 {"-dVectorLength=64", "-W"});
}

}  // namespace
