#include "history/historystore.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "history/historytable.h"
#include "store/sqlite.h"

namespace lab {
namespace {

class Histories : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(mkdtemp(m_folder.data()), nullptr);
        m_path = m_folder + "/history.db";
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    /// A comparison of builds with these bytes.
    static JoinedComparison joined(const std::string& older, const std::string& newer, int run = 0) {
        JoinedComparison joined;
        joined.sides[0].identity = older + "0123456789abcdef";
        joined.sides[1].identity = newer + "0123456789abcdef";
        joined.sides[1].buildIds = {"id-of-" + newer};
        joined.method = {"Fine One", "", "50 us, 10 blocks", 64};
        joined.points = {{"F1", "Len=8", "e"}, {"F2", "", "b"}};
        joined.entry.identity = older + newer + std::to_string(run);
        joined.entry.findings.push_back(
            {0, Verdict::slower, Reason::none, 24, 0.1, 0.01, 20, 21, 100, 110, true});
        joined.entry.findings.push_back({1, Verdict::unsure, Reason::crash, 0, 0, -1, 0, 0, 0, 0, false});
        return joined;
    }

    Joining add(const JoinedComparison& comparison, const std::string& label,
                const std::string& oldLabel = "") {
        return addToHistory(m_path, comparison, {label, oldLabel, "", "2026-11-23"});
    }

    std::string labels() const {
        std::string text;
        for (const BuildEntry& build : readHistory(m_path).builds) {
            text += (text.empty() ? "" : " ") + build.label;
        }
        return text;
    }

