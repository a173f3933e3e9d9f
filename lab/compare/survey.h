#pragma once

/// The points that instruments walk, before anything is measured.

#include <span>
#include <string>
#include <vector>

#include "compare/settings.h"
#include "turns/walk.h"

namespace lab {

/// A side as its instrument walks it.
struct Survey {
    Route route;
    std::string lostIn;  ///< function that the walk did not get past; empty if it was lost at its start
    std::string loss;    ///< empty: the walk came to its end

    /// " does not get past F (killed by signal 9 (Killed)): nothing after it is <done>"
    std::string lossText(const std::string& done) const;
};

/// Of each side. One that is lost, be it by chance, gets further chances, and what it lists then is all it
/// has. Notes in the sides what their instruments say of the library and have mapped. std::runtime_error as
/// startSurely.
std::vector<Survey> surveySides(std::span<StoredSide> sides, int mhz, const RunSettings& settings);

}  // namespace lab
