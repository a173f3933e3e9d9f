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
        {{}, 0, "\n"},
    };
    std::string all;
    for (const auto& row : rows) {
        cells(row.cells);
        m_table.lineOut(row.width);
        EXPECT_EQ(m_file.text(), all += row.line);
    }
    cells({"a", "b", "\n"});
    EXPECT_EQ(m_file.text(), all + "a,b\n");
}

TEST_F(Table, JumpsAndSingleColumns) {
    cells({"func"});
    m_table.setColm(2, "placed");
    m_table.setNextColmIndex(4);
    cells({"result"});
    m_table.setColm(5, "beyond the next column");
    m_table.lineOut(7);
    EXPECT_EQ(m_file.text(), "func,-,placed,-,result,-,-\n");
    m_table.setNextColmIndex(mrCStream::MaxColms);
    cells({"beyond the last column"});
    m_table.lineOut(2);
    EXPECT_EQ(m_file.text(), "func,-,placed,-,result,-,-\n-,-\n");
}

TEST_F(Table, PostponedLinesFollowInOrder) {
    for (const char* name : {"old1", "old2"}) {
        cells({name, "1"});
        m_table.linePostpone();
    }
    cells({"new", "2"});
    m_table.lineOut(3);
    m_table.linePostponeOut(3);
    m_table.linePostponeOut(3);
    EXPECT_EQ(m_file.text(), "new,2,-\nold1,1,-\nold2,1,-\n");
}

TEST_F(Table, TellsTheFirstPairOfEqualLines) {
    static constexpr std::pair<const char*, const char*> rows[] = {
        // a letter for the parameters of each line
        {"abab", "3 & 5"},
        {"abba", "3 & 6"},
        {"abcc", "5 & 6"},
        {"abc", ""},
    };
    for (const auto& [lines, pair] : rows) {
        CapturedOutput output(MSG_WARN);
        mrCStream table;  // has no file, and counts all the same
        table.lineOut(0);
        table.lineOut(0);
        table.identicalLinesStart(2);
        int result = 0;
        for (const char* line = lines; *line != '\0'; ++line) {
            mrString cell;
            table << "func" << (cell << *line) << mrText(++result);
            table.lineOut(3);
        }
        const bool found = *pair != '\0';
        EXPECT_EQ(table.identicalLinesStop(), found) << lines;
        const std::string note =
            std::string(" Performance table note:\n Lines ") + pair + " have identical parameters\n";
        EXPECT_EQ(output.text(), found ? note : "");
    }
}

}  // namespace
