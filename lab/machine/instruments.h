#pragma once

#include <string>

namespace lab {

/// The path of the instrument of 32 or of 64 bits: beside this program where they are installed, or where the
/// builds are. std::runtime_error if there is none, with what to do about it.
std::string instrumentOf(int bits);

}  // namespace lab
