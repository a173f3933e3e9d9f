#include "store/store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "store/turncode.h"

namespace lab {
namespace {

bool equal(const Turn& a, const Turn& b) {
    return a.side == b.side && a.epoch == b.epoch && a.calls == b.calls && a.ticks == b.ticks &&
           a.empty == b.empty && a.loop == b.loop && std::abs(a.seconds - b.seconds) < 1e-6;
}

const std::vector<Turn> someTurns = {{Side::older, 0, 1000, {100568, 100542, 0}, 52, -26, 0.5},
                                     {Side::newer, 300, 1, {INT64_MAX}, INT64_MIN, 1, 1e5},
                                     {Side::older, 1, 1, {}, 0, 0, 0.0}};

TEST(TurnCode, BringsTurnsBack) {
    const auto turns = decodeTurns(encodeTurns(someTurns));
    ASSERT_TRUE(turns);
    EXPECT_TRUE(std::equal(turns->begin(), turns->end(), someTurns.begin(), someTurns.end(), equal));
}

TEST(TurnCode, RefusesWhatIsCut) {
    const std::string bytes = encodeTurns(std::span(someTurns).first(1));
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        EXPECT_FALSE(decodeTurns(bytes.substr(0, size))) << size;
    }
    EXPECT_FALSE(decodeTurns(std::string(11, '\xFF')));
}

class Stores : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(mkdtemp(m_folder.data()), nullptr);
        m_path = m_folder + "/run.db";
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    static StoredHead head() {
        StoredHead head;
        head.settings = {{"seed", "7"}};
        head.machine = {{"processor", "Fine One"}, {"kernel", "K"}};
        head.sides[1].name = "new";
        head.sides[1].keys = {"-TSSE2", "-dVectorLength=64; 512"};
        head.sides[1].objects = {{"libzyls.so.10", "/a", "/b", "abc", "def", 32}};
        head.points = {{"F1", {{"Len", "8"}, {"Text", "a b"}}, "e", 8.5, true, true, {"same machine code"}},
                       {"F1", {}, "b", 1.0, true, false, {}}};
        return head;
    }

    std::string m_folder = testing::TempDir() + "store_XXXXXX";
    std::string m_path;
};

TEST_F(Stores, GiveBackWhatWasKept) {
    Store store = Store::create(m_path, head());
    store.addVisits(2, {{1, true, someTurns, {Fate{}, Fate{5, "no answer"}}}, {0, false, {}, {}}});
    store.addPair({2, 1.5, 1.1, 0.25, 3.0});
    store.addFate("F1", {Fate{}, Fate{0, "exit"}});
    store.addWarning("load");
    store.addWarning("load");

    Store other = Store::open(m_path, false);
    const StoredHead kept = other.head();
    EXPECT_EQ(kept.settings, head().settings);
    EXPECT_EQ(kept.machine, head().machine);
    EXPECT_EQ(kept.sides[1].keys, head().sides[1].keys);
    EXPECT_EQ(kept.sides[1].objects.at(0).mapped, "/b");
    EXPECT_EQ(kept.points.at(0).parameters, head().points[0].parameters);
    EXPECT_EQ(kept.points.at(0).marks, head().points[0].marks);
    EXPECT_FALSE(kept.points.at(1).newer);
    EXPECT_EQ(kept.points.at(0).divisor, 8.5);
    std::vector<StoredVisit> visits;
    other.eachVisit([&](int pair, StoredVisit&& visit) {
        EXPECT_EQ(pair, 2);
        visits.push_back(std::move(visit));
    });
    ASSERT_EQ(visits.size(), 2U);
    EXPECT_TRUE(visits[1].fresh);
    EXPECT_EQ(visits[1].turns.size(), someTurns.size());
    EXPECT_EQ(visits[1].fates[1], (Fate{5, "no answer"}));
    EXPECT_EQ(other.pointsVisited(2), (std::set<int>{0, 1}));
    EXPECT_EQ(other.pairs().at(0).load, 3.0);
    EXPECT_EQ(other.fates().at(0).second[1].death, "exit");
    EXPECT_EQ(other.warnings().size(), 1U);
}

TEST_F(Stores, CountNoVisitTwice) {
    Store store = Store::create(m_path, head());
    store.addVisits(1, {{0, false, someTurns, {}}});
    EXPECT_THROW(store.addVisits(1, {{1, false, someTurns, {}}, {0, false, someTurns, {}}}),
                 std::runtime_error);
    EXPECT_EQ(store.pointsVisited(1), std::set<int>{0});
}

TEST_F(Stores, TakeThePlaceOfFinishedOnesAlone) {
    {
        Store store = Store::create(m_path, head());
        EXPECT_THROW(Store::open(m_path, true), std::runtime_error) << "two that write";
        EXPECT_THROW(Store::create(m_path, head()), std::runtime_error);
    }
    EXPECT_THROW(Store::create(m_path, head()), std::runtime_error) << "not finished";
    {
        Store store = Store::open(m_path, true);
        store.addVisits(1, {{0, false, someTurns, {}}});
        store.finish();
    }
    EXPECT_FALSE(std::filesystem::exists(m_path + "-wal"));
    EXPECT_TRUE(Store::create(m_path, head()).pointsVisited(1).empty());

    const std::string other = m_folder + "/other";
    EXPECT_THROW(Store::open(other, false), std::runtime_error);
    std::ofstream(other) << "a text of somebody";
    EXPECT_THROW(Store::create(other, head()), std::runtime_error);
    EXPECT_EQ(std::filesystem::file_size(other), 18U);
    EXPECT_THROW(Store::checkPath(m_folder + "/no/such", StoreKind::comparison), std::runtime_error);
}

}  // namespace
}  // namespace lab
