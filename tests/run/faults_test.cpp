#include <csignal>

#include "tables.h"

namespace {

/// A function in a run, in the order of the run, and what the run has to tell of it.
struct FaultRow {
    std::string function;
    std::string fault{};   ///< kind of the fault; empty: the function is in order
    std::string word{};    ///< of the result
    int rows = 0;          ///< result lines that it leaves
    std::string status{};  ///< x87 and MXCSR column of the summary
    std::string words{};   ///< a whole line of the console; empty: none
};

class Faults : public testing::Test {
  protected:
    /// Measures the functions of the table in one run.
    void measure(const std::vector<FaultRow>& table, Cells arguments, const std::string& variable = "A=") {
        std::string faults = "METRIG_FAULTS=";
        arguments.insert(arguments.end(), {"-B", "-r", "-u", "-c1", "-gmetrig", "-l" + m_folder.path()});
        for (const FaultRow& row : table) {
            arguments.push_back("-f=" + row.function);
            faults += row.fault.empty() ? "" : row.function + "=" + row.fault + " ";
        }
        m_outcome = run({.arguments = arguments,
                         .environment = {faults, variable, "LD_PRELOAD=" METRIG_LIB_DIR "/libfaults.so"}});
        m_results = Table(m_folder.content("metrig.csv"));
        expectFigures(m_results);
    }

    /// The same for a run that gets to its end, and compares what it left of each function with its row.
    void expectFaults(const std::vector<FaultRow>& table, const std::string& counters, Cells arguments,
                      const std::string& variable = "A=") {
        measure(table, arguments, variable);
        EXPECT_EQ(m_outcome.status, 0) << "signal " << m_outcome.signal << "\n" << m_outcome.output;
        EXPECT_NE(m_folder.content("metrig.end"), "");
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
    WorkFolder m_folder;
    Table m_results{""};

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
};

const char storage[] = "--ZYL. Signal: Illegal storage access. in zylFunctionCalls";
const char arithmetic[] =
    "--ZYL. Signal: FP fail, such as overflow, division by zero, invalid operation. in zylFunctionCalls";
const char unknown[] = "--ZYL. Signal: Unknown exception in zylFunctionCalls";
const char instruction[] = "--ZYL. Signal: Illegal instruction. in zylFunctionCalls";

/// 53 bits with zero divide unmasked; all masked and flushed to zero.
const char ordinaryState[] = "x87 23b mxcsr 9f80\n";

/// Eleven calls for each of three lengths.
const Cells threeLengths = {"-dVectorLength=64; 128; 256", "-LWARN", "-dMethod=Manual", "-dNumLoops=10"};

TEST_F(Faults, SignalsEndOneTestEach) {
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "read", "EXCPTFAIL", 0, "--", storage},
        {"zylsCompareIgnoreCaseLatin_8u", "read@20", "EXCPTFAIL", 0, "--", storage},
        {"zylsConcat_8u", "", "OK", 1, "--", ""},
        {"zylsEqual_8u", "write", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindC_8u", "jump", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindRevC_8u", "overflow", "EXCPTFAIL", 0, "--", storage},
        {"zylsFindRevCAny_8u", "", "OK", 2, "--", ""},
        {"zylsHash_8u32u", "divide", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsHash_16u32u", "trap", "EXCPTFAIL", 0, "--", unknown},
        {"zylsHashMSCS_8u32u", "illegal", "EXCPTFAIL", 0, "--", instruction},
        {"zylsHashMSCS_16u32u", "state", "OK", 4, "--", ""},
        {"zylsInsert_8u", "bus", "EXCPTFAIL", 0, "--", unknown},
        {"zylsRemove_8u", "abort", "EXCPTFAIL", 0, "--", unknown},
        {"zylsReplaceC_8u", "syscall", "EXCPTFAIL", 0, "--", unknown},
        {"zylsTrimC_8u", "throw", "EXCPTFAIL", 0, "--",
         "--ZYL. Exception: std::bad_alloc in zylFunctionCalls"},
        {"zylsTrimC_8u_I", "number", "EXCPTFAIL", 0, "--",
         "--ZYL. Exception: Unknown exception in zylFunctionCalls"},
        {"zylsUppercaseLatin_8u", "", "OK", 1, "--", ""},
    };
    expectFaults(table, "Number of tests=17 Successes=4 Failures=13 Fails=13 -EXCPTFAIL=13 ",
                 {"-dVectorLength=64", "-LPERF"});
    EXPECT_EQ(m_outcome.errors, ordinaryState);
}

TEST_F(Faults, StatusesAndFlagsAreNotesOrFails) {
    // Of a combination the last call counts.
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
        {"zylsRemove_8u", "nothing", "OK", 3, "--", ""},
        {"zylsReplaceC_8u", "overrun", "OK", 3, "--", ""},
    };
    expectFaults(table,
                 "Number of tests=9 Successes=3 Failures=6 Fails=2 -FAIL=2 Notes=4 -NOTE=2 -BADSTSWRN=2 ",
                 threeLengths);
}

