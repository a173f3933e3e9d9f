#pragma once

/// The styles and scripts of pages. They stand as files of their own in page/parts/ and third_party/uplot/,
/// and the build puts them into the program.

#include <map>
#include <string_view>

namespace lab {

/// By their names without folder: "chart.js". Made by cmake/embed.cmake.
extern const std::map<std::string_view, std::string_view> parts;

/// One of them; std::logic_error for a name that is not there.
std::string_view part(std::string_view name);

}  // namespace lab
