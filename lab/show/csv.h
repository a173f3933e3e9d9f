#pragma once

/// Comma-separated values: one line of names, then a line a point, numbers as numbers. A cell with a comma or
/// a quotation mark is quoted as RFC 4180 has it. Lines end in a line feed, and none stands within a cell:
/// control characters are written as "\xNN". What is not known is empty.

#include <string>

#include "results/resulttable.h"
#include "show/fleet.h"
#include "show/measurement.h"
#include "show/report.h"

namespace lab {

/// The points of a comparison. Parameters have a column each, in the order in which points name them; where a
/// name stands for two columns, letters' case aside, the later one gets "_2" behind it.
std::string csv(const Report& report);

/// The same of all kinds, each line with its kind before the function.
std::string csv(const FleetReport& fleet);

/// The points of a measurement. Clocks are of one call but for `per_unit`.
std::string csv(const MeasurementReport& report);

/// The results of a table, with the run that each is of.
std::string csv(const ResultTable& table);

}  // namespace lab
