#pragma once

/// A comparison for programs.

#include <string>

#include "show/report.h"

namespace lab {

inline constexpr const char* jsonSchema = "metrig-lab.comparison";
/// Raised when a field changes its meaning or goes; new fields do not raise it.
inline constexpr int jsonVersion = 1;

/// One JSON document, line ended, in UTF-8: bytes that are no UTF-8 are replaced. What is not known is null.
/// `exit` is the status that the comparison ends with.
std::string json(const Report& report, ExitStatus exit);

}  // namespace lab