TEST_F(Faults, StateLeftChangedIsPutRightAndToldOnceATest) {
    const std::string told = "-- Left changed by the function, put right: ";
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "mmx", "OK", 3, "--", told + "x87 registers"},
        {"zylsCompareIgnoreCaseLatin_8u", "direction", "OK", 3, "--", told + "direction flag"},
        {"zylsEqual_8u", "unmask", "OK", 3, "--", told + "MXCSR"},
        {"zylsFindC_8u", "control", "OK", 3, "--", told + "x87 control word, MXCSR"},
        {"zylsFindRevC_8u", "mask", "OK", 3, "--", told + "signal mask"},
        {"zylsHash_8u32u", "handlers", "OK", 4, "--", told + "signal handlers"},
        {"zylsHash_16u32u", "stack", "OK", 4, "--", told + "signal stack"},
        {"zylsHashMSCS_8u32u", "locale", "OK", 4, "--", told + "locale"},
        {"zylsHashMSCS_16u32u", "state", "OK", 4, "--", ""},
        {"zylsInsert_8u", "overflow", "EXCPTFAIL", 0, "--", storage},
    };
    expectFaults(table, "Number of tests=10 Successes=9 Failures=1 Fails=1 -EXCPTFAIL=1 ", threeLengths);
    EXPECT_EQ(m_outcome.errors, ordinaryState);
    EXPECT_EQ(linesWith(m_outcome.output, told).size(), 8U);
}

TEST_F(Faults, MemoryUsedUpEndsOneTest) {
    if (emulated()) {
        GTEST_SKIP() << "the emulator limits no memory";
    }
    const std::vector<FaultRow> table = {
        {"zylsTrimC_8u", "memory", "EXCPTFAIL", 0, "--",
         "--ZYL. Exception: std::bad_alloc in zylFunctionCalls"},
        {"zylsTrimC_8u_I", "memory", "EXCPTFAIL", 0, "--",
         "--ZYL. Exception: std::bad_alloc in zylFunctionCalls"},
        {"zylsUppercaseLatin_8u", "", "DATAWRN", 1, "--", "-- Memory fault: can't allocate 16777216 bytes"},
    };
    expectFaults(table, "Number of tests=3 Failures=3 Fails=2 -EXCPTFAIL=2 Notes=1 -NOTE=1 ",
                 {"-dVectorLength=64; 16777216"});
}

TEST_F(Faults, TheWatchdogEndsACombination) {
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "hang@22", "EXCPTFAIL", 1, "--",
         "--ZYL. Signal: METRIG_WATCHDOG: the time of a combination is over. in zylFunctionCalls"},
        {"zylsEqual_8u", "", "OK", 3, "--", ""},
    };
    expectFaults(table, "Number of tests=2 Successes=1 Failures=1 Fails=1 -EXCPTFAIL=1 ", threeLengths,
                 "METRIG_WATCHDOG=0.5");
}

