#pragma once

/// What is known so far of each point, and what follows from it.

#include <array>
#include <span>
#include <string>
#include <vector>

#include "store/store.h"
#include "verdict/plan.h"
#include "verdict/verdict.h"

namespace lab {

class EvidenceTable {
  public:
    EvidenceTable(const std::vector<StoredPoint>& points, const Plan& plan, double margin);

    /// In the order of pairs.
    void add(const StoredVisit& visit);
    /// Closes the function's points that are open still.
    void setFate(const std::string& function, const std::array<Fate, 2>& fates);

    /// The decisions on all points by what was added so far.
    void decideAll();

    const std::vector<Decision>& decisions() const { return m_decisions; }
    bool isOpen(std::size_t point) const;
    /// Whether the next pair at the point is asked to confirm.
    bool wantsFresh(std::size_t point) const { return m_decisions[point].next == Next::fresh; }
    /// Visits that open points ask for until their next look, all together.
    int visitsWanted() const;
    /// Points that both sides have, and those of them that are closed.
    int comparedPoints() const;
    int closedPoints() const;

    const std::array<Fate, 2>& fates(std::size_t point) const { return m_points[point].fates; }
    /// All pairs of the point.
    std::vector<Pair> pairs(std::size_t point) const;

  private:
    struct Known {
        std::string function;
        bool compared = false;
        std::vector<Pair> pairs;
        std::vector<Pair> fresh;
        int barren = 0;  ///< visits without a turn of both sides
        std::array<Fate, 2> fates;
    };

    std::vector<Known> m_points;
    std::vector<Decision> m_decisions;
    Plan m_plan;
    double m_margin;
};

/// The plan of a comparison of these points; `family` as makePlan takes it.
Plan planFor(const std::vector<StoredPoint>& points, std::span<const int> looks, double family = 0.01);

}  // namespace lab
