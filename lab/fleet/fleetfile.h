#pragma once

/// The file that lists the kinds of machines of a fleet.

#include <string>
#include <vector>

namespace lab {

/// What the jobs of a kind ask of Slurm; empty: nothing.
struct JobWishes {
    std::string partition;
    std::string timeLimit;
    std::string cpuFrequency;
    std::vector<std::string> options;  ///< of sbatch, as they stand
};

/// Machines that are alike. One node, or all that have a feature.
struct Kind {
    std::string name;
    std::string node;               ///< by name
    std::string constraint;         ///< or by features, as Slurm's --constraint
    std::string host;               ///< for ssh
    int core = -1;                  ///< -1: the quietest
    std::vector<std::string> keys;  ///< of metrig, beside those of the comparison
    int sessions = 2;
    JobWishes wishes;
};

struct FleetFile {
    std::string folder;              ///< absolute; shared by all nodes, or of that name on each host
    bool broadcast = false;          ///< programs and libraries go to the node's own disk by sbcast
    std::vector<std::string> files;  ///< that stand in the folder in which a session runs
    std::vector<std::string> ssh{"ssh", "-o", "BatchMode=yes"};
    std::vector<Kind> kinds;

    int sessions() const;
};

/// std::runtime_error with file and line for a file that can't be read, a key that is unknown or of another
/// type, and for values that can't be used: a name that is no file name, two kinds of one name, blanks or
/// quotes in what becomes an option of sbatch.
FleetFile readFleetFile(const std::string& path);

}  // namespace lab
