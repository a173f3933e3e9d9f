#pragma once

/// Where the level of a point changed, for good or for one build.

#include <vector>

#include "history/chain.h"

namespace lab {

/// Builds that stand for a year, and the probability of telling any change in it where there is none.
constexpr int YearOfBuilds = 365;
constexpr double YearlyFalse = 0.01;

/// A change of level that has lasted two builds.
struct Change {
    bool drift = false;  ///< false: a step, at `to`
    int from = 0;        ///< last build of the old level
    int to = 0;          ///< first build of the new level; of a drift the build up to which it is known
    int told = 0;        ///< build at which it was certain first
    Difference size;     ///< from `from` to `to`
    bool slower() const { return size.value > 0; }
};

/// A build that a comparison called slower or faster.
struct Departure {
    enum class State {
        spike,  ///< the next build had lost more than half of it
        once,   ///< it stays, but one comparison alone has seen it
        fresh,  ///< no later build was measured
    };
    State state = State::fresh;
    int from = 0;  ///< build it was compared with
    int to = 0;
    Difference size;
    bool slower() const { return size.value > 0; }
};

/// Where the levels of a point begin anew.
struct Break {
    int build = 0;                 ///< first of the new chain
    Reason reason = Reason::none;  ///< why the comparison into it gave no ratio; none: there is no comparison
};

/// A point over all builds.
struct PointHistory {
    int point = 0;
    std::vector<Link> links;
    std::vector<Level> levels;  ///< of each build of the history
    std::vector<Change> changes;
    std::vector<Departure> departures;  ///< that no change accounts for
    std::vector<Break> breaks;
};

/// What the evidence must come to, as the logarithm of a bet's gain, before a change is told at one of so
/// many points.
double evidenceWanted(int points);

/// The logarithm of what the bet against "nothing changed" has gained; see changes.cpp.
double evidenceOf(double push, double energy);

/// In the order of builds they came from; changes are not taken out yet. `links` in the order of adding.
std::vector<Departure> findDepartures(const std::vector<Link>& links, const std::vector<Level>& levels);

/// `margin`: changes within it are none; `wanted` as evidenceWanted() tells.
std::vector<Change> findChanges(const std::vector<Link>& links, const std::vector<Level>& levels,
                                const std::vector<Departure>& departures, double margin, double wanted);

/// All of a point.
PointHistory pointHistory(const Network& network, int point, double margin, double wanted);

/// The build to measure the next one against: the latest that no departure in doubt lies behind.
int lastGood(const Network& network, const std::vector<PointHistory>& points);

}  // namespace lab
