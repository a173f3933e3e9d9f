/// metrig-lab as its users run it: statuses, words, and what it leaves behind.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "commands/progress.h"
#include "commands/tests/shell.h"
#include "machine/version.h"
#include "turns/tests/fake_library.h"

namespace lab {
namespace {

class Program : public testing::Test {
  protected:
    Program() {
        m_folder.library("a", "");
        m_folder.library("b", "slow F2 1.5");
        m_folder.library("c", "exit F2 3");
        m_folder.library("dumb", "dumb");
        m_folder.library("wide", "", ELFCLASS32);
        std::filesystem::create_directory(m_folder.path("empty"));
        std::ofstream(m_folder.path("esc")) << "\x1b[31m\n";
    }

    Outcome lab(const std::string& arguments) {
        return shell("cd " + m_folder.path("") + "; " LAB_PROGRAM " " + arguments);
    }

    TestFolder m_folder;
    const std::string m_table = METRIG_SOURCE_DIR "/lab/results/tests/added.csv";
    const std::string m_fake = " --instrument " LAB_FAKE_INSTRUMENT " --no-wait --epochs 3 ";
};

TEST_F(Program, StatusesAndWords) {
    const struct {
        std::string arguments;
        int status;
        const char* words;
    } rows[] = {
        {"", 2, "subcommand"},
        {"--version", 0, labVersion()},
        {"compare a", 2, "NEW"},
        {"compare a b --margin 3x", 2, "3x"},
        {"compare a nowhere" + m_fake, 2, "nowhere"},
        {"compare a empty" + m_fake, 2, "libzylcore.so.10"},
        {"compare a dumb" + m_fake, 2, "takes no turns"},
        {"compare a a --core 4000" + m_fake, 2, "4000"},
        {"compare a wide" + m_fake, 4, "of 32 bits"},
        {"compare a a" + m_fake + "-- -fF1 --odd", 0, "-fF1 --odd"},
        {"compare a b" + m_fake, 1, "F2"},
        {"compare b a" + m_fake, 0, "faster"},
        {"compare a c" + m_fake, 5, "exited with status 3"},
        {"show metrig-lab.db", 5, "exited with status 3"},
        {"export metrig-lab.db --json", 0, "\"verdict\": \"same\""},
        {"merge merged.db metrig-lab.db", 0, "1 new session"},
        {"export merged.db --csv", 0, "kind,function,"},
        {"export merged.db --markdown", 0, "1 a crash"},
        {"page metrig-lab.db", 0, "metrig-lab.html"},
        {"page metrig-lab.db -o ./metrig-lab.db", 2, "is the store itself"},
        {"page metrig-lab.db -o nowhere/x", 2, "nowhere/x: can't be written"},
        {"export metrig-lab.db", 2, "option"},
        {"export metrig-lab.db --json --csv", 2, "option"},
        {"export metrig-lab.db --csv -o ./metrig-lab.db", 2, "is what is to be exported"},
        {"export metrig-lab.db --csv -o nowhere/x", 2, "nowhere/x: can't be written"},
        {"export a/" + std::string(libraryObjects[0]) + " --csv", 2, ": line 1: a byte of 0"},
        {"export a --csv", 2, "a: can't be read"},
        {"show esc", 2, "line 1: no line of a table of results: \"\\x1b[31m\""},
        {"show metrig-lab.db --only faster,same", 5, "F1"},
        {"show metrig-lab.db --only bad", 2, "bad"},
        {"show " + m_table + " --only same", 2, "no verdicts"},
        {"show " + m_table, 0, "17 results of 5 functions, of 2 runs."},
        {"resume metrig-lab.db -- -j5", 2, "no keys"},
        {"show nothing.db", 2, "nothing.db"},
        {"measure a" + m_fake + "--processes 2 -- -fF1", 0, "9 of 9 points measured"},
        {"measure c" + m_fake + "--processes 2 --points", 0, "died: exited with status 3"},
        {"show metrig-measure.db --points", 0, "died: exited with status 3"},
        {"export metrig-measure.db --json", 0, "\"metrig-lab.measurement\""},
        {"measure a -o again.db --against metrig-lab.db" + m_fake, 2, "a comparison of two builds"},
        {"measure a -o again.db --against metrig-measure.db" + m_fake, 0, "caveat:"},
        {"compare a b -o metrig-measure.db" + m_fake, 2, "a measurement of one build"},
        {"resume metrig-measure.db", 0, "points measured"},
        {"compare a b --pairs 2 --fail-on unsure" + m_fake, 3, "cannot be told"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = lab(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments << "\n" << outcome.output;
        EXPECT_NE(outcome.output.find(row.words), std::string::npos) << row.arguments << "\n"
                                                                     << outcome.output;
    }
}

TEST_F(Program, OtherProgramsReadWhatIsExported) {
    ASSERT_EQ(lab("compare a b" + m_fake).status, 1);
    const auto check = [this](const std::string& files) {
        const Outcome outcome =
            shell("cd " + m_folder.path("") +
                  "; python3 " METRIG_SOURCE_DIR "/lab/commands/tests/check_formats.py " METRIG_SOURCE_DIR
                  "/docs/schemas " +
                  files);
        EXPECT_EQ(outcome.status, 0) << files << outcome.output;
        EXPECT_EQ(outcome.output, "checked\n");
    };
    EXPECT_EQ(lab("measure b -o m1.db" + m_fake + "--processes 2 -- -fF1").status, 0);
    EXPECT_EQ(lab("measure b -o m2.db --against m1.db" + m_fake + "--processes 2").status, 0);
    for (const std::string& source : {std::string("metrig-lab.db"), std::string("m2.db"), m_table}) {
        for (const char* format : {"json", "csv", "markdown"}) {
            const Outcome outcome = lab("export " + source + " --" + format + " -o out." + format);
            EXPECT_EQ(outcome.status, 0) << outcome.output;
        }
        check("out.json out.csv");
    }
    const std::string commands[] = {"merge merged.db metrig-lab.db", "export merged.db --json -o merged.json",
                                    "history add h.db metrig-lab.db --label two --old-label one",
                                    "history add h.db m2.db", "history show h.db --json >history.json"};
    for (const std::string& command : commands) {
        const Outcome outcome = lab(command);
        EXPECT_EQ(outcome.status, 0) << command << "\n" << outcome.output;
    }
    for (const char* document : {"merged.json", "history.json"}) {
        check(document);
    }
}

TEST_F(Program, InterruptedLeavesNoProcessAndGoesOn) {
    setenv("FAKE_DELAY_US", "20000", 1);
    // each turn takes 20 ms, so it is at work for minutes
    const Outcome outcome =
        lab("compare a b" + m_fake +
            "-o run.db >log 2>&1 & driver=$!; for i in $(seq 100); do [ -s run.db-wal ] || sleep 0.1; done; "
            "sleep 1; children=$(cat /proc/$driver/task/$driver/children); kill -INT $driver; wait $driver; "
            "echo status $?; for child in $children; do [ ! -e /proc/$child ] || echo left $child; done; cat "
            "log");
    EXPECT_NE(outcome.output.find("status 130"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("left"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("resume run.db"), std::string::npos) << outcome.output;
    const Outcome late = lab("resume run.db --time 1s");
    EXPECT_EQ(late.status, 0) << late.output;
    EXPECT_NE(late.output.find("Not finished"), std::string::npos) << late.output;
    unsetenv("FAKE_DELAY_US");
    EXPECT_EQ(lab("resume run.db --time 10m").status, 1);
}

TEST(Progress, InOneLine) {
    EXPECT_EQ(progressText({5, 40, 312, 438, 12.3}),
              "pair 5 of at most 40, 312 of 438 points decided, about 12 s left");
}

}  // namespace
}  // namespace lab
