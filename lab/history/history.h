#pragma once

/// Comparisons and measurements of many builds, as they are kept together: what each of them says of each
/// point, and nothing of its turns.

#include <string>
#include <vector>

#include "verdict/verdict.h"

namespace lab {

/// A build in the order of builds. The same bytes may come again under another label.
struct BuildEntry {
    std::string label;     ///< its own in the history
    std::string identity;  ///< SHA-256 over those of its objects, and the keys that it alone is measured with
    std::string revision;  ///< of its sources; may be empty
    std::string library;   ///< line that it says of itself
    std::string day;       ///< on which it came: "2026-11-23"
    std::vector<std::string> buildIds;  ///< of its objects
};

/// How ratios were measured. Those of different methods are never put together.
struct Method {
    std::string processor;
    std::string keys;  ///< of both instruments, but for those that choose points
    std::string turn;  ///< length and blocks
    int bits = 0;
    bool operator==(const Method&) const = default;
};

/// One function at one combination of its parameters.
struct PointName {
    std::string function;
    std::string parameters;  ///< "name=value name=value"
    std::string unit;
    bool operator==(const PointName&) const = default;
    auto operator<=>(const PointName&) const = default;
};

/// What one comparison says of one point. Logarithms of new / old.
struct Finding {
    int point = 0;
    Verdict verdict = Verdict::unsure;
    Reason reason = Reason::pairs;
    int pairs = 0;
    double middle = 0;  ///< median of all pairs
    double error = -1;  ///< of the median, a standard deviation; below 0: the pairs give none
    double push = 0;    ///< sum over the pairs, each cut off at the margin, in margins
    double energy = 0;  ///< sum of their squares
    double older = 0;   ///< clocks of one call, 0: not measured
    double newer = 0;
    bool sameCode = false;  ///< the function's machine code is the same in both
    bool measured() const { return error >= 0; }
};

struct ComparisonEntry {
    std::string identity;  ///< of this run of the comparison, whatever the file is named
    int older = 0;         ///< index of the build
    int newer = 0;
    int method = 0;
    double margin = 0.01;
    std::string day;
    std::vector<Finding> findings;
};

/// What a function took in one build, in clocks of a unit, on the machine as it was on that day.
struct KeptFigure {
    int point = 0;
    double clocks = 0;  ///< the floor, as Figure has it
    double low = 0;     ///< between these the processes put it
    double high = 0;
};

/// Figures of one build, kept beside the comparisons. Machines drift, so no level, no change and no verdict
/// ever rests on them.
struct MeasurementEntry {
    std::string identity;  ///< of this run of the measurement
    int build = 0;         ///< index
    Method method;         ///< without turns, which figures do not depend on
    int processes = 0;     ///< that the figures stand on
    std::string day;
    std::vector<KeptFigure> figures;
};

/// All of it. Comparisons stand in the order of adding, measurements in that of their builds; numbers are
/// indices.
struct History {
    std::vector<BuildEntry> builds;
    std::vector<Method> methods;
    std::vector<PointName> points;
    std::vector<ComparisonEntry> comparisons;
    std::vector<MeasurementEntry> measurements;
};

}  // namespace lab
