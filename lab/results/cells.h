#pragma once

/// The cells of a line whose values may hold commas.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

std::vector<std::string> splitCells(std::string_view line);

/// Joins the cells of values that hold commas, so that `count` values are left, one at least. `widths` are
/// the greatest lengths of these values on other lines. False if the cells can be joined in several ways: the
/// surplus is then in the last value.
bool joinCells(std::vector<std::string>& cells, std::size_t count, std::size_t width);

}  // namespace lab
