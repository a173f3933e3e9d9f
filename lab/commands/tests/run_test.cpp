/// metrig-lab run and check on a real instrument, whose library misbehaves as METRIG_FAULTS says.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "commands/tests/shell.h"
#include "turns/tests/fake_library.h"

namespace lab {
namespace {

using Lines = std::vector<std::string>;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a table behind its title line, cut before the `cell`th comma.
Lines rowsOf(const std::string& table, std::size_t cells) {
    Lines rows;
    std::istringstream lines(table);
    bool begun = false;
    for (std::string line; std::getline(lines, line) && line != "END_DATA";) {
        std::size_t end = 0;
        for (std::size_t cell = 0; cell < cells && end != std::string::npos; ++cell) {
            end = line.find(',', end + (cell > 0 ? 1 : 0));
        }
        if (begun) {
            rows.push_back(line.substr(0, end));
        }
        begun = begun || line.starts_with("function,") || line.starts_with("Function,");
    }
    return rows;
}

std::string cellOf(const std::string& row, int index) {
    std::istringstream cells(row);
    std::string cell;
    for (int i = 0; i <= index; ++i) {
        std::getline(cells, cell, ',');
    }
    return cell;
}

/// The name that a row of the table has in three cells.
std::string functionOf(const std::string& row) {
    const std::string descriptor = cellOf(row, 2);
    return cellOf(row, 0) + "_" + cellOf(row, 1) + (descriptor == "-" ? "" : "_" + descriptor);
}

int occurrences(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
        ++count;
    }
    return count;
}

constexpr std::size_t KeyCells = 9;  // of a row of the table, before the figures

class Survival : public testing::Test {
  protected:
    Survival() {
        // the regular expressions have their texts in the current directory
        std::filesystem::copy(METRIG_SOURCE_DIR "/examples/reperf.txt", m_folder.path(""));
    }

    /// Runs a command of metrig-lab on the instrument, its tables in the test's folder.
    Outcome lab(const std::string& command, const std::string& keys, const std::string& faults = "",
                const std::string& before = "", const std::string& after = "") {
        return shell("cd " + m_folder.path("") + "; " + before +
                     " LD_PRELOAD=" LAB_INSTRUMENT "/lib/libfaults.so METRIG_MHZ=1000 METRIG_FAULTS='" +
                     faults + "' " LAB_PROGRAM " " + command + " --instrument " LAB_INSTRUMENT "/bin/metrig -- " +
                     keys + " -l" + m_folder.path("") + after);
    }
    std::string file(const std::string& name) const { return contentOf(m_folder.path(name)); }

