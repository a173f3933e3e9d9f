#pragma once

/// Jobs of a run on a Slurm cluster, by its own commands.

#include <functional>
#include <string>
#include <vector>

#include "fleet/run.h"

namespace lab {

using Say = std::function<void(const std::string&)>;

/// A node as sinfo lists it, once for each partition that it is in.
struct Node {
    std::string name;
    std::vector<std::string> features;
    std::string partition;
};

/// From "name|feature,feature|partition" lines.
std::vector<Node> nodesIn(const std::string& listing);

/// Of each kind that no node is of, a line that says so. A constraint with more in it than features, "&" and
/// "|", which are taken from left to right, is left to Slurm.
std::vector<std::string> kindsOfNobody(const std::vector<Kind>& kinds, const std::vector<Node>& nodes);

/// What the cluster has; std::runtime_error with the words of sinfo.
std::vector<Node> clusterNodes();

/// Has the sessions that are not finished measured and joined, and, if `waiting`, waits for the end of all.
/// Jobs of this run that are queued already are waited for. std::runtime_error, with the jobs of this call
/// cancelled, if sbatch refuses one; Interrupted leaves the jobs at work.
void runJobs(const FleetFile& fleet, const FleetRun& run, bool waiting, const Say& say);

}  // namespace lab
