#pragma once

/// A run without Slurm: over ssh, one machine after the other.

#include <functional>
#include <string>

#include "fleet/run.h"
#include "fleet/slurm.h"

namespace lab {

/// Runs the sessions of all kinds, on a kind's host or else its node, and merges each into `output` as it
/// ends. A host that can't be reached, or whose session fails, is said; the others go on. Number of sessions
/// that came to a store. A session that was interrupted goes on with its store on the host.
int runOnHosts(const FleetFile& fleet, const FleetRun& run, const std::string& output, const Say& say);

}  // namespace lab
