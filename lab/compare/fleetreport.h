#pragma once

#include <string>

#include "show/fleet.h"

namespace lab {

/// What a merged store holds, as it is shown: a report a kind, joined from its sessions.
FleetReport fleetReportOf(const std::string& path);

/// One report from those of the sessions of a kind, which are of the same libraries and keys (one at least).
/// Each point stands as the session that speaks for it has it, clocks included: nothing is averaged over
/// sessions.
Report joinedReport(const std::vector<Report>& sessions);

}  // namespace lab