    std::string m_folder = testing::TempDir() + "history_XXXXXX";
    std::string m_path;
};

TEST_F(Histories, GiveBackWhatWasAdded) {
    EXPECT_TRUE(addToHistory(m_path, joined("a", "b"), {"two", "one", "cafe12", "2026-11-23"}).isNew);
    const History history = readHistory(m_path);
    EXPECT_EQ(labels(), "one two");
    EXPECT_EQ(history.builds[1].revision, "cafe12");
    EXPECT_EQ(history.methods[0], joined("a", "b").method);
    EXPECT_EQ(history.points, joined("a", "b").points);
    const ComparisonEntry& comparison = history.comparisons.at(0);
    EXPECT_EQ(comparison.older, 0);
    EXPECT_EQ(comparison.newer, 1);
    ASSERT_EQ(comparison.findings.size(), 2U);
    EXPECT_EQ(comparison.findings[0].verdict, Verdict::slower);
    EXPECT_EQ(comparison.findings[0].energy, 21);
    EXPECT_TRUE(comparison.findings[0].sameCode);
    EXPECT_EQ(comparison.findings[1].reason, Reason::crash);
    EXPECT_FALSE(comparison.findings[1].measured());
    EXPECT_EQ(findBuild(history, "one"), 0);
    EXPECT_EQ(findBuild(history, "cafe"), 1);
    EXPECT_EQ(findBuild(history, "id-of-b"), 1);
    EXPECT_EQ(findBuild(history, "caf"), -1) << "too short";
}

TEST_F(Histories, TakeAComparisonOnce) {
    add(joined("a", "b"), "two", "one");
    EXPECT_FALSE(add(joined("a", "b"), "two").isNew);
    EXPECT_EQ(readHistory(m_path).comparisons.size(), 1U);
    EXPECT_EQ(readHistory(m_path).comparisons[0].findings.size(), 2U);
    EXPECT_TRUE(add(joined("a", "b", 1), "two").isNew) << "the same builds once more";
    EXPECT_EQ(readHistory(m_path).comparisons.size(), 2U);
    EXPECT_EQ(labels(), "one two");
}

TEST_F(Histories, PutBuildsInOrder) {
    add(joined("b", "c"), "three");
    EXPECT_EQ(labels(), "b0123456789a three");
    add(joined("b", "c", 1), "", "two");
    EXPECT_EQ(labels(), "two three");
    add(joined("a", "c"), "three", "one");
    EXPECT_EQ(labels(), "one two three") << "an old release";
    add(joined("d", "e"), "five", "four");
    EXPECT_EQ(labels(), "one two three four five");
    EXPECT_EQ(add(joined("e", "c"), "six").older, "five");
    EXPECT_EQ(labels(), "one two three four five six") << "the bytes of three once more";
    EXPECT_EQ(add(joined("c", "g"), "seven").older, "six");
}

TEST_F(Histories, KeepFiguresBesideComparisons) {
    const auto measured = [](const std::string& build, double clocks) {
        JoinedMeasurement joined;
        joined.build.identity = build + "0123456789abcdef";
        joined.points = {{"F2", "", "b"}, {"F1", "Len=8", "e"}};
        joined.entry.identity = build + std::to_string(clocks);
        joined.entry.method = {"Fine One", "", "", 64};
        joined.entry.processes = 10;
        joined.entry.figures = {{0, 7, 7, 7}, {1, clocks, clocks - 1, clocks + 1}};
        return joined;
    };
    add(joined("a", "b"), "two", "one");
    // a history from before there were measurements
    Database(m_path, SQLITE_OPEN_READWRITE).run("DROP TABLE measurement; DROP TABLE figure");
    EXPECT_TRUE(readHistory(m_path).measurements.empty());

    EXPECT_EQ(addToHistory(m_path, measured("b", 12), {"", "", "", "2026-11-24"}).newer, "two");
    EXPECT_EQ(addToHistory(m_path, measured("a", 11), {"one", "", "cafe12", "2026-11-25"}).newer, "one");
    EXPECT_FALSE(addToHistory(m_path, measured("a", 11), {}).isNew);
    JoinedMeasurement elsewhere = measured("a", 9);
    elsewhere.entry.method.bits = 32;
    addToHistory(m_path, elsewhere, {});
    addToHistory(m_path, measured("z", 99), {"new", "", "", "2026-11-26"});
    EXPECT_THROW(addToHistory(m_path, measured("z", 98), {"one", "", "", ""}), std::runtime_error);
    EXPECT_EQ(labels(), "one two new");

    const History history = readHistory(m_path);
    EXPECT_EQ(history.builds[0].revision, "cafe12");
    const Overview overview = overviewOf(history, {});
    EXPECT_EQ(overview.builds, (std::vector<int>{0, 1})) << "no comparison has the new one";
    const std::vector<MeasuredFigure> figures = figuresOf(overview)[0];
    std::string said;
    for (const MeasuredFigure& its : figures) {
        said += history.builds[static_cast<std::size_t>(its.entry->build)].label + its.entry->day + " " +
                std::to_string(static_cast<int>(its.figure->high)) + ", ";
    }
    EXPECT_EQ(said, "one2026-11-25 12, two2026-11-24 13, new2026-11-26 100, ");
    EXPECT_NE(historyTable(overview, true, false).find("Len=8 (99.00 clocks per e at new)"),
              std::string::npos);
    const std::string table = figuresTable(history, {"two", "F1", 0});
    EXPECT_NE(table.find("12.00 per e  11.00 .. 13.00  two, 2026-11-24"), std::string::npos) << table;
    EXPECT_EQ(table.find("one"), std::string::npos);
    EXPECT_THROW(figuresTable(history, {"2026-11-27", "", 0}), std::runtime_error);
}

TEST_F(Histories, RefuseAndLoseNothing) {
    add(joined("a", "b"), "two", "one");
    EXPECT_THROW(add(joined("b", "c"), "one"), std::runtime_error) << "another build's label";
    EXPECT_THROW(add(joined("b", "c"), "three", "deux"), std::runtime_error) << "two labels for one";
    EXPECT_THROW(add(joined("b", "b"), ""), std::runtime_error);
    EXPECT_EQ(labels(), "one two");
    EXPECT_EQ(readHistory(m_path).comparisons.size(), 1U);

    const std::string other = m_folder + "/other";
    EXPECT_THROW(readHistory(other), std::runtime_error);
    std::ofstream(other) << "a text of somebody";
    EXPECT_THROW(addToHistory(other, joined("a", "b"), {}), std::runtime_error);
    EXPECT_EQ(std::filesystem::file_size(other), 18U);
    EXPECT_THROW(addToHistory(m_folder + "/no/such", joined("a", "b"), {}), std::runtime_error);
}

}  // namespace
}  // namespace lab
