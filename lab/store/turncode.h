#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "verdict/turn.h"

namespace lab {

/// The turns of a pair at a point as bytes. Of each turn: twice the epoch, one more for the new side; calls,
/// empty, loop, microseconds; the number of blocks, the ticks of each. All but the first and the number of
/// blocks are steps from the same number of the turn before, those of ticks from the block before; a step s
/// is 2s, or -2s-1 below 0. Numbers have seven bits a byte, least first, the top bit where more follow.
std::string encodeTurns(std::span<const Turn> turns);

/// Nothing if the bytes are none that encodeTurns gives.
std::optional<std::vector<Turn>> decodeTurns(std::string_view bytes);

}  // namespace lab
