#pragma once

/// The level of a point over builds: ratios put together along the comparisons of one method.

#include <vector>

#include "history/history.h"

namespace lab {

/// A comparison at one point, from the build that came first to the later one.
struct Link {
    int comparison = 0;  ///< index in the history
    int older = 0;       ///< indices of builds, older < newer but for a build with itself
    int newer = 0;
    Verdict verdict = Verdict::unsure;  ///< on the newer one
    Reason reason = Reason::none;
    double middle = 0;  ///< log(newer / older)
    double error = -1;  ///< of it; below 0: it says nothing of the ratio
    double push = 0;    ///< as a Finding has them, of newer / older
    double energy = 0;
};

/// A build's level at a point: log(build / first build of its chain).
struct Level {
    int chain = -1;  ///< number of the first build of the chain; -1: not known
    int from = -1;   ///< build that it was reckoned from; -1: the first of its chain
    double value = 0;
    double variance = 0;  ///< of the value
    bool known() const { return chain >= 0; }
};

/// log(to / from) of two builds.
struct Difference {
    double value = 0;
    double error = 0;  ///< a standard deviation
};

/// The comparisons of one method.
class Network {
  public:
    /// The history must outlive it.
    Network(const History& history, int method);

    /// All comparisons that know the point, in the order of adding.
    std::vector<Link> links(int point) const;

    /// A level for each build of the history. From the first build on, each gets the ratios of the way with
    /// the least variance in all. Builds that no way leads to begin a chain of their own.
    std::vector<Level> levels(const std::vector<Link>& links) const;

    /// Whether any comparison of the method has the build.
    bool has(int build) const { return m_has[static_cast<std::size_t>(build)]; }
    const History& history() const { return m_history; }

  private:
    struct Place {
        int comparison;
        const Finding* finding;
    };
    const History& m_history;
    std::vector<bool> m_has;
    std::vector<std::vector<Place>> m_findings;  ///< of each point
    std::vector<std::vector<int>> m_same;        ///< of each build, its neighbours with the same bytes
};

/// Of two builds of one chain. Their ways share what they have in common.
Difference difference(const std::vector<Level>& levels, int from, int to);

}  // namespace lab