    TestFolder m_folder;
    const std::string m_small = "-B -dMethod=Manual -dNumLoops=10 '-dVectorLength=64; 128' -r -u -q -o -g ";
};

/// A function, in the order of the run.
struct Function {
    std::string name;
    std::string fault{};  ///< empty: none
    std::string word = "EXCPTFAIL";
    std::string reason{};  ///< of a process that was lost
    int rows = 0;          ///< of the table; -1: all
};

Function measured(const std::string& name, const std::string& fault = "") {
    return {name, fault, "OK", "", -1};
}

const std::string killed = "killed by signal 9 (Killed)";
const std::string crashed = "killed by signal 11 (Segmentation fault)";
const std::string hung = "did not return within 1 s";

/// 33 ways to die. What is not followed by a reason dies in a way that the instrument survives itself.
const std::vector<Function> functions = {
    measured("zylsCompare_8u", "poison"),
    measured("zylsCompareIgnoreCaseLatin_8u", "poisoned"),
    {"zylsConcat_8u", "read"},
    {"zylsConcat_8u_D2L", "write"},
    {"zylsConcatC_8u_D2L", "jump"},
    {"zylsConvertUTF_8u16u", "overflow"},
    {"zylsConvertUTF_16u8u", "divide"},
    measured("zylsEqual_8u"),
    {"zylsFind_8u", "kill@12", "EXCPTFAIL", killed, 1},
    {"zylsFindC_8u", "illegal"},
    {"zylsFindCAny_8u", "bus"},
    {"zylsFindC_Z_8u", "abort"},
    {"zylsFindRev_8u", "trap"},
    {"zylsFindRevC_8u", "syscall"},
    {"zylsFindRevCAny_8u", "throw"},
    {"zylsFind_Z_8u", "number"},
    {"zylsHash_8u32u", "memory"},
    {"zylsHash_16u32u", "exit", "EXCPTFAIL", "exited with status 3"},
    {"zylsHashMSCS_8u32u", "_exit@12", "EXCPTFAIL", "exited with status 4", 1},
    {"zylsHashMSCS_16u32u", "quick", "EXCPTFAIL", "exited with status 5"},
    {"zylsHashSJ2_8u32u", "heap"},
    {"zylsHashSJ2_16u32u", "unheap", "EXCPTFAIL", "killed by signal "},
    measured("zylsInsert_8u"),
    {"zylsInsert_8u_I", "smash", "EXCPTFAIL", "killed by signal "},
    {"zylsLowercaseLatin_8u", "spin", "EXCPTFAIL", hung},
    {"zylsLowercaseLatin_8u_I", "deaf", "EXCPTFAIL", hung},
    measured("zylsRegExpFind_8u"),
    {"zylsRegExpReplace_8u", "deafread", "EXCPTFAIL", crashed},
    {"zylsRemove_8u", "default", "EXCPTFAIL", crashed},
    {"zylsRemove_8u_I", "nostack", "EXCPTFAIL", crashed},
    {"zylsReplaceC_8u", "thread", "EXCPTFAIL", crashed},
    {"zylsSplitC_8u_D2L", "leave"},
    {"zylsTrimC_8u", "close", "EXCPTFAIL", "the files of the run were closed"},
    {"zylsTrimC_8u_I", "freeze", "EXCPTFAIL", hung},
    measured("zylsTrimCAny_8u"),
    {"zylsTrimEndCAny_8u", "sandbox", "EXCPTFAIL", killed},
    {"zylsTrimStartCAny_8u", "exec", "EXCPTFAIL", "exited with status 0"},
    {"zylsUppercaseLatin_8u", "deadlock", "EXCPTFAIL", hung},
    {"zylsUppercaseLatin_8u_I", "alarm", "EXCPTFAIL", "killed by signal 14 (Alarm clock)"},
};

/// What the table holds after the run, of the rows of a healthy one.
Lines expectedRows(const Lines& healthy) {
    Lines rows;
    for (const Function& function : functions) {
        int left = function.rows;
        for (const std::string& row : healthy) {
            if (left != 0 && functionOf(row) == function.name) {
                rows.push_back(row);
                --left;
            }
        }
    }
    return rows;
}

TEST_F(Survival, ThirtyWaysToDieInOneRun) {
    ASSERT_EQ(lab("run", m_small + "-nhealthy").status, 0);
    std::string faults;
    for (const Function& function : functions) {
        faults += function.fault.empty() ? "" : function.name + "=" + function.fault + " ";
    }
    const Outcome outcome = lab("run --patience 1", m_small + "-nrun", faults);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_NE(file("run.end"), "");
    EXPECT_EQ(rowsOf(file("run.csv"), KeyCells), expectedRows(rowsOf(file("healthy.csv"), KeyCells)));
    EXPECT_EQ(rowsOf(file("run_name.csv"), 99), rowsOf(file("healthy_name.csv"), 99));

    const std::string listing = file("run.txt");
    const Lines summary = rowsOf(file("run_sum.csv"), 99);
    ASSERT_EQ(summary.size(), functions.size() + 1) << "with the information on the machine";
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const auto& [name, fault, word, reason, rows] = functions[i];
        EXPECT_EQ(cellOf(summary[i + 1], 0) + " " + cellOf(summary[i + 1], 9), name + " " + word) << fault;
        EXPECT_EQ(occurrences(listing, "| Function  : " + name + " "), 1) << fault;
        EXPECT_EQ(occurrences(listing, "-" + word + std::string(11 - word.size(), ' ') + name + " "), 1)
            << fault;
        const std::size_t begin = listing.find("| Function  : " + name + " ");
        const std::string part = listing.substr(begin, listing.find("| -", begin) - begin);
        // whether the process gets over a damaged heap is up to the C library
        EXPECT_TRUE(fault == "heap" ||
                    (part.find("--ZYL. Process: " + reason) != std::string::npos) == !reason.empty())
            << fault << "\n"
            << part;
    }
    EXPECT_NE(file("run_sum.csv").find(".Number of tests,40\n.Successes      ,7\n"), std::string::npos);
    EXPECT_NE(
        outcome.output.find("zylsCompareIgnoreCaseLatin_8u: " + killed + ", maybe by a function before it"),
        std::string::npos);
}

/// What a later process is to know of the dialogue stands in no file.
TEST_F(Survival, AnswersOutliveTheProcessThatAskedForThem) {
    const Outcome outcome = lab("run", "-f=zylsCompare_8u -f=zylsEqual_8u -AAll -r", "zylsCompare_8u=kill",
                                "printf 'Manual\\n7\\n64\\nbyte\\n0\\n512\\n' |");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    const Lines rows = rowsOf(file("metrig.csv"), KeyCells + 1);
    EXPECT_EQ(rows, Lines{"zylsEqual,8u,-,64,-,-,-,-,-,nLps=7"}) << outcome.output;
    EXPECT_EQ(occurrences(outcome.output, "NumLoops [10] = "), 1);
}

