#include "tables.h"

namespace {

/// The cells up to their first blank, one after another.
std::string joined(const Cells& cells) {
    std::string text;
    for (const std::string& cell : cells) {
        text += cell.substr(0, cell.find(' ')) + " ";
    }
    return text;
}

// Two tests, of a length and of an area.
TEST(Cache, MeasuresInsideAndOutside) {
    const struct {
        const char* cacheSize;
        const char* tests;
        const char* comments;  ///< of the table's rows
        const char* sizes;
        const char* words;
        const char* console;
    } rows[] = {
        // A size without a text leaves the two lines of the area with equal parameters, which is noted.
        {"4096", "-tTimsCache", "inCache outofCache inCache outofCache ", "512 8192 - - ", "OK DATAWRN ",
         "      inCache try: cacheParm=64 objectSize=64 < 409\n"
         "      inCache try: cacheParm=256 objectSize=256 < 409\ninCache:length=512 \n"},
        {"0", "-tTimsCache", "", "", "DATAFAIL DATAFAIL ", "-- Fail to allocate inCache data\n"},
        {"1073741824", "-tTimsCacheLength", "inCache ", "134217728 ", "DATAFAIL ",
         "-- Fail to allocate outofCache data\n"},
    };
    for (const auto& row : rows) {
        const WorkFolder folder;
        const Outcome outcome = run({.arguments = {"-B", "-C", "-r", "-u", "-c1", "-LPERF", "-nmetrig",
                                                   row.tests, "-l" + folder.path()},
                                     .environment = {"LD_PRELOAD=" METRIG_LIB_DIR "/libcache_size.so",
                                                     std::string("METRIG_CACHE_SIZE=") + row.cacheSize},
                                     .program = "metrig-cache"});
        expectCleanEnd(outcome);
        const Table table(folder.content("metrig.csv"));
        expectFigures(table);
        EXPECT_EQ(joined(table.column(CommentColumn)), row.comments);
        EXPECT_EQ(joined(table.column(3)), row.sizes);
        EXPECT_EQ(joined(Table(folder.content("metrig_sum.csv")).column(WordColumn)), row.words);
        EXPECT_TRUE(holds(outcome.output, row.console)) << outcome.output;
    }
}

}  // namespace
