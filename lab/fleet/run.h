#pragma once

/// A comparison on the kinds of a fleet: what is sent, and how each session is called.

#include <string>
#include <vector>

#include "compare/settings.h"
#include "fleet/fleetfile.h"

namespace lab {

/// A file that the sessions need.
struct SentFile {
    std::string source;
    std::string target;  ///< within the run's folder
    std::string sha256;
};

struct FleetRun {
    std::string identity;  ///< the same for the same files, keys, options, kinds and label
    std::string folder;    ///< of the run, within that of the fleet
    std::string stock;     ///< where files are kept by their SHA-256, for all runs
    std::vector<SentFile> files;
    std::string older;  ///< folder of the old libraries, within the run's
    std::string newer;
    std::vector<std::string> options;  ///< of "compare"
    std::vector<std::string> keys;     ///< of metrig

    std::string storeOf(const Kind& kind, int session) const;
    std::string mergedStore() const { return folder + "/merged.db"; }
};

/// What `compare` is to do, as its command line says it.
struct FleetOrder {
    Settings settings;
    std::vector<std::string> options;  ///< as it has them, without the folders, the store, the core
    std::string label;                 ///< another one is another run of the same
};

/// std::runtime_error and NotComparable for libraries that compare would not take.
FleetRun planRun(const FleetFile& fleet, const FleetOrder& order, const std::array<StoredSide, 2>& sides);

/// The bound of each session: that of the whole, in equal shares.
double familyOfSession(const FleetFile& fleet, double family);

/// Into the shared folder: files that are not in the stock, each under its SHA-256, and the run's folder with
/// links to them. A file is there whole or not at all.
void stageRun(const FleetRun& run);

}  // namespace lab
