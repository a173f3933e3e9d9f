#include <gtest/gtest.h>

#include "mr.h"
#include "support/captured_output.h"

namespace {

TEST(MessageStream, PassesByBitAndAsksByNumber) {
    static constexpr struct {
        OutputLevel mask;
        MessageLevel level;
        bool asked;
        const char* text;
    } rows[] = {
        {7, MSG_INFO, false, ""}, {7, MSG_WARN, true, "x"}, {4, MSG_ERR, true, ""},
        {39, MSG_INFO, true, ""}, {39, MSG_MEM, true, "x"}, {0, MSG_ERR, false, ""},
    };
    for (const auto& row : rows) {
        CapturedOutput output(row.mask);
        EXPECT_EQ(g_ostrm.beginMessage(row.level), row.asked) << row.mask << " " << row.level;
        if (row.asked) {
            g_ostrm << "x";
            g_ostrm.endMessage();
        }
        EXPECT_EQ(output.text(), row.text) << row.mask << " " << row.level;
    }
}

TEST(MessageStream, LevelsNestAndReachEveryFile) {
    MemoryFile first;
    MemoryFile second;
    mrOStream stream;
    stream.setMsgLevel(MSG_INFO);
    stream.append(first.stream());
    stream << "level 3" << MSG_ERR << "one ";
    stream.append(second.stream());
    stream << mrString("two") << MSG_END << "level 3";
    EXPECT_EQ(first.text(), "one two");
    EXPECT_EQ(second.text(), "two");
    stream << MSG_END_FLUSH;
    stream.restoreMsgLevel();
    stream.restoreMsgLevel();  // below the lowest
    EXPECT_EQ(stream.msgLevel(), MSG_ERR);
}

TEST(FileStream, SaysWhatItCannotOpen) {
    static constexpr struct {
        const char* name;
        int mode;
        const char* text;
    } rows[] = {
        {"/no/f", IO_READ | IO_WRITE | IO_NOPATH, "-- Can't open file /no/f to read: \n"},
        {"/no/f", IO_WRITE | IO_APPEND | IO_NOPATH, "-- Can't open file /no/f to write: \n"},
        {"/no/f", IO_BINARY | IO_NOPATH, "-- Can't open file /no/f: \n"},
        {"", IO_READ, "-- Can't open file. Wrong filename (NULL)  to read: \n"},
    };
    for (const auto& row : rows) {
        CapturedOutput output(MSG_ERR);
        EXPECT_FALSE(io_stream(row.name, row.mode, false).isOpen());
        EXPECT_FALSE(io_stream(row.name, row.mode, true).isOpen());
        EXPECT_EQ(output.text(), row.text);
    }
}

}  // namespace
