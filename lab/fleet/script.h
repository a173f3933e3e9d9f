#pragma once

/// The scripts of a run's jobs.

#include <string>

#include "fleet/run.h"

namespace lab {

/// For sbatch: the job array of a kind, a session each.
std::string arrayScript(const FleetFile& fleet, const FleetRun& run, const Kind& kind);

/// For sbatch: joins the stores of all sessions that are there.
std::string mergeScript(const FleetFile& fleet, const FleetRun& run);

/// For the host's bash: the session whose number is the first argument. It ends when its input does.
std::string hostScript(const FleetRun& run, const Kind& kind);

}  // namespace lab
