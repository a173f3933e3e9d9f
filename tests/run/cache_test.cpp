#include "tables.h"

namespace {

struct CacheRow {
    const char* cacheSize;  ///< null: what the machine has
    const char* test;
    const char* comments;  ///< of the table's rows
    const char* sizes;
    const char* word;
    const char* console;
};

/// The cells up to their first blank, behind one another.
std::string joined(const Cells& cells) {
    std::string text;
    for (const std::string& cell : cells) {
        text += cell.substr(0, cell.find(' ')) + " ";
    }
    return text;
}

class Cache : public testing::TestWithParam<CacheRow> {};

TEST_P(Cache, MeasuresInsideAndOutside) {
    const CacheRow& row = GetParam();
    const WorkFolder folder;
    Invocation what = {.arguments = {"-B", "-C", "-r", "-u", "-c1", "-LPERF", "-nmetrig",
                                     std::string("-t") + row.test, "-l" + folder.path()},
                       .program = "metrig-cache"};
    if (row.cacheSize != nullptr) {
        what.environment = {"LD_PRELOAD=" METRIG_LIB_DIR "/libcache_size.so",
                            std::string("METRIG_CACHE_SIZE=") + row.cacheSize};
    }
    const Outcome outcome = run(what);
    expectCleanEnd(outcome);
    const Table table(folder.content("metrig.csv"));
    EXPECT_EQ(joined(table.column(CommentColumn)), row.comments);
    if (row.sizes != nullptr) {
        EXPECT_EQ(joined(table.column(3)), row.sizes);
    }
    expectFigures(table);
    const Table summary(folder.content("metrig_sum.csv"));
    ASSERT_EQ(summary.rows.size(), 1U);
    EXPECT_EQ(summary.rows[0][WordColumn], row.word);
    EXPECT_TRUE(holds(outcome.output, row.console)) << outcome.output;
}

constexpr CacheRow rows[] = {
    {"4096", "TimsCacheLength", "inCache outofCache ", "512 8192 ", "OK",
     "      inCache try: cacheParm=64 objectSize=64 < 409\n      inCache try: cacheParm=256 objectSize=256 < "
     "409\n"
     "inCache:length=512 \n"},
    // A size without a text leaves the two lines with equal parameters, which is noted.
    {"4096", "TimsCacheArea", "inCache outofCache ", nullptr, "DATAWRN",
     "      outofCache try: cacheParm= objectSize=64 < 4300\n"},
    {"0", "TimsCacheLength", "", "", "DATAFAIL", "-- Fail to allocate inCache data\n"},
    {"1073741824", "TimsCacheLength", "inCache ", "134217728 ", "DATAFAIL",
     "-- Fail to allocate outofCache data\n"},
    {nullptr, "TimsCacheLength", "inCache outofCache ", nullptr, "OK", "outofCache:length="},
};

INSTANTIATE_TEST_SUITE_P(Sizes, Cache, testing::ValuesIn(rows));

}  // namespace
