#pragma once

#include <string>
#include <string_view>

namespace lab {

/// SHA-256 of the bytes as 64 hexadecimal digits.
std::string sha256(std::string_view bytes);

}  // namespace lab
