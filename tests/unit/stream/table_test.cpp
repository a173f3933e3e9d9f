#include <gtest/gtest.h>

#include "stream/mrcstream.h"
#include "support/captured_output.h"

namespace {

TEST(Table, CellsAndWidths) {
    MemoryFile file;
    mrCStream table;
    table.append(file.stream());
    for (const char* cell : {"a", "", "c", "\n", "\n", "x", "y"}) {
        table << cell;
    }
    table.lineOut(1);
    table << "func";
    table.setColm(2, "placed");
    table.setNextColmIndex(4);
    table << "result";
    table.setColm(5, "beyond the next column");
    table.lineOut(7);
    table.setNextColmIndex(mrCStream::MaxColms);
    table << "beyond the last column";
    table.lineOut(2);
    EXPECT_EQ(file.text(), "a,-,c\n\nx\nfunc,-,placed,-,result,-,-\n-,-\n");
}

TEST(Table, TellsTheFirstPairOfEqualLines) {
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
        for (const char letter : std::string(lines)) {
            mrString cell;
            table << "func" << (cell << letter) << mrText(++result);
            table.lineOut(3);
        }
        const std::string note =
            std::string(" Performance table note:\n Lines ") + pair + " have identical parameters\n";
        EXPECT_EQ(table.identicalLinesStop(), *pair != '\0') << lines;
        EXPECT_EQ(output.text(), *pair != '\0' ? note : "");
    }
}

}  // namespace
