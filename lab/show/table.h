#pragma once

/// A comparison on a terminal: a line a function, worst first.

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "show/report.h"

namespace lab {

struct TableStyle {
    bool points = false;     ///< a line a point instead of a function
    std::set<Verdict> only;  ///< lines of these verdicts alone; empty: all
    bool colours = false;
};

/// A line of a table.
struct TableLine {
    const Point* point = nullptr;  ///< that it rests on
    Counts counts;                 ///< of the function
};

/// The lines of a report, the worst first.
std::vector<TableLine> tableLines(const Report& report, const TableStyle& style);
/// Whether `one` is to stand before `other`.
bool isWorse(const TableLine& one, const TableLine& other);

/// "slower", "unsure: noise".
std::string verdictText(const Decision& decision);
/// What a terminal writes before and after a cell of the point.
std::string coloured(const std::string& cell, const Point& point);
/// Bytes that could steer a terminal, or take more or less than a column, are written as "\xNN".
std::string printable(std::string_view text);

/// Whether a terminal gets colours: `noColour` is the value of NO_COLOR, null when it is not set.
bool coloursWanted(bool terminal, const char* noColour);

/// The whole report, warnings and the sentence with the answer included, lines ended. Whatever names hold,
/// nothing in it steers a terminal but the colours.
std::string table(const Report& report, const TableStyle& style);

/// The answer in one sentence: "7 points slower (of 2 functions), ...".
std::string sentence(const Report& report);

/// "+1.2%" for the natural logarithm of new / old; "?" where it is not finite.
std::string change(double logRatio);

/// The parameters of a point as "name=value name=value".
std::string parameterText(const Point& point);
std::string parameterText(const std::vector<std::pair<std::string, std::string>>& parameters);

/// "2 slower, 1 same"; empty where there are none.
std::string countsText(const Counts& counts);

/// The clocks of one call of both builds: "100.00 -> 102.50".
std::string clocksText(const Point& point);

/// "-0.20% .. +0.30%"; "?" where it has no ends.
std::string intervalText(const Interval& interval);

/// What became of the point, and its marks: " (new: SIGSEGV) (same machine code)"; empty where there is
/// nothing.
std::string remarks(const Point& point);

}  // namespace lab
