#pragma once

/// The figures of one build as they are shown: on a terminal, and for programs.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "show/columns.h"
#include "show/report.h"
#include "verdict/figure.h"

namespace lab {

/// A point beside an earlier figure of it.
struct Beside {
    double earlier = 0;  ///< floor, in clocks of one call
    double ratio = 0;    ///< new floor / earlier one
    /// The processes of both say that it became slower or faster; else `same`, which says nothing.
    Verdict mark = Verdict::same;
};

struct MeasuredPoint {
    std::string function;
    std::vector<std::pair<std::string, std::string>> parameters;
    std::string unit;    ///< of the tables
    double divisor = 1;  ///< units in one call
    std::optional<Figure> figure;
    Fate fate;
    std::optional<Beside> beside;
};

/// What the figures stand beside.
struct Earlier {
    std::string path;
    /// What makes the ratios worth less, as sentences.
    std::vector<std::string> caveats;
};

struct MeasurementReport {
    Build build;
    Machine machine;
    std::uint64_t seed = 0;
    double seconds = 0;  ///< that the measurement took
    int processes = 0;   ///< asked for
    int turns = 0;       ///< of a process at a point
    bool finished = true;
    std::vector<std::string> warnings;
    std::vector<MeasuredPoint> points;
    std::optional<Earlier> earlier;
};

/// The names of the columns, then a row a function, or one a point with its clusters. What names hold steers
/// no terminal. Columns that are of no use in this report have no name and are empty.
std::vector<Cells> rowsOf(const MeasurementReport& report, bool points);

/// How many points were measured and how well, and the answer beside earlier figures; lines ended.
std::string sentence(const MeasurementReport& report);

/// These rows between what was measured and the sentence. Lines ended.
std::string table(const MeasurementReport& report, bool points);

/// "0.0249 at 34 of 40 turns, 0.0376 at 6: another load on this core", in clocks of a unit.
std::string clustersText(const Figure& figure, double divisor);

/// Four digits: "0.02490", "31.65", "21020".
std::string figureText(double clocks);

inline constexpr const char* jsonMeasurementSchema = "metrig-lab.measurement";
inline constexpr int jsonMeasurementVersion = 1;

/// One JSON document, as that of a comparison.
std::string json(const MeasurementReport& report);

}  // namespace lab
