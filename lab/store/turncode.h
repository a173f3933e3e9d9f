#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "verdict/turn.h"

namespace lab {

/// The turns of a pair at a point as bytes: numbers of seven bits a byte, least first, the top bit where more
/// follow; signed ones as 2n or -2n-1; times in microseconds.
std::string encodeTurns(std::span<const Turn> turns);

/// Nothing if the bytes are none that encodeTurns gives.
std::optional<std::vector<Turn>> decodeTurns(std::string_view bytes);

}  // namespace lab
