#include "turns/walk.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <fstream>
#include <map>

#include "turns/tests/fake_library.h"

namespace lab {
namespace {

using std::chrono::milliseconds;

std::unique_ptr<Instrument> instrument(const std::string& library,
                                       milliseconds patience = milliseconds(10000)) {
    return std::make_unique<Instrument>(ChildStart{LAB_FAKE_INSTRUMENT, {}, {"LD_LIBRARY_PATH=" + library}},
                                        patience);
}

/// What a walk brought, by function.
struct Walked {
    WalkEnd end;
    std::map<std::string, std::vector<Visit>> visits;
};

Walked walked(const std::string& newScript, std::vector<std::size_t> points, milliseconds patience,
              std::uint64_t pair = 1, const std::string& meeting = "") {
    const TestFolder folder;
    const std::string older = folder.library("old", "");
    const std::string newer = folder.library("new", newScript);
    const Route route(survey(*instrument(older)));
    Walked result;
    if (!meeting.empty()) {
        setenv("FAKE_MEETING", meeting.c_str(), 1);
    }
    WalkTask task;
    task.points = std::move(points);
    task.shape = {4, 50.0, 10};
    task.mhz = 2600;
    task.pair = pair;
    task.stop = [] { return false; };
    task.seconds = [] { return 0.0; };
    task.finish = [&](const std::string& function, std::vector<Visit> visits) {
        result.visits[function] = std::move(visits);
    };
    const auto first = instrument(older);
    const auto second = instrument(newer, patience);
    result.end = walk(std::array{first.get(), second.get()}, route, task);
    return result;
}

const std::vector<std::size_t> allPoints = {0, 1, 2, 3, 4, 5, 6, 7, 8};

TEST(Walk, TakesTurnsAtTheWantedPointsAlone) {
    const Walked walk = walked("slow F2 2", {1, 5}, milliseconds(10000));
    EXPECT_FALSE(walk.end.lost());
    ASSERT_EQ(walk.visits.size(), 2U);
    const Visit& visit = walk.visits.at("F2").front();
    EXPECT_EQ(visit.point, 5U);
    ASSERT_EQ(visit.turns.size(), 8U);
    const auto pair = pairOf(visit.turns);
    ASSERT_TRUE(pair);
    EXPECT_NEAR(pair->value, std::log(2.0), 0.001);
    EXPECT_NEAR(pairOf(walk.visits.at("F1").front().turns)->value, 0.0, 0.001);
}

/// Who makes the data of a point first gets other pages, so it must not be the same side in all pairs.
TEST(Walk, DrawsWhichSideComesToAPointFirst) {
    int olderFirst = 0;
    constexpr int pairs = 16;
    for (std::uint64_t pair = 1; pair <= pairs; ++pair) {
        const TestFolder meeting;
        const Walked walk = walked("", {1}, milliseconds(10000), pair, meeting.path(""));
        unsetenv("FAKE_MEETING");
        olderFirst += pairOf(walk.visits.at("F1").front().turns)->value < 0;
    }
    EXPECT_GT(olderFirst, 3);
    EXPECT_LT(olderFirst, pairs - 3);
}

struct Fault {
    const char* script;
    const char* loss;  ///< of the new side at F2; empty: the walk goes on
    Fate fate;         ///< of F2 then
    const char* functions;
};

class Faults : public testing::TestWithParam<Fault> {};

TEST_P(Faults, AreNamedAndTheWalkEndsOrGoesOn) {
    const Walked walk = walked(GetParam().script, allPoints, milliseconds(500));
    EXPECT_EQ(walk.end.losses[0], "");
    EXPECT_EQ(walk.end.losses[1], GetParam().loss);
    EXPECT_EQ(walk.end.function, *GetParam().loss != '\0' ? "F2" : "");
    EXPECT_EQ(walk.end.chances() > 2, std::string(GetParam().loss).find("signal 9") != std::string::npos);
    std::string functions;
    for (const auto& [function, visits] : walk.visits) {
        functions += function + " ";
        for (const Visit& visit : visits) {
            EXPECT_EQ(visit.fates[0], Fate());
            EXPECT_EQ(visit.fates[1], function == "F2" ? GetParam().fate : Fate());
        }
    }
    EXPECT_EQ(functions, GetParam().functions);
}

INSTANTIATE_TEST_SUITE_P(Rows, Faults,
                         testing::Values(Fault{"exit F2 3", "exited with status 3", {}, "F1 "},
                                         Fault{"abort F2", "killed by signal 6 (Aborted)", {}, "F1 "},
                                         Fault{"kill F2", "killed by signal 9 (Killed)", {}, "F1 "},
                                         Fault{"smash F2", "killed by signal 6 (Aborted)", {}, "F1 "},
                                         Fault{"hang F2", "no answer", {}, "F1 "},
                                         Fault{"nonsense F2", "says \"tick tock\"", {}, "F1 "},
                                         Fault{"signal F2", "", {0, "EXCPTFAIL"}, "F1 F2 F3 "},
                                         Fault{"status F2 -5", "", {-5, ""}, "F1 F2 F3 "}));

TEST(Instrument, ThatTakesNoTurnsIsRefused) {
    const TestFolder folder;
    const auto words = [&](const std::string& script) -> std::string {
        try {
            instrument(folder.library("side", script), milliseconds(300));
        } catch (const std::runtime_error& reason) {
            return std::string(reason.what()).substr(std::strlen(LAB_FAKE_INSTRUMENT));
        }
        return "";
    };
    EXPECT_EQ(words("version 2"), " takes turns by version 2, this program by version 1");
    EXPECT_EQ(words("dumb"), " takes no turns: exited with status 1: no turns here");
    EXPECT_EQ(words("deaf"), " takes no turns: no answer");
    EXPECT_THROW(Child({"/no/such/program", {}, {}}, milliseconds(100)), std::runtime_error);
}

/// Whether the process is there and not just waited for.
bool runs(pid_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    std::string state;
    return static_cast<bool>(stat >> number >> name >> state) && state != "Z";
}

TEST(Child, DoesNotOutliveItsDriver) {
    const TestFolder folder;
    const std::string library = folder.library("side", "hang F1");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t driver = fork();
    if (driver == 0) {
        const auto child = instrument(library);
        const pid_t process = child->process();
        [[maybe_unused]] const ssize_t size = write(ends[1], &process, sizeof process);
        pause();
    }
    pid_t process = -1;
    ASSERT_EQ(read(ends[0], &process, sizeof process), static_cast<ssize_t>(sizeof process));
    EXPECT_TRUE(runs(process));
    kill(driver, SIGKILL);
    waitpid(driver, nullptr, 0);
    for (int i = 0; i < 1000 && runs(process); ++i) {
        usleep(10000);
    }
    EXPECT_FALSE(runs(process));
    close(ends[0]);
    close(ends[1]);
}

TEST(TurnSize, FillsTheTurn) {
    const TurnShape shape{20, 50.0, 10};
    EXPECT_EQ(turnSize(shape, 13.0, 2600), (TurnSize{1000, 10}));
    EXPECT_EQ(turnSize(shape, 20000.0, 2600), (TurnSize{1, 6}));
    EXPECT_EQ(turnSize(shape, 1e9, 2600), (TurnSize{1, 1}));
}

TEST(LibraryCopies, VanishAlsoWhenTheirOwnerWasKilled) {
    const TestFolder folder;
    const std::string name = "libzyls.so.10";
    const std::vector<Original> library = {{name, folder.library("side", "") + "/" + name}};
    Random random{1};
    std::string kept;
    {
        const LibraryCopies copies({library, library}, random);
        kept = copies.folder(1);
        EXPECT_TRUE(std::filesystem::exists(kept + "/" + name));
        const LibraryCopies others({library, library}, random);  // leaves those of the living alone
        EXPECT_TRUE(std::filesystem::exists(kept));
    }
    EXPECT_FALSE(std::filesystem::exists(kept));
    const std::string abandoned =
        std::filesystem::path(kept).parent_path().parent_path() / "metrig-lab-killed";
    std::filesystem::create_directory(abandoned);
    const LibraryCopies copies({library, library}, random);
    EXPECT_FALSE(std::filesystem::exists(abandoned));
}

}  // namespace
}  // namespace lab
