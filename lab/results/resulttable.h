#pragma once

/// The tables of results that metrig writes with -r and -R, read back.

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lab {

/// One finished measurement, a line of a table.
struct ResultRow {
    int run = 0;           ///< of ResultTable::runs
    std::string function;  ///< whole name: "zylsConcat_8u_D2L"
    /// Named by a name line, else "Parm3" and so on as in the head of the table, where only the cells that
    /// hold something count.
    std::vector<std::pair<std::string, std::string>> parameters;
    std::optional<double> clocks;        ///< of one unit
    std::string unit;                    ///< "e" for an element; may be empty
    std::optional<double> microseconds;  ///< of one call
    std::optional<double> mflops;
    std::string comment;  ///< on how many calls the figure stands: "nLps=600"
    bool hot = false;     ///< column "Interest"
};

/// What the runs that wrote to a table say of themselves: "CPU", "OS", "Computer", "Library", "Start" with
/// their values; several runs where one was added to another's table.
using ResultRun = std::vector<std::pair<std::string, std::string>>;

/// The names of a function's parameters in the order of the table.
using ParameterNames = std::map<std::string, std::vector<std::string>>;

struct ResultTable {
    std::vector<ResultRun> runs;
    std::vector<ResultRow> rows;
    ParameterNames names;               ///< by its name lines (-q)
    std::vector<std::string> warnings;  ///< what was left out, and what was guessed
};

/// Reads a table, or a table of names. Whatever is no such table: std::runtime_error that begins with "line
/// N:". A last line without its end is left out with a warning, since a run may be writing it. `names` are
/// used for functions that the table has no name line of. Takes memory for 200,000 lines of 4,096 bytes at
/// most, and refuses more.
ResultTable readResults(std::istream& file, const ParameterNames& names = {});

}  // namespace lab
