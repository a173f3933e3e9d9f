#include "compare/evidence.h"

#include <algorithm>

namespace lab {

namespace {

/// Visits without a turn after which no further one is made: the library refuses the point on both sides,
/// say.
constexpr int MostBarren = 2;

}  // namespace

EvidenceTable::EvidenceTable(const std::vector<StoredPoint>& points, const Plan& plan, double margin)
    : m_decisions(points.size()), m_plan(plan), m_margin(margin) {
    for (const StoredPoint& point : points) {
        m_points.push_back({point.function, point.older && point.newer, {}, {}, 0, {}});
    }
}

void EvidenceTable::add(const StoredVisit& visit) {
    Known& known = m_points.at(static_cast<std::size_t>(visit.point));
    for (std::size_t side = 0; side < 2; ++side) {
        if (visit.fates[side] != Fate()) {
            known.fates[side] = visit.fates[side];
        }
    }
    if (const auto pair = pairOf(visit.turns)) {
        (visit.fresh ? known.fresh : known.pairs).push_back(*pair);
    } else {
        ++known.barren;
    }
}

void EvidenceTable::setFate(const std::string& function, const std::array<Fate, 2>& fates) {
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (m_points[i].function == function && isOpen(i)) {
            m_points[i].fates = fates;
        }
    }
}

void EvidenceTable::decideAll() {
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (isOpen(i)) {
            const Known& known = m_points[i];
            m_decisions[i] =
                decide({known.pairs, known.fresh, known.fates[0], known.fates[1]}, m_plan, m_margin);
            if (known.barren >= MostBarren) {
                m_decisions[i].next = Next::nothing;
            }
        }
    }
}

bool EvidenceTable::isOpen(std::size_t point) const {
    return m_points[point].compared && m_decisions[point].next != Next::nothing;
}

int EvidenceTable::visitsWanted() const {
    int visits = 0;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (isOpen(i)) {
            const auto have = wantsFresh(i) ? m_points[i].fresh.size() : m_points[i].pairs.size();
            visits += std::max(1, m_decisions[i].wanted - static_cast<int>(have));
        }
    }
    return visits;
}

int EvidenceTable::comparedPoints() const {
    return static_cast<int>(
        std::count_if(m_points.begin(), m_points.end(), [](const Known& known) { return known.compared; }));
}

int EvidenceTable::closedPoints() const {
    int closed = 0;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        closed += m_points[i].compared && !isOpen(i) ? 1 : 0;
    }
    return closed;
}

std::vector<Pair> EvidenceTable::pairs(std::size_t point) const {
    std::vector<Pair> all = m_points[point].pairs;
    all.insert(all.end(), m_points[point].fresh.begin(), m_points[point].fresh.end());
    return all;
}

Plan planFor(const std::vector<StoredPoint>& points, std::span<const int> looks, double family) {
    const auto compared = std::count_if(points.begin(), points.end(),
                                        [](const StoredPoint& point) { return point.older && point.newer; });
    return makePlan(static_cast<int>(std::max<std::ptrdiff_t>(1, compared)), looks, family);
}

}  // namespace lab