TEST_F(Faults, UnmaskedFloatExceptionIsASignal) {
    if (emulated()) {
        GTEST_SKIP() << "the emulator raises no float exceptions";
    }
    const std::vector<FaultRow> table = {
        {"zylsCompare_8u", "sse", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsEqual_8u", "x87", "EXCPTFAIL", 0, "--", arithmetic},
        {"zylsFind_8u", "", "OK", 4, "--", ""},
        {"zylsHash_8u32u", "negative", "FUNCFAIL", 0, "--",
         "-- lib function fail on test parameters:\nlength=4 "},
        {"zylsRemove_8u", "nothing", "OK", 1, "--", ""},
    };
    expectFaults(table, "Number of tests=5 Successes=2 Failures=3 Fails=3 -FAIL=1 -EXCPTFAIL=2 ",
                 {"-dVectorLength=64", "-W"});
}

TEST_F(Faults, ARunThatIsAskedToStopEndsInOrder) {
    // A call that returns, and one that does not.
    const std::pair<FaultRow, std::string> rows[] = {
        {{"zylsEqual_8u", "terminate@22", "OK", 2, "--", ""}, "Successes=2 "},
        {{"zylsEqual_8u", "hangup@22", "EXCPTFAIL", 1, "--",
          "--ZYL. Signal: The run was stopped while the function did not return. in zylFunctionCalls"},
         "Successes=1 Failures=1 Fails=1 -EXCPTFAIL=1 "},
    };
    for (const auto& [row, counters] : rows) {
        expectFaults({{"zylsCompare_8u", "", "OK", 3, "--", ""}, row}, "Number of tests=2 " + counters,
                     threeLengths + Cells{"-f=zylsFindC_8u"}, "METRIG_WATCHDOG=5s");
        EXPECT_TRUE(holds(m_outcome.output, "-- METRIG_WATCHDOG is no number of seconds: 5s\n"));
        EXPECT_TRUE(holds(m_outcome.output, "-- Run is stopped by a signal\n"));
    }
}

TEST_F(Faults, ARunThatIsKilledLosesNoLine) {
    for (const auto& [fault, signal] : {std::pair("kill", SIGKILL), std::pair("interrupt", SIGINT)}) {
        measure({{.function = "zylsCompare_8u"},
                 {.function = "zylsEqual_8u", .fault = std::string(fault) + "@22"}},
                threeLengths);
        EXPECT_EQ(m_outcome.signal, signal);
        EXPECT_EQ(m_results.rows.size(), 4U) << fault;
        EXPECT_TRUE(m_folder.content("metrig.csv").ends_with("\n")) << fault;
        // which test it was
        EXPECT_TRUE(m_folder.content("metrig_sum.csv").ends_with("\nzylsEqual_8u,Timing,")) << fault;
    }
}

// The question is answered by the signal, and the run goes on.
TEST(Dialogue, IsEndedByAnInterrupt) {
    const WorkFolder folder;
    const std::string command =
        "mkfifo in; (for i in $(seq 100); do grep -q '= $' out && kill -INT $$ && break; sleep 0.1; done) & "
        "exec " METRIG_COMMAND " -AAll -f=zylsCompare_8u -dVectorLength=64 -r -l" +
        folder.path() + " <>in >out";
    const Outcome outcome =
        run({.arguments = {"-c", command}, .folder = folder.path(), .program = "/bin/sh"});
    EXPECT_EQ(outcome.status, 0) << outcome.signal;
    const std::string printed = folder.content("out");
    EXPECT_TRUE(holds(printed, "[Auto] =  Method = Auto\n Accuracy = 5\n")) << printed;
    EXPECT_EQ(Table(folder.content("metrig.csv")).rows.size(), 1U);
}

TEST(Library, ThatLacksAFunctionIsRefusedBeforeAFileIsEmptied) {
    const WorkFolder folder;
    folder.file("metrig.csv", "kept");
    folder.file("libzylch.so.10",
                replaced(readFile(METRIG_LIB_DIR "/libzylch.so.10"), std::string("\0zylsEqual_8u\0", 14),
                         std::string("\0zylsEqual_9u\0", 14)));
    const Outcome outcome = run({.arguments = {"-B", "-r", "-f=zylsCompare_8u", "-l" + folder.path()},
                                 .environment = {"LD_LIBRARY_PATH=" + folder.path()}});
    EXPECT_EQ(outcome.status, 127) << outcome.output;
    EXPECT_TRUE(holds(outcome.errors, "undefined symbol: zylsEqual_8u")) << outcome.errors;
    EXPECT_EQ(folder.content("metrig.csv"), "kept");
}

TEST(FaultsInARow, LeaveNothingBehind) {
    long peak[2] = {};
    for (const int count : {1, 500}) {
        const WorkFolder folder;
        const Outcome outcome = run({.arguments = {"-B", "-r", "-u", "-c1", "-nmetrig", "-l" + folder.path(),
                                                   count == 1 ? "-f=zylsCrash1_8u" : "-fzylsCrash"},
                                     .program = "metrig-faulty"});
        expectCleanEnd(outcome);
        const std::string number = "=" + std::to_string(count) + " ";
        EXPECT_EQ(
            Table(folder.content("metrig_sum.csv")).counters(),
            "Number of tests" + number + "Failures" + number + "Fails" + number + "-EXCPTFAIL" + number);
        peak[count > 1] = outcome.peakKiB;
    }
    EXPECT_LT(peak[1] - peak[0], 1024);
}

}  // namespace
