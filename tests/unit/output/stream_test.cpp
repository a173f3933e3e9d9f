#include <gtest/gtest.h>

#include "mr.h"
#include "support/captured_output.h"
#include "support/temp_folder.h"

namespace {

TEST(MessageStream, PassesByBitAndAsksByNumber) {
    static constexpr struct {
        OutputLevel mask;
        MessageLevel level;
        bool asked;
        const char* text;
    } rows[] = {
        {7, MSG_INFO, false, ""}, {7, MSG_WARN, true, "x"}, {4, MSG_ERR, true, ""},  {39, MSG_INFO, true, ""},
        {39, MSG_MEM, true, "x"}, {1, MSG_ERR, true, "x"},  {0, MSG_ERR, false, ""},
    };
    for (const auto& row : rows) {
        CapturedOutput output(row.mask);
        const MessageLevel before = g_ostrm.msgLevel();
        EXPECT_EQ(g_ostrm.beginMessage(row.level), row.asked) << row.mask << " " << row.level;
        if (row.asked) {
            g_ostrm << "x";
            g_ostrm.endMessage();
        }
        EXPECT_EQ(output.text(), row.text) << row.mask << " " << row.level;
        EXPECT_EQ(g_ostrm.msgLevel(), before);
    }
}

TEST(MessageStream, LevelsNest) {
    mrOStream stream;
    EXPECT_EQ(stream.outLevel(), MSG_ERR);
    EXPECT_EQ(stream.msgLevel(), MSG_PERF);
    stream.setMsgLevel(MSG_INFO);
    stream << MSG_WARN << "nobody reads this";
    EXPECT_EQ(stream.msgLevel(), MSG_WARN);
    stream << MSG_END;
    EXPECT_EQ(stream.msgLevel(), MSG_INFO);
    stream << MSG_END_FLUSH;
    EXPECT_EQ(stream.msgLevel(), MSG_PERF);
    stream.restoreMsgLevel();
    EXPECT_EQ(stream.msgLevel(), MSG_ERR);
    stream.restoreMsgLevel();
    EXPECT_EQ(stream.msgLevel(), MSG_ERR);
    EXPECT_TRUE(mrUStream().passes());
}

TEST(MessageStream, SendsToEveryFileInOrder) {
    MemoryFile first;
    MemoryFile second;
    mrOStream stream;
    stream << MSG_ERR << "before any file ";
    stream.append(first.stream());
    stream << "one ";
    stream.append(second.stream());
    stream << mrString("two") << MSG_END << "level 4";
    EXPECT_EQ(first.text(), "one two");
    EXPECT_EQ(second.text(), "two");
    stream.close();
    stream.close();
    EXPECT_FALSE(first.stream()->isOpen());
}

TEST(FileStream, TruncatesOrAppends) {
    const TempFolder folder;
    for (const bool append : {false, true, true, false, true}) {
        mrOStream stream;
        ASSERT_TRUE(stream.addStream(folder.path("out.txt").c_str(), append));
        stream << MSG_ERR << "x" << MSG_END;
    }
    EXPECT_EQ(folder.content("out.txt"), "xx");
}

TEST(FileStream, SaysWhatItCannotOpen) {
    static constexpr struct {
        const char* name;
        int mode;
        const char* text;
    } rows[] = {
        {"/no/f", IO_READ | IO_NOPATH, "-- Can't open file /no/f to read: \n"},
        {"/no/f", IO_READ | IO_WRITE | IO_NOPATH, "-- Can't open file /no/f to read: \n"},
        {"/no/f", IO_WRITE | IO_APPEND | IO_NOPATH, "-- Can't open file /no/f to write: \n"},
        {"/no/f", IO_BINARY | IO_NOPATH, "-- Can't open file /no/f: \n"},
        {"", IO_READ, "-- Can't open file. Wrong filename (NULL)  to read: \n"},
        {"", IO_NOPATH, "-- Can't open file. Wrong filename (NULL) : \n"},
    };
    for (const auto& row : rows) {
        CapturedOutput output(MSG_ERR);
        EXPECT_FALSE(io_stream(row.name, row.mode, false).isOpen());
        EXPECT_FALSE(io_stream(row.name, row.mode, true).isOpen());
        EXPECT_EQ(output.text(), row.text);
    }
    CapturedOutput output(MSG_ERR);
    mrOStream stream;
    EXPECT_FALSE(stream.addStream("/no/f", false));
    EXPECT_TRUE(stream.empty());
    EXPECT_EQ(output.text(), "-- Can't open file /no/f to write: \n");
}

TEST(FileStream, RelativeNamesGetTheSessionsDirectories) {
    const mrString inBefore = mrSession::m_inDir;
    const mrString outBefore = mrSession::m_outDir;
    const TempFolder in;
    const TempFolder out;
    in.file("file", "text\n");
    mrSession::setInDir(in.path().c_str());
    mrSession::setOutDir(out.path().c_str());
    mrString line;
    EXPECT_TRUE(i_stream("file", IO_READ, false).getline(line));
    EXPECT_EQ(str(line), "text");
    EXPECT_TRUE(o_stream("file", IO_WRITE, false).isOpen());
    EXPECT_EQ(out.count(), 1);
    EXPECT_FALSE(i_stream("file", IO_READ | IO_NOPATH, false).isOpen());
    mrSession::m_inDir = inBefore;
    mrSession::m_outDir = outBefore;
}

}  // namespace
