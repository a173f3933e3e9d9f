#pragma once

#include <string>

#include "show/fleet.h"

namespace lab {

/// The page of one comparison on several kinds of machines as one HTML document, drawn by
/// page/parts/fleet.js. Its data:
///
///     {"title": "merged", "fleet": {...},         as "export --json" writes it
///      "functions": [{"name": "F1", "points": [0, null, ...]}, ...]}     the worst first, and of each kind
///      the
///                                                number of the point that speaks for it
std::string fleetPage(const std::string& title, const FleetReport& fleet);

}  // namespace lab
