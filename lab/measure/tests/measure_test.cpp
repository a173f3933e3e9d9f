/// Whole measurements with an instrument that tells what its library's text says.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <set>

#include "compare/sides.h"
#include "machine/random.h"
#include "measure/measurement.h"
#include "measure/storedmeasurement.h"
#include "turns/tests/fake_library.h"

namespace lab {
namespace {

const Watcher nobody{[](const Progress&) {}, [](const std::string&) {}, [](const std::string&) {}};

class Measurements : public testing::Test {
  protected:
    MeasureSettings settings(const std::string& script) {
        MeasureSettings settings;
        settings.folder = m_folder.library("lib", script);
        settings.instrument = LAB_FAKE_INSTRUMENT;
        settings.seed = 42;
        settings.patience = 0.5;
        settings.wait = false;
        settings.processes = 4;
        settings.shape.epochs = 3;
        return settings;
    }

    MeasurementReport measured(const MeasureSettings& settings, const std::string& name = "run.db") {
        Store store = beginMeasurement(settings, m_folder.path(name), nobody);
        continueMeasurement(store, nobody);
        return measurementOf(store);
    }

    TestFolder m_folder;
};

/// Of each function: "=" a point with the figure it should have, "?" another one, "x" died, "s" a status
/// beside.
std::string figures(const MeasurementReport& report) {
    std::string text;
    for (std::size_t i = 0; i < report.points.size(); ++i) {
        const MeasuredPoint& point = report.points[i];
        if (i > 0 && point.function != report.points[i - 1].function) {
            text += " ";
        }
        const double expected = 100 + std::stod(point.parameters.front().second);
        const bool right = point.figure && std::abs(point.figure->floor - expected) < 0.01 * expected &&
                           point.figure->turns == 12;
        text += !point.fate.death.empty() ? 'x' : point.fate.status != 0 ? 's' : right ? '=' : '?';
    }
    return text;
}

TEST_F(Measurements, GoOnBehindWhatDies) {
    const struct {
        const char* script;
        const char* figures;
    } rows[] = {
        {"", "=== === ==="},
        {"exit F2 3", "=== xxx ==="},
        {"signal F1", "xxx === ==="},
        {"hang F3", "=== === xxx"},
        {"smash F2", "=== xxx"},
        {"status F2 5", "=== sss ==="},
        {"status F2 -5", "=== sss ==="},
    };
    for (const auto& row : rows) {
        const MeasurementReport report = measured(settings(row.script));
        EXPECT_EQ(figures(report), row.figures) << row.script;
        EXPECT_TRUE(report.finished);
    }
    EXPECT_THROW(measured(settings("without F1\nwithout F2\nwithout F3")), std::runtime_error);
}

TEST_F(Measurements, KilledAtAnyMomentHaveEachVisitOnce) {
    const std::string path = m_folder.path("killed.db");
    beginMeasurement(settings(""), path, nobody);
    setenv("FAKE_DELAY_US", "500", 1);
    Random random{2};
    int kills = 0;
    for (bool finished = false; !finished && kills < 20;) {
        const pid_t driver = fork();
        if (driver == 0) {
            Store store = Store::open(path, true, StoreKind::measurement);
            continueMeasurement(store, nobody);
            std::_Exit(0);
        }
        usleep(static_cast<useconds_t>(20000 + random.below(100000)));
        kills += kill(driver, SIGKILL) == 0 ? 1 : 0;
        int status = 0;
        waitpid(driver, &status, 0);
        finished = WIFEXITED(status);
    }
    unsetenv("FAKE_DELAY_US");
    Store store = Store::open(path, true, StoreKind::measurement);
    continueMeasurement(store, nobody);
    EXPECT_GT(kills, 1);
    EXPECT_EQ(figures(measurementOf(store)), "=== === ===");
}

TEST_F(Measurements, BesideAnEarlierOne) {
    measured(settings("slow F1 1.5"), "earlier.db");
    MeasureSettings now = settings("slow F2 1.5");
    now.against = m_folder.path("earlier.db");
    now.processes = 3;
    const MeasurementReport report = measured(now);
    ASSERT_TRUE(report.earlier);
    EXPECT_NE(report.earlier->caveats.back().find("4 processes"), std::string::npos);
    EXPECT_EQ(report.points.at(0).beside->mark, Verdict::faster);
    EXPECT_EQ(report.points.at(3).beside->mark, Verdict::slower);
    EXPECT_NEAR(report.points.at(3).beside->ratio, 1.5, 0.01);
    EXPECT_EQ(report.points.at(6).beside->mark, Verdict::same);

    MeasurementReport elsewhere = report;
    elsewhere.machine.processor = "another";
    MeasurementReport mine = report;
    EXPECT_THROW(putBeside(mine, elsewhere, "x.db"), NotComparable);
}

TEST_F(Measurements, AndComparisonsAreToldApart) {
    const std::string path = m_folder.path("run.db");
    measured(settings(""));
    EXPECT_EQ(Store::kindOf(path), StoreKind::measurement);
    const auto words = [](const auto& act) -> std::string {
        try {
            act();
        } catch (const std::runtime_error& reason) {
            return reason.what();
        }
        return "";
    };
    const std::string kind = ": holds a measurement of one build, not a comparison of two builds";
    EXPECT_EQ(words([&] { Store::open(path, false); }), path + kind);
    EXPECT_EQ(words([&] { Store::checkPath(path, StoreKind::comparison); }),
              path + kind + "; take another name");
}

}  // namespace
}  // namespace lab
