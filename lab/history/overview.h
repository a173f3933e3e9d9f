#pragma once

/// A history as it is shown: one structure for the terminal, for programs and for pages.

#include <string>
#include <vector>

#include "history/changes.h"
#include "history/history.h"

namespace lab {

/// Which part of a history is shown.
struct Choice {
    std::string since;     ///< a build as findBuild() takes it, or a day "2026-11-23"; empty: all
    std::string function;  ///< its points alone; empty: all functions
    int method = 0;        ///< number of the method, from 1; 0: that of the last comparison
};

/// How many points a chain is broken at.
struct ChainBreak {
    int build = 0;
    Reason reason = Reason::none;  ///< as Break has it
    int points = 0;
};

/// Whether it is a day like "2026-11-23".
bool isDay(const std::string& text);

struct Overview {
    const History* history = nullptr;
    int method = 0;           ///< index
    std::vector<int> builds;  ///< that the method has measured, in their order
    int comparisons = 0;      ///< of the method
    int since = 0;            ///< build that levels are shown against and changes after
    int good = 0;             ///< build to measure the next one against
    double margin = 0.01;
    std::vector<PointHistory> points;  ///< those chosen that the method knows
    std::vector<ChainBreak> breaks;
};

/// std::runtime_error if the history has no comparison, or nothing of what was chosen. The history must
/// outlive it.
Overview overviewOf(const History& history, const Choice& choice);

/// What of a point lies in the shown range.
std::vector<Change> shownChanges(const Overview& overview, const PointHistory& point);
std::vector<Departure> shownDepartures(const Overview& overview, const PointHistory& point);

/// The level of the last build of a point, against the shown first one or, after a break, the first of its
/// chain.
struct Now {
    int from = -1;  ///< builds; -1: no level at all
    int to = -1;
    Difference level;
};
Now nowOf(const Overview& overview, const PointHistory& point);

/// A figure that a measurement keeps of a point.
struct MeasuredFigure {
    const MeasurementEntry* entry = nullptr;
    const KeptFigure* figure = nullptr;
};

/// The figures of each point of the history, by index there, in the order of builds: those measured on the
/// processor, in the width and with the keys of the overview's method.
std::vector<std::vector<MeasuredFigure>> figuresOf(const Overview& overview);

/// Whether a change (`slowerOnly`: to slower) lies in the shown range.
bool hasChange(const Overview& overview, bool slowerOnly);

/// The points of the overview, by index there, a list for each function, what speaks for it first; functions
/// that changed most first.
std::vector<std::vector<std::size_t>> byFunction(const Overview& overview);

/// In what a method differs from another: "other processor (Fine One; before: Other One)".
std::string differenceText(const Method& method, const Method& before);

}  // namespace lab
