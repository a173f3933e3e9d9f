#pragma once

/// Tables of figures on a terminal.

#include <string>
#include <vector>

namespace lab {

using Cells = std::vector<std::string>;

/// Rows of equally many cells, lines ended. The first cell and the last are texts, those between are figures
/// and stand to the right; a column without any is left out.
std::string aligned(const std::vector<Cells>& rows);

}  // namespace lab
