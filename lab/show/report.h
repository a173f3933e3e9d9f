#pragma once

/// A comparison as it is shown: one structure for the terminal, for programs and for pages.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "verdict/verdict.h"

namespace lab {

/// Exit statuses, which scripts may rely on.
enum ExitStatus : int {
    exitNothingSlower = 0,
    exitSlower = 1,
    exitUse = 2,            ///< wrong use, or a file
    exitUnsure = 3,         ///< could not tell, where that was asked to fail
    exitNotComparable = 4,  ///< the reason is said
    exitCrash = 5,          ///< the new build crashes where the old one does not
    exitInterrupted = 130,  ///< resumable
};

/// A shared object that an instrument really had mapped.
struct SharedObject {
    std::string path;
    std::string sha256;
    std::string buildId;
};

/// One of the two builds.
struct Build {
    std::string name;     ///< as it was given
    std::string keys;     ///< of the instrument, for this build alone
    std::string library;  ///< its own line about itself
    std::string mask;     ///< of processor features
    std::vector<SharedObject> objects;
};

struct Machine {
    std::string processor;
    std::string kernel;
    std::string hypervisor;  ///< empty on a real machine
    std::string governor;    ///< empty where there is none
    int bits = 0;            ///< of the instruments
    int mhz = 0;             ///< tick frequency
    int core = -1;           ///< that both instruments ran on
    std::string siblings;    ///< processors that share the core, as the kernel lists them
    double load = 0;         ///< of the last minute, at the start
    double steal = 0;        ///< part of the time that other machines took, 0 to 1
};

/// A point: a function at one combination of parameters.
struct Point {
    std::string function;
    std::vector<std::pair<std::string, std::string>> parameters;  ///< in the order of the walk
    std::string unit;                                             ///< of the tables
    double divisor = 1;                                           ///< units in one call
    Decision decision;
    double older = 0;  ///< clocks of one call, 0: not measured
    double newer = 0;
    Fate olderFate;
    Fate newerFate;
    std::vector<std::string> marks;  ///< what stands beside the verdict: "same machine code", ...
};

struct Report {
    Build older;
    Build newer;
    Machine machine;
    double margin = 0.01;
    std::uint64_t seed = 0;
    double family = 0.01;    ///< probability of a false "slower" or "faster" anywhere, at most
    double seconds = 0;      ///< that the comparison took
    bool finished = true;    ///< false: interrupted, or out of time
    bool identical = false;  ///< both builds are the same to the byte
    std::vector<std::string> warnings;
    std::vector<std::string> onlyOlder;  ///< points that one build alone has
    std::vector<std::string> onlyNewer;
    std::vector<Point> points;
};

/// How many points have which verdict.
struct Counts {
    int slower = 0;
    int faster = 0;
    int same = 0;
    int unsure = 0;
    int crashed = 0;  ///< of the unsure ones, those at which the new build alone died
};

void add(Counts& counts, const Point& point);
Counts count(const std::vector<Point>& points);

/// What a finished comparison ends with.
ExitStatus exitStatus(const Report& report, bool failOnUnsure);

/// The clocks of one call over the pairs of a point: the median of the pairs' least. Sets older and newer.
void setClocks(Point& point, const std::vector<Pair>& pairs);

}  // namespace lab
