#pragma once

/// A report as the text of a pull request: the answer, what changed, the rest counted, details folded. Names
/// are shown as they are, whatever markup they look like.

#include <string>

#include "results/resulttable.h"
#include "show/report.h"

namespace lab {

std::string markdown(const Report& report);
std::string markdown(const ResultTable& table);

}  // namespace lab
