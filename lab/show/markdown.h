#pragma once

/// A report as the text of a pull request: the answer, what changed, the rest counted, details folded. Names
/// are shown as they are, whatever markup they look like.

#include <string>

#include "results/resulttable.h"
#include "show/fleet.h"
#include "show/measurement.h"
#include "show/report.h"

namespace lab {

std::string markdown(const Report& report);
/// Functions by kinds, the worst first, and each kind's own details.
std::string markdown(const FleetReport& fleet);
std::string markdown(const MeasurementReport& report);
std::string markdown(const ResultTable& table);

}  // namespace lab
