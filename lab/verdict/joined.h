#pragma once

/// One word on a point from several sessions on machines of one kind.

#include <cstddef>
#include <span>

#include "verdict/verdict.h"

namespace lab {

struct Joined {
    Decision decision;
    std::size_t speaker = 0;  ///< the session that it is from
};

/// The decision on a point by those of its sessions, in their order (one at least): that of the first session
/// that can tell, if no other says something else. Sessions that contradict each other make it unsure
/// (Reason::repeated), a crash or a status that differs in any of them too.
///
/// Pairs are not pooled. Each session has decided by its own plan, and a false word of the whole needs a
/// false word of one session at least, so the bounds of the sessions add up to that of the whole, however
/// they depend on each other.
Joined joined(std::span<const Decision> sessions);

}  // namespace lab
