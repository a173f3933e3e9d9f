#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>

#include "session/mr.h"
#include "stream/mrtrace.h"
#include "support/captured_output.h"
#include "support/replaced.h"
#include "support/temp_folder.h"

namespace {

TEST(MessageStream, PassesByBitAndAsksByNumber) {
    static constexpr std::tuple<OutputLevel, MessageLevel, bool, const char*> rows[] = {
        {7, MSG_INFO, false, ""}, {7, MSG_WARN, true, "x"}, {4, MSG_ERR, true, ""},
        {39, MSG_INFO, true, ""}, {39, MSG_MEM, true, "x"}, {0, MSG_ERR, false, ""},
    };
    for (const auto& [mask, level, asked, text] : rows) {
        CapturedOutput output(mask);
        EXPECT_EQ(g_ostrm.beginMessage(level), asked) << mask << " " << level;
        if (asked) {
            g_ostrm << "x" << MSG_END;
        }
        EXPECT_EQ(output.text(), text) << mask << " " << level;
    }
}

TEST(FileStream, SaysWhatItCannotOpen) {
    CapturedOutput output(MSG_ERR);
    EXPECT_FALSE(io_stream("/no/f", IO_BINARY | IO_NOPATH, true).isOpen());
    EXPECT_FALSE(io_stream("", IO_READ, true).isOpen());
    EXPECT_FALSE(io_stream("", IO_READ, false).isOpen());
    EXPECT_EQ(output.text(),
              "-- Can't open file /no/f: \n-- Can't open file. Wrong filename (NULL)  to read: \n");
}

TEST(FileStream, ReadsLinesOfAnyLength) {
    const TempFolder folder;
    // 511 characters are read at a time; the last line has no end
    const std::size_t lengths[] = {0, 510, 511, 512, 1021, 1022, 5000, 511};
    std::string text;
    for (const std::size_t length : lengths) {
        text += std::string(length, 'x') + "\n";
    }
    text.pop_back();
    i_stream file(folder.file("lines", text), IO_READ | IO_NOPATH, true);
    mrString line = "before";
    for (const std::size_t length : lengths) {
        EXPECT_TRUE(file.getline(line));
        EXPECT_EQ(str(line), std::string(length, 'x'));
    }
    EXPECT_FALSE(file.getline(line));
}

TEST(OutputFiles, KeepWhatIsThereUntilTextComes) {
    // The content, whether to append, the text that is written twice, and the content then.
    static constexpr std::tuple<const char*, bool, const char*, const char*> rows[] = {
        {"old\n", false, "", "old\n"},   {"old\n", false, "x\n", "x\nx\n"}, {"torn", true, "", "torn"},
        {"torn", true, "x", "torn\nxx"}, {"old\n", true, "x", "old\nxx"},   {"", true, "x", "xx"},
    };
    const TempFolder folder;
    for (const auto& [before, append, text, after] : rows) {
        mrUStream table;
        ASSERT_TRUE(table.addStream(folder.file("table", before), append));
        for (int i = 0; i < 2; ++i) {
            table << text;
            table.flush();
        }
        EXPECT_EQ(folder.content("table"), after) << before << append;
    }
}

TEST(OutputFiles, AreWrittenByOneKeyOfOneRun) {
    const TempFolder folder;
    const mrString name = folder.file("table", "old");
    symlink(name.c_str(), folder.path("link").c_str());
    mrUStream summary;
    CapturedOutput output(MSG_ERR);
    for (const char* other : {"table", "link"}) {
        mrUStream listing;
        EXPECT_TRUE(listing.addStream(name, false));
        listing << "begun";
        EXPECT_FALSE(summary.addStream(folder.path(other).c_str(), true));
        listing.close();
        EXPECT_EQ(folder.content("table"), "old");
    }
    const i_stream another(name, IO_READ | IO_NOPATH, true);
    flock(fileno(another.file()), LOCK_EX);
    EXPECT_FALSE(summary.addStream(name, false));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(summary.addStream("/dev/null", false)) << "any number may write there";
    }
    EXPECT_EQ(replaced(output.text(), folder.path(), ""),
              "-- Can't write file table: two keys name it\n-- Can't write file link: two keys name it\n"
              "-- Can't write file table: another run writes it\n");
}

TEST(OutputFiles, GetWholeLinesWhereThereIsRoomAgain) {
    const TempFolder folder;
    mrUStream table;
    ASSERT_TRUE(table.addStream(folder.file("table", ""), false));
    CapturedOutput output(MSG_ERR);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit limit = before;
    std::string lines;
    for (const unsigned size : {8U, 20U, 1000U}) {
        limit.rlim_cur = size;
        setrlimit(RLIMIT_FSIZE, &limit);
        table << "one line\nthe next\n";
        table.flush();
        lines += "one line\nthe next\n";
        EXPECT_EQ(folder.content("table"), lines.substr(0, size));
    }
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(replaced(output.text(), folder.path(), ""), "-- Can't write file table: File too large\n");
}

TEST(Trace, IndentsByTheDepthAndRecoversIt) {
    CapturedOutput output(MSG_TRACE);
    mrTrace trace;
    trace.traceOut("x");
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceOut("a");  // closes what was left open inside
    trace.traceIn("a");
    trace.traceOut("x");  // unknown: shortens the indent alone
    EXPECT_EQ(str(trace.getCurName()), "a");
    trace.traceIn("c");
    const std::string lines =
        "***** trace out of x\n****** trace into   a\n******* trace into   b\n******* trace out of a\n"
        "****** trace into   a\n****** trace out of x\n****** trace into   c\n";
    EXPECT_EQ(output.text(), lines);
    EXPECT_EQ(str(trace.text()), lines);
}

}  // namespace
