#include <gtest/gtest.h>

#include "output/mrcstream.h"
#include "support/captured_output.h"

namespace {

class Table : public testing::Test {
  protected:
    Table() { m_table.append(m_file.stream()); }

    void cells(std::initializer_list<const char*> texts) {
        for (const char* text : texts) {
            m_table << text;
        }
    }
    std::string text() { return m_file.text(); }

    MemoryFile m_file;
    mrCStream m_table;
};

TEST_F(Table, LinesHaveTheWidthAskedFor) {
    const struct {
        std::initializer_list<const char*> cells;
        int width;
        const char* line;
    } rows[] = {
        {{"a", "", "c"}, 0, "a,-,c\n"},
        {{"x", "y"}, 5, "x,y,-,-,-\n"},
        {{"a", "b", "c"}, 1, "a\n"},
        {{"a,b"}, 2, "a,b,-\n"},
        {{}, 0, "\n"},
    };
    std::string all;
    for (const auto& row : rows) {
        cells(row.cells);
        m_table.lineOut(row.width);
        EXPECT_EQ(text(), all += row.line);
    }
    EXPECT_EQ(m_table.lineCount(), 5);
}

TEST_F(Table, NewlineEndsTheLine) {
    cells({"a", "b", "\n"});
    m_table.setNextColm("\n");
    cells({"c", "\n"});
    EXPECT_EQ(text(), "a,b\n\n,c\n");
}

TEST_F(Table, ColumnsBeyondTheLastAreDropped) {
    std::string line;
    for (int i = 0; i < mrCStream::MaxColms; ++i) {
        m_table << mrText(i);
        line += std::to_string(i) + ",";
    }
    m_table << "dropped";
    m_table.setColm(mrCStream::MaxColms, "dropped");
    mrString cell;
    EXPECT_FALSE(m_table.getColm(mrCStream::MaxColms, cell));
    m_table.lineOut(mrCStream::MaxColms + 2);
    EXPECT_EQ(text(), line + "-,-\n");
}

TEST_F(Table, JumpsAndSingleColumns) {
    cells({"func"});
    m_table.setColm(2, "placed");
    EXPECT_EQ(m_table.nextColm(), 1);
    m_table.setNextColmIndex(4);
    cells({"result"});
    m_table.setColm(5, "beyond the next column");
    m_table.lineOut(7);
    EXPECT_EQ(text(), "func,-,placed,-,result,-,-\n");
}

TEST_F(Table, PostponedLinesFollowInOrder) {
    m_table.identicalLinesStart(1);
    for (const char* name : {"old1", "old2"}) {
        cells({name, "1"});
        m_table.linePostpone();
    }
    EXPECT_EQ(m_table.lineCount(), 0);
    cells({"new", "2"});
    m_table.lineOut(3);
    m_table.linePostponeOut(3);
    m_table.linePostponeOut(3);
    EXPECT_EQ(text(), "new,2,-\nold1,1,-\nold2,1,-\n");
    CapturedOutput output(MSG_WARN);
    EXPECT_FALSE(m_table.identicalLinesStop());
    EXPECT_EQ(output.text(), "");
}

TEST_F(Table, TellsTheFirstPairOfEqualLines) {
    static constexpr struct {
        const char* lines;  // a letter for the parameters of each line
        const char* pair;
    } rows[] = {{"abab", "3 & 5"}, {"abba", "3 & 6"}, {"abcc", "5 & 6"},
                {"aaa", "3 & 4"},  {"abc", ""},       {"", ""}};
    for (const auto& row : rows) {
        CapturedOutput output(MSG_WARN);
        mrCStream table;  // has no file, and counts all the same
        table.lineOut(0);
        table.lineOut(0);
        table.identicalLinesStart(2);
        int result = 0;
        for (const char* line = row.lines; *line != '\0'; ++line) {
            mrString cell;
            table << "func" << (cell << *line) << mrText(++result);
            table.lineOut(3);
        }
        const std::string pair = row.pair;
        EXPECT_EQ(table.identicalLinesStop(), !pair.empty()) << row.lines;
        EXPECT_EQ(
            output.text(),
            pair.empty() ? "" : " Performance table note:\n Lines " + pair + " have identical parameters\n");
        EXPECT_FALSE(table.identicalLinesStop());
    }
}

TEST_F(Table, RecordCanBeOff) {
    m_table.identicalLinesStart(0);
    cells({"a", "\n", "a", "\n"});
    EXPECT_FALSE(m_table.identicalLinesStop());
}

}  // namespace
