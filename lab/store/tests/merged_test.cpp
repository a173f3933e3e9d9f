#include "store/merged.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "store/base.h"

namespace lab {
namespace {

class MergedStores : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(mkdtemp(m_folder.data()), nullptr); }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    static StoredHead head(const std::string& session, const std::string& kind,
                           const std::string& sha = "abc", const std::string& key = "-fF") {
        StoredHead head;
        head.settings = {{"session", session}, {"machine kind", kind}, {"margin", "0.01"}, {"seed", "1"}};
        head.machine = {{"processor", "Fine One"}};
        for (StoredSide& side : head.sides) {
            side.keys = {key};
            side.objects = {{"libzyls.so.10", "/a", "/b", sha, "", 64}};
        }
        head.points = {{"F1", {{"Len", "8"}}, "e", 1.0, true, true, {}},
                       {"F2", {{"Len", "8"}}, "e", 1.0, true, true, {}}};
        return head;
    }

    /// Visits of both points by the pairs from `first` to `last`, whose ticks tell the pair.
    static void visit(Store& store, int first, int last, std::int64_t ticks = 100) {
        for (int pair = first; pair <= last; ++pair) {
            for (const int point : {0, 1}) {
                store.addVisits(pair, {{point, false, {{Side::older, 0, 1, {ticks + pair}, 0, 0, 0.0}}, {}}});
            }
            store.addPair({pair, 1.0 * pair, 1.0, 0.0, 0.0});
        }
    }

    std::string stored(const std::string& name, const StoredHead& head, int pairs) const {
        Store store = Store::create(path(name), head);
        visit(store, 1, pairs);
        store.addWarning("the load is 2");
        store.finish();
        return path(name);
    }

    /// Pairs of each session, by its kind and in its order; the ticks must be the pair's own.
    static std::multimap<std::string, int> pairs(const std::string& merged) {
        std::multimap<std::string, int> result;
        for (const MergedSession& session : mergedSessions(merged)) {
            Store store = Store::openSession(merged, session.number);
            int visits = 0;
            store.eachVisit([&](int pair, StoredVisit&& visit) {
                ++visits;
                EXPECT_EQ(visit.turns.at(0).ticks.at(0), 100 + pair);
            });
            EXPECT_EQ(visits, 2 * static_cast<int>(store.pairs().size()));
            EXPECT_EQ(store.head().points.size(), 2);
            EXPECT_EQ(store.warnings().size(), 1);
            result.emplace(session.kind, static_cast<int>(store.pairs().size()));
        }
        return result;
    }

    std::string m_folder = testing::TempDir() + "merged_XXXXXX";
};

using Pairs = std::multimap<std::string, int>;

TEST_F(MergedStores, TakeEachPairOnce) {
    const std::string one = stored("1.db", head("s1", "a"), 3);
    const std::string two = stored("2.db", head("s2", "a"), 5);
    const std::string three = stored("3.db", head("s3", ""), 1);
    const std::string out = path("out.db");
    EXPECT_EQ(mergeStores(out, {one, two}).visits, 16);
    EXPECT_EQ(mergeStores(out, {two, three, one, three}).visits, 2);
    EXPECT_EQ(pairs(out), (Pairs{{"Fine One", 1}, {"a", 3}, {"a", 5}}));

    const std::string other = path("other.db");
    std::filesystem::copy_file(one, path("old 1.db"));
    {
        Store store = Store::open(one, true);
        visit(store, 4, 7);
        store.finish();
    }
    EXPECT_EQ(mergeStores(other, {path("old 1.db"), one, path("old 1.db"), out}).visits, 6 + 8 + 10 + 2);
    EXPECT_EQ(pairs(other), (Pairs{{"Fine One", 1}, {"a", 7}, {"a", 5}})) << "the store that went on counts";
    EXPECT_EQ(mergeStores(out, {other}).visits, 8) << "a merged store is a source too";
}

TEST_F(MergedStores, RefuseWhatDoesNotBelongTogether) {
    const std::string one = stored("1.db", head("s1", "a"), 2);
    const std::string out = path("out.db");
    mergeStores(out, {one});
    StoredHead margin = head("s4", "b");
    margin.settings[2].second = "0.02";
    std::filesystem::copy_file(one, path("fork.db"));
    std::filesystem::remove(one);
    {
        Store store = Store::open(path("fork.db"), true);
        visit(store, 3, 3);
        store.finish();
    }
    mergeStores(out, {path("fork.db")});
    {
        Store fork = Store::create(path("1.db"), head("s1", "a"));
        visit(fork, 1, 3, 500);
    }
    StoredHead measurement = head("s5", "a");
    measurement.kind = StoreKind::measurement;
    const std::pair<std::string, const char*> rows[] = {
        {stored("2.db", head("s2", "b", "abd"), 1), "libzyls.so.10 is another (SHA-256 abd"},
        {stored("3.db", head("s3", "a", "abc", "-fG"), 1), "has other keys (\"-fG\" and \"-fF\")"},
        {stored("4.db", margin, 1), "margin"},
        {path("1.db"), "holds pair 1 of a session that is there already, with other turns"},
        {stored("5.db", measurement, 1), "holds a measurement of one build"},
        {path("none.db"), "no such file"},
        {out, "into itself"},
    };
    for (const auto& [store, words] : rows) {
        try {
            mergeStores(out, {store});
            ADD_FAILURE() << store;
        } catch (const std::runtime_error& reason) {
            EXPECT_NE(std::string(reason.what()).find(words), std::string::npos) << reason.what();
        }
        EXPECT_THROW(mergeStores(path("new.db"), {path("fork.db"), store == out ? path("2.db") : store}),
                     std::runtime_error);
    }
    EXPECT_EQ(pairs(out), (Pairs{{"a", 3}}));
    EXPECT_THROW(mergeStores(path("2.db"), {path("fork.db")}), std::runtime_error)
        << "a plain store is no target";
    EXPECT_THROW(Store::open(out, true), std::runtime_error);
    EXPECT_THROW(Store::checkPath(out, StoreKind::comparison), std::runtime_error);
}

TEST_F(MergedStores, AFileThatAKillLeftWithoutTablesIsTaken) {
    Database(path("begun.db"), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)
        .run("PRAGMA journal_mode = WAL; VACUUM");
    ASSERT_GT(std::filesystem::file_size(path("begun.db")), 0);
    Store::create(path("begun.db"), head("s1", "measurement"));
    EXPECT_EQ(Store::kindOf(path("begun.db")), StoreKind::comparison) << "whatever its machine is called";
}

}  // namespace
}  // namespace lab
