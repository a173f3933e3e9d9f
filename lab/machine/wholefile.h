#pragma once

#include <string>
#include <string_view>

namespace lab {

/// Makes the file hold these bytes, or leaves it as it was: they are written beside it and take its place
/// then. std::runtime_error with the system's words.
void writeWhole(const std::string& path, std::string_view bytes);

}  // namespace lab