TEST_F(Survival, ASignalEndsTheRunAsItEndsTheInstruments) {
    // told to end while a function does not return, which the instrument leaves after two seconds
    const Outcome outcome =
        lab("run", m_small + "-f=zylsCompare_8u -f=zylsEqual_8u -f=zylsFind_8u", "zylsEqual_8u=hang", "",
            " & lab=$!; for i in $(seq 100); do grep -qs zylsEqual metrig_sum.csv && break; sleep 0.1; done; "
            "child=$(cat /proc/$lab/task/$lab/children); kill -TERM $lab; wait $lab; echo status $?; "
            "[ ! -e /proc/$child ] || echo left $child");
    EXPECT_NE(outcome.output.find("\nstatus 0\n"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("left "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("-- Run is stopped by a signal\n"), std::string::npos) << outcome.output;
    EXPECT_NE(file("metrig.end"), "");
    const Lines summary = rowsOf(file("metrig_sum.csv"), 1);
    EXPECT_EQ(summary, (Lines{"zylsCompare_8u", "zylsEqual_8u"}));
    EXPECT_NE(file("metrig_sum.csv").find("END_DATA"), std::string::npos);
}

TEST_F(Survival, RunHandsOnWhatTheInstrumentSays) {
    const struct {
        std::string keys;
        std::string before;
        int status;
        std::string words;
    } rows[] = {
        {"-h", "", 0, "QUICK HELP"},
        {"-B -f=zylsNone", "", 0, ".Number of tests : 0"},
        {"-B -r/nowhere/at/all", "", 0, "FATAL FAIL: can't open output file"},
        {"-B", "LD_LIBRARY_PATH=" + m_folder.library("none", ""), 127, "libzyl"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = lab("run", row.keys, "", row.before);
        EXPECT_EQ(outcome.status, row.status) << row.keys << "\n" << outcome.output;
        EXPECT_NE(outcome.output.find(row.words), std::string::npos) << row.keys << "\n" << outcome.output;
    }
}

TEST_F(Survival, CheckIsAGate) {
    std::ofstream(m_folder.path("run.ini")) << "[Metrig]\nMethod=Manual\nAccuracy=5\n[zylsNone]\n";
    const std::string good = "-B -f=zylsEqual_8u -dMethod=Manual -dNumLoops=5 ";
    const struct {
        std::string keys;
        std::string faults;
        int status;
        std::string words;  ///< on the console; empty: none of metrig-lab
    } rows[] = {
        {good, "", 0, ""},
        {good + "-cTwo -r", "", 2, "-cTwo: ignored: incorrect number of milliseconds"},
        {good + "-f-Compare -tTimch -m=p_chcomp_ia", "", 0, ""},
        {good + "-L WARN -c 5 -f+ Equal -u -q -ozz", "", 0, ""},
        {good + "-8", "", 2, "-8: ignored: incorrect option key"},
        {good + "word", "", 2, "word: ignored: it belongs to no key"},
        {good + "-f=zylsEqual_16u", "", 2, "-f: \"zylsEqual_16u\" is not the name of a function"},
        {good + "-t+Timsz", "", 2, "-t: \"Timsz\" is no part of the name of a test"},
        {good + "-Fzork", "", 2, "-F: no test that is to run is of function \"zork\""},
        {"-B -f-zyls -f-__mr", "", 2, "no test is left to run"},
        {good + "-dVectorLenght=64", "", 2, "-dVectorLenght=64: no test asks for it"},
        {good + "-dAccuracy=1", "", 2, "-dAccuracy=1: no test asks for it"},
        {good + "-dlenFind=8", "", 2, "-dlenFind=8: no test asks for it"},
        {good + "-f=zylsFind_8u -dlenFind=8 -dVectorLength=64", "", 0, ""},
        {"-B -f=zylsEqual_8u -dMethod=Quick", "", 2, "Method: Invalid value of Method = Quick"},
        {good + "-inone.ini", "", 2, "-i: can't read file "},
        {"-B -f=zylsEqual_8u -p" + m_folder.path("") + " -irun.ini", "", 0, ""},
        {"-B -P -p" + m_folder.path("") + " -irun.ini", "", 2, "-P: no test is of function \"zylsNone\""},
        {good, "zylsEqual_8u=positive", 0, ""},  // counts as OK where only fails show
        {good + "-LWARN", "zylsEqual_8u=positive", 1, "not OK: zylsEqual_8u FUNCWRN"},
        {good + "-f=zylsCompare_8u", "zylsEqual_8u=kill", 1, "not OK: zylsEqual_8u EXCPTFAIL"},
        {"-h", "", 2, "no test was run to its end"},
        {good + "-r/nowhere/at/all", "", 2, "no test was run to its end"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = lab("check", row.keys, row.faults);
        EXPECT_EQ(outcome.status, row.status) << row.keys << "\n" << outcome.output;
        EXPECT_NE(outcome.output.find(row.words.empty() ? "MR Summary" : "metrig-lab: " + row.words),
                  std::string::npos)
            << row.keys << "\n"
            << outcome.output;
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("metrig.csv")))
        << "a run that is refused touches no file";
}

}  // namespace
}  // namespace lab
