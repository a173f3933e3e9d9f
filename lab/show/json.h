#pragma once

/// A comparison, or a table of results, for programs. docs/schemas/ holds the schemas.

#include <string>

#include "results/resulttable.h"
#include "show/report.h"

namespace lab {

inline constexpr const char* jsonSchema = "metrig-lab.comparison";
/// Raised when a field changes its meaning or goes; new fields do not raise it.
inline constexpr int jsonVersion = 1;

/// One JSON document, line ended, in UTF-8: bytes that are no UTF-8 are replaced. What is not known is null.
/// `exit` is the status that the comparison ends with.
std::string json(const Report& report, ExitStatus exit);

inline constexpr const char* jsonTableSchema = "metrig-lab.table";
inline constexpr int jsonTableVersion = 1;

/// The same of the results of a table.
std::string json(const ResultTable& table);

}  // namespace lab
