#pragma once

/// Whether one side of a point alone was ever seen fast.

#include <optional>
#include <span>

#include "verdict/turn.h"

namespace lab {

/// The side whose pairs are partly fast and partly slow while those of the other side are slow, all or nearly
/// all, as slow, and whatever the state of the first. Nothing where there is no such side, or where that may
/// be chance: where the builds do not differ, a side is named at 0.1% of the points at most.
std::optional<Side> onlyFastSide(std::span<const Pair> pairs);

}  // namespace lab
