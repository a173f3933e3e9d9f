#pragma once

/// One comparison on several kinds of machines: what each says of each function.

#include <string>
#include <vector>

#include "show/report.h"
#include "show/table.h"

namespace lab {

struct KindReport {
    std::string name;
    int sessions = 1;
    Report report;  ///< joined from those of the sessions; its bound is the sum of theirs
};

struct FleetReport {
    std::vector<KindReport> kinds;
};

/// A function, or a point, on all kinds.
struct FleetLine {
    std::string name;                ///< nothing in it steers a terminal
    std::vector<TableLine> ofKinds;  ///< in their order; without a point where the kind does not have it
};

/// The worst first. It points into the reports.
std::vector<FleetLine> fleetLines(const FleetReport& fleet, bool points);

/// Probability of a false "slower" or "faster" anywhere on any kind, at most: the sum over the kinds.
double familyOf(const FleetReport& fleet);

/// The gravest of what the kinds end with.
ExitStatus exitStatus(const FleetReport& fleet, bool failOnUnsure);

/// Functions by kinds, the worst function first: a line a function, or a point. A sentence on each kind
/// follows. Lines ended; nothing in it steers a terminal but the colours.
std::string fleetTable(const FleetReport& fleet, bool points, bool colours);

inline constexpr const char* fleetJsonSchema = "metrig-lab.fleet";
inline constexpr int fleetJsonVersion = 1;

/// One JSON document, line ended, that has the document of each kind's comparison.
std::string fleetJson(const FleetReport& fleet, bool failOnUnsure);

}  // namespace lab
