/// Whole comparisons with instruments that tell what their libraries' texts say.

#include "compare/comparison.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <fstream>

#include "compare/storedreport.h"
#include "machine/random.h"
#include "machine/version.h"
#include "turns/tests/fake_library.h"

namespace lab {
namespace {

const Watcher nobody{[](const Progress&) {}, [](const std::string&) {}, [](const std::string&) {}};

class Comparisons : public testing::Test {
  protected:
    Settings settings(const std::string& oldScript, const std::string& newScript) {
        Settings settings;
        settings.folders = {m_folder.library("old", oldScript), m_folder.library("new", newScript)};
        settings.instrument = LAB_FAKE_INSTRUMENT;
        settings.seed = 42;
        settings.patience = 0.5;
        settings.wait = false;
        settings.shape.epochs = 3;
        return settings;
    }

    Report compared(const Settings& settings) {
        Store store = beginComparison(settings, m_path, nobody);
        continueComparison(store, nobody);
        return reportOf(store);
    }

    TestFolder m_folder;
    std::string m_path = m_folder.path("run.db");
};

/// The verdicts on the points of each function, in their order: "=" same, "+" slower, "-" faster, "x" crash,
/// "s" status.
std::string verdicts(const Report& report) {
    std::string text;
    for (std::size_t i = 0; i < report.points.size(); ++i) {
        const Decision& decision = report.points[i].decision;
        if (i > 0 && report.points[i].function != report.points[i - 1].function) {
            text += " ";
        }
        text += decision.reason == Reason::crash    ? 'x'
                : decision.reason == Reason::status ? 's'
                                                    : "+-=?"[static_cast<std::size_t>(decision.verdict)];
    }
    return text;
}

struct Case {
    const char* older;
    const char* newer;
    const char* verdicts;
    ExitStatus status;
};

TEST_F(Comparisons, SayWhatTheSidesDo) {
    const Case cases[] = {
        {"", "", "=== === ===", exitNothingSlower},
        {"", "slow F2 1.5", "=== +++ ===", exitSlower},
        {"slow F2 1.5\nslow F3 1.5", "slow F3 1.5", "=== --- ===", exitNothingSlower},
        {"", "exit F2 3", "=== xxx ===", exitCrash},
        {"exit F2 3", "", "=== xxx ===", exitNothingSlower},
        {"exit F2 3", "abort F2", "=== xxx ===", exitNothingSlower},
        {"", "signal F1\nslow F3 1.5", "xxx === +++", exitCrash},
        {"", "hang F3", "=== === xxx", exitCrash},
        {"", "status F2 5", "=== sss ===", exitNothingSlower},
        {"status F2 5", "status F2 5", "=== === ===", exitNothingSlower},
        {"", "smash F2", "=== xxx", exitCrash},
        {"without F1", "", "=== ===", exitNothingSlower},
    };
    for (const Case& row : cases) {
        const Report report = compared(settings(row.older, row.newer));
        EXPECT_EQ(verdicts(report), row.verdicts) << row.older << " | " << row.newer;
        EXPECT_EQ(exitStatus(report, false), row.status) << row.older << " | " << row.newer;
        EXPECT_EQ(report.identical, std::string(row.older) == row.newer);
        EXPECT_TRUE(report.finished);
    }
}

TEST_F(Comparisons, RefuseWhatCannotBeCompared) {
    Settings widths = settings("", "");
    m_folder.library("new", "", ELFCLASS32);
    EXPECT_THROW(beginComparison(widths, m_path, nobody), NotComparable);
    EXPECT_THROW(compared(settings("without F1\nwithout F2", "without F3")), NotComparable);
    Settings empty = settings("", "");
    std::filesystem::remove(empty.folders[1] + "/libzylch.so.10");
    EXPECT_THROW(compared(empty), std::runtime_error);
    std::ofstream(empty.folders[1] + "/libzylch.so.10") << "text";
    EXPECT_THROW(compared(empty), std::runtime_error);

    Store store = beginComparison(settings("", ""), m_path, nobody);
    EXPECT_EQ(store.setting("version"), labVersion());
    m_folder.library("new", "slow F1 2");
    EXPECT_THROW(continueComparison(store, nobody), NotComparable) << "files of another day";
}

TEST_F(Comparisons, TakeObjectsOfAnyName) {
    setenv("FAKE_OBJECTS", "libhelp.so libmine.so.2", 1);
    Settings asked;
    asked = settings("", "");
    for (const std::string& folder : asked.folders) {
        std::filesystem::remove_all(folder);
        m_folder.library(std::filesystem::path(folder).filename(),
                         folder == asked.folders[1] ? "slow F2 2" : "", ELFCLASS64,
                         {"libhelp.so", "libmine.so.2.1", "libunused.so"});
        // what is mapped is the file, what is asked for the link
        std::filesystem::create_symlink("libmine.so.2.1", folder + "/libmine.so.2");
    }
    const Report report = compared(asked);
    EXPECT_EQ(verdicts(report), "=== +++ ===");
    ASSERT_EQ(report.newer.objects.size(), 2U);
    EXPECT_EQ(report.newer.objects[1].path, asked.folders[1] + "/libmine.so.2.1");
    EXPECT_NE(report.newer.objects[1].sha256, report.older.objects[1].sha256);
    unsetenv("FAKE_OBJECTS");
}

TEST_F(Comparisons, TakeProgramsThatAreInstruments) {
    setenv("FAKE_OBJECTS", "", 1);
    Settings asked = settings("", "");
    asked.instrument = "";
    const std::string program = m_folder.path("old/own");
    asked.folders = {program, m_folder.path("new/other_own")};
    for (const std::string& path : asked.folders) {
        std::filesystem::copy_file(LAB_FAKE_INSTRUMENT, path);
    }
    const Report same = compared(asked);
    EXPECT_EQ(verdicts(same), "=== === ===");
    EXPECT_TRUE(same.identical) << "by content, not by name";
    EXPECT_EQ(same.older.objects.front().path, program);
    std::ofstream(asked.folders[1], std::ios::app) << "another build";
    EXPECT_FALSE(compared(asked).identical);

    asked.instrument = LAB_FAKE_INSTRUMENT;
    EXPECT_THROW(compared(asked), std::runtime_error) << "an instrument for instruments";
    asked.instrument = "";
    asked.folders[1] = m_folder.path("new");
    EXPECT_THROW(compared(asked), std::runtime_error) << "a program and a folder";
    asked.folders[1] = m_folder.path("new/libzyls.so.10");
    EXPECT_THROW(compared(asked), std::runtime_error) << "a file that does not run";
    unsetenv("FAKE_OBJECTS");
}

/// All visits in one text, without the times.
std::string visitsOf(const std::string& path) {
    Store store = Store::open(path, false);
    std::string text;
    store.eachVisit([&](int pair, StoredVisit&& visit) {
        text += std::to_string(pair) + " " + std::to_string(visit.point) + (visit.fresh ? " fresh" : "");
        for (const Turn& turn : visit.turns) {
            text += (turn.side == Side::older ? " o" : " n") + std::to_string(turn.epoch);
            for (const std::int64_t ticks : turn.ticks) {
                text += " " + std::to_string(ticks);
            }
        }
        text += "\n";
    });
    return text;
}

TEST_F(Comparisons, KilledAtAnyMomentEndAsUndisturbedOnes) {
    const Settings asked = settings("", "slow F2 1.5");
    compared(asked);
    const std::string undisturbed = visitsOf(m_path);
    const std::string path = m_folder.path("killed.db");
    beginComparison(asked, path, nobody);
    setenv("FAKE_DELAY_US", "100", 1);
    Random random{2};
    int kills = 0;
    for (bool finished = false; !finished;) {
        const pid_t driver = fork();
        if (driver == 0) {
            Store store = Store::open(path, true);
            continueComparison(store, nobody);
            std::_Exit(0);
        }
        usleep(static_cast<useconds_t>(20000 + random.below(100000)));
        kills += kill(driver, SIGKILL) == 0 ? 1 : 0;
        int status = 0;
        waitpid(driver, &status, 0);
        finished = WIFEXITED(status);
        Database base(path, SQLITE_OPEN_READWRITE);
        Statement check(base, "PRAGMA integrity_check");
        ASSERT_TRUE(check.row());
        ASSERT_EQ(check.text(0), "ok");
        // a machine that is too slow for these steps gets there too
        if (kills == 20) {
            Store store = Store::open(path, true);
            continueComparison(store, nobody);
            break;
        }
    }
    unsetenv("FAKE_DELAY_US");
    EXPECT_GT(kills, 2);
    EXPECT_EQ(visitsOf(path), undisturbed);
}

TEST(Settings, OfAStore) {
    Settings settings;
    settings.family = 0.0025;
    settings.kind = "old nodes";
    StoredHead head;
    head.settings = settingTexts(settings);
    EXPECT_EQ(settingsFrom(head).family, 0.0025);
    EXPECT_EQ(settingsFrom(head).kind, "old nodes");
    std::erase_if(head.settings,
                  [](const auto& known) { return known.first == "family" || known.first == "machine kind"; });
    EXPECT_EQ(settingsFrom(head).family, 0.01) << "a store of version 1.0";
}

TEST(Settings, Texts) {
    EXPECT_DOUBLE_EQ(parseShare("1%"), 0.01);
    EXPECT_DOUBLE_EQ(parseShare("0.05"), 0.05);
    EXPECT_DOUBLE_EQ(parseSeconds("10m"), 600.0);
    EXPECT_DOUBLE_EQ(parseSeconds("50us"), 5e-5);
    EXPECT_EQ(parsePairs("8:40"), (std::array<int, 2>{8, 40}));
    EXPECT_EQ(parsePairs("16"), (std::array<int, 2>{16, 16}));
    EXPECT_EQ(parseKeys(" -TSSE2 -dVectorLength=64; 512; *8 -j5"),
              (std::vector<std::string>{"-TSSE2", "-dVectorLength=64; 512; *8", "-j5"}));
    for (const char* text : {"", "%", "0%", "100%", "-1%", "1%%", "nan", "inf%"}) {
        EXPECT_THROW(parseShare(text), std::invalid_argument) << text;
    }
    for (const char* text : {"", "0", "10 m", "10d", "-5s"}) {
        EXPECT_THROW(parseSeconds(text), std::invalid_argument) << text;
    }
    for (const char* text : {"", "8:", ":8", "40:8", "0:8", "8:40:50", "8:9999"}) {
        EXPECT_THROW(parsePairs(text), std::invalid_argument) << text;
    }
}

}  // namespace
}  // namespace lab
