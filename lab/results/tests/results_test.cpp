#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "results/cells.h"
#include "results/resulttable.h"

namespace lab {
namespace {

/// A table that two runs wrote, the second with -R -q+ -H; or the names of the first by -q.
std::string recorded(const char* name) {
    std::ifstream file(std::string(METRIG_SOURCE_DIR "/lab/results/tests/") + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

ResultTable read(const std::string& text, const ParameterNames& names = {}) {
    std::istringstream stream(text);
    return readResults(stream, names);
}

std::string messageOf(const std::string& text) {
    try {
        const ResultTable table = read(text);
        return table.warnings.empty() ? "good" : table.warnings.front();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

std::string parametersOf(const ResultRow& row) {
    std::string text;
    for (const auto& [name, value] : row.parameters) {
        text.append(name).append("=").append(value).append("|");
    }
    return text;
}

TEST(ResultTable, OfTwoRunsHasWholeNamesAndNamedParameters) {
    const ResultTable table = read(recorded("added.csv"), read(recorded("names.csv")).names);
    EXPECT_TRUE(table.warnings.empty()) << table.warnings.front();
    ASSERT_EQ(table.runs.size(), 2U);
    EXPECT_EQ(table.runs[1][0].second, "Virtual processor, 2x2.6 GHz, Max cache size 262144 K");
    ASSERT_EQ(table.rows.size(), 17U);
    const struct {
        std::size_t row;
        int run;
        const char *function, *parameters;
        double clocks;
    } rows[] = {
        {0, 0, "zylsFind_8u", "VectorLength=64|lenFind=8|hardSearch=-|", 0.609},
        {5, 0, "zylsFindC_8u", "VectorLength=512|", 0.0879},
        {6, 1, "zylsLowercaseLatin_8u_I", "VectorLength=64|", 0.133},
        {10, 1, "zylsRegExpFind_8u", "Parm3=alice@example.org, b|Parm4=[\\w.+-]+@[\\w-]+(?:\\.|", 7154},
        {11, 1, "zylsRegExpFind_8u", "Parm3=alice@example.org, b|Parm4=@(?=example)|", 1007},
        {13, 1, "zylsRegExpFind_8u", "Parm3=aaaaaaaaaaaaaaaaaaaa|Parm4=a{4,8}?b|", 4263},
        {16, 1, "zylsRegExpReplace_8u", "Parm3=    A37 B4 C107|Parm4=([A-Z])([0-9]{2|Parm5=$2:$1 |Parm6=g|",
         1194},
    };
    for (const auto& row : rows) {
        const ResultRow& its = table.rows[row.row];
        EXPECT_EQ(its.function, row.function);
        EXPECT_EQ(its.run, row.run);
        EXPECT_EQ(parametersOf(its), row.parameters);
        EXPECT_EQ(its.clocks, row.clocks);
    }
    EXPECT_EQ(table.rows[16].unit, "pattern");
    EXPECT_EQ(table.rows[16].microseconds, 0.459);
    EXPECT_EQ(table.rows[16].comment, "nLps=200");
    EXPECT_EQ(table.rows[16].mflops, std::nullopt);
}

TEST(ResultTable, ToldWhatIsWrongAndWhere) {
    const std::string head = "CPU,x\nfunction,Parm1,Parm2,Parm3,Comment,Clocks,per,Time (usec),MFlops\n";
    const std::string line = "zylsF,8u,-,64,nLps=1,0.5,e,0.1,-\n";
    const struct {
        std::string text;
        const char* message;
    } rows[] = {
        {head + line, "good"},
        {head + "own,7,-,-,nLps=1,-, ,-,-\r\n", "good"},
        {"", "line 1: the file ends before"},
        {"a;b\n1;2\n", "line 1: no line of a table"},
        {head + line + "CPU,y\n" + line, "line 5: no line of a table"},
        {"CPU,x\nFunction,Class,Control87\n", "line 2: no line of a table of results: \"Function,Class"},
        {"function,Interest\n", "line 1: not the head"},
        {"function,Comment,Clocks,per,Time (usec),MFlops\n", "line 1: not the head"},
        {head + "zylsF,8u,-,64,nLps=1,0.5\n", "line 3: 6 cells where the head has 9"},
        {head + "zylsF,8u,-,64,nLps=1,0.5x,e,0.1,-\n", "line 3: \"0.5x\" is no figure"},
        {head + "zylsF,8u,-,64,nLps=1,nan,e,0.1,-\n", "line 3: \"nan\" is no figure"},
        {head + line + "zylsF,8u,-,128,nLps=1,0.5,e,0.", "line 4: without its end"},
        {head + line + std::string(1, '\0') + "\n", "line 4: a byte of 0"},
        {head + std::string(5000, 'x'), "line 3: too long"},
        {head + std::string(100, ',') + "\n", "line 3: 101 cells"},
        {head + "zylsF,8u,-,a,b,c,nLps=1,0.5,e,0.1,-\n", "good"},
        {head + "zylsF,8u,-,-,-,-,nLps=1,0.5,e,0.1,-\n", "line 3: 2 cells more than"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(messageOf(row.text).substr(0, std::string(row.message).size()), row.message) << row.text;
    }
    std::string many = head;
    for (int i = 0; i < 200000; ++i) {
        many += "CPU,x\n";
    }
    EXPECT_EQ(messageOf(many), "line 200001: a table as long as this is not read");
}

TEST(ResultTable, ReadsWhateverItIsGivenOrRefusesIt) {
    const std::string whole = recorded("added.csv");
    std::mt19937 random{20261123};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        std::string text = whole.substr(0, length);
        if (length % 2 != 0) {
            text[random() % length] = ",\n-\xff\x1b"[random() % 5];
        }
        EXPECT_TRUE(messageOf(text) == "good" || messageOf(text).starts_with("line ")) << messageOf(text);
    }
}

TEST(Cells, OfValuesWithCommasAreJoinedWhereTheWidthTells) {
    const struct {
        const char* cells;
        std::size_t count;
        std::size_t width;
        const char* joined;
        bool told;
    } rows[] = {
        {"abc,d,e", 3, 0, "abc|d|e|", true},
        {"abc,d,e", 1, 0, "abc,d,e|", true},
        {"abc,d,e", 2, 3, "abc|d,e|", true},       // "abc,d" is too long
        {"abc,d,e", 2, 5, "abc,d|e|", true},       // was cut off
        {"abc,d,e", 2, 6, "abc|d,e|", false},      // both are possible
        {"abc,d,efg", 2, 5, "abc|d,efg|", false},  // both were cut off
        {"abc,d,e", 2, 2, "abc|d,e|", false},      // none is possible
        {"a,b,c,d,e,f,g", 2, 1, "a|b,c,d,e,f,g|", false},
    };
    for (const auto& row : rows) {
        std::vector<std::string> cells = splitCells(row.cells);
        EXPECT_EQ(joinCells(cells, row.count, row.width), row.told) << row.joined;
        std::string joined;
        for (const std::string& cell : cells) {
            joined += cell + "|";
        }
        EXPECT_EQ(joined, row.joined);
    }
}

}  // namespace
}  // namespace lab
