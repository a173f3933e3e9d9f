#include "history/chain.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <queue>
#include <string_view>
#include <utility>

namespace lab {

namespace {

std::size_t at(int index) { return static_cast<std::size_t>(index); }

Verdict turnedAround(Verdict verdict) {
    return verdict == Verdict::slower   ? Verdict::faster
           : verdict == Verdict::faster ? Verdict::slower
                                        : verdict;
}

Link linkOf(int number, const ComparisonEntry& comparison, const Finding& finding) {
    Link link{number,         comparison.older, comparison.newer, finding.verdict, finding.reason,
              finding.middle, finding.error,    finding.push,     finding.energy};
    if (link.older > link.newer) {
        std::swap(link.older, link.newer);
        link.verdict = turnedAround(link.verdict);
        link.middle = -link.middle;
        link.push = -link.push;
    }
    return link;
}

/// A way from one build to a neighbour.
struct Way {
    int to;
    double value;
    double variance;
};

using Ways = std::vector<std::vector<Way>>;

/// The shortest ways from `first` to all that can be reached, by variance.
void spread(const Ways& ways, int first, std::vector<Level>& levels) {
    struct Reached {
        double variance;
        int build;
        int from;
        double value;
        bool operator>(const Reached& other) const { return variance > other.variance; }
    };
    std::priority_queue<Reached, std::vector<Reached>, std::greater<>> next;
    next.push({0.0, first, -1, 0.0});
    while (!next.empty()) {
        const Reached here = next.top();
        next.pop();
        Level& level = levels[at(here.build)];
        if (level.known()) {
            continue;
        }
        level = {first, here.from, here.value, here.variance};
        for (const Way& way : ways[at(here.build)]) {
            if (!levels[at(way.to)].known()) {
                next.push({here.variance + way.variance, way.to, here.build, here.value + way.value});
            }
        }
    }
}

}  // namespace

Network::Network(const History& history, int method)
    : m_history(history),
      m_has(history.builds.size()),
      m_findings(history.points.size()),
      m_same(history.builds.size()) {
    for (std::size_t i = 0; i < history.comparisons.size(); ++i) {
        const ComparisonEntry& comparison = history.comparisons[i];
        if (comparison.method != method) {
            continue;
        }
        m_has[at(comparison.older)] = true;
        m_has[at(comparison.newer)] = true;
        for (const Finding& finding : comparison.findings) {
            m_findings[at(finding.point)].push_back({static_cast<int>(i), &finding});
        }
    }
    std::map<std::string_view, int> last;
    for (std::size_t i = 0; i < history.builds.size(); ++i) {
        if (!m_has[i]) {
            continue;
        }
        const auto [known, isNew] = last.emplace(history.builds[i].identity, static_cast<int>(i));
        if (!isNew) {
            m_same[i].push_back(known->second);
            m_same[at(known->second)].push_back(static_cast<int>(i));
            known->second = static_cast<int>(i);
        }
    }
}

std::vector<Link> Network::links(int point) const {
    std::vector<Link> links;
    for (const Place& place : m_findings[at(point)]) {
        links.push_back(
            linkOf(place.comparison, m_history.comparisons[at(place.comparison)], *place.finding));
    }
    return links;
}

std::vector<Level> Network::levels(const std::vector<Link>& links) const {
    const std::size_t count = m_history.builds.size();
    Ways ways(count);
    std::vector<bool> touched(count);
    for (const Link& link : links) {
        touched[at(link.older)] = true;
        touched[at(link.newer)] = true;
        if (link.error >= 0.0) {
            ways[at(link.older)].push_back({link.newer, link.middle, link.error * link.error});
            ways[at(link.newer)].push_back({link.older, -link.middle, link.error * link.error});
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        for (const int same : m_same[i]) {
            ways[i].push_back({same, 0.0, 0.0});
        }
    }
    std::vector<Level> levels(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (touched[i] && !levels[i].known()) {
            spread(ways, static_cast<int>(i), levels);
        }
    }
    return levels;
}

Difference difference(const std::vector<Level>& levels, int from, int to) {
    // the builds that the way to `from` comes by, up to where the way to `to` joins it
    std::vector<bool> passed(levels.size());
    for (int build = from; build >= 0; build = levels[at(build)].from) {
        passed[at(build)] = true;
    }
    int shared = to;
    while (shared >= 0 && !passed[at(shared)]) {
        shared = levels[at(shared)].from;
    }
    const double common = shared >= 0 ? levels[at(shared)].variance : 0.0;
    const double variance = levels[at(from)].variance + levels[at(to)].variance - 2 * common;
    return {levels[at(to)].value - levels[at(from)].value, std::sqrt(std::max(0.0, variance))};
}

}  // namespace lab
