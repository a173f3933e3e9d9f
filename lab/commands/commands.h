#pragma once

/// What metrig-lab does, by the words of its command line.

#include <string>

#include "compare/settings.h"

namespace lab {

/// How a comparison is shown at its end, and what counts as failure.
struct Showing {
    bool points = false;        ///< a line a point
    bool failOnUnsure = false;  ///< exit status 3 where nothing is slower but something is unsure
};

/// Each returns the exit status, and says on standard error why, where that is not the answer itself.
int compareCommand(const Settings& settings, const std::string& path, const Showing& showing);
/// For `moreSeconds`, when they are above 0.
int resumeCommand(const std::string& path, const Showing& showing, double moreSeconds);
int showCommand(const std::string& path, const Showing& showing);
/// One JSON document on standard output.
int exportCommand(const std::string& path, const Showing& showing);

}  // namespace lab
