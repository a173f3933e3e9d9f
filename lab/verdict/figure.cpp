/// The turns of all processes are put in order by what they say. The floor is at their low end; clusters are
/// the densest windows of the rest, so that a few wild turns make none.

#include "verdict/figure.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>

#include "verdict/statistics.h"

namespace lab {
namespace {

/// Two turns that are no farther apart say the same of the floor.
constexpr double SameFloor = 0.003;
/// The floor's figure takes in turns that lie no farther above.
constexpr double FloorWidth = 0.0005;
/// A turn within it has reached the floor, and turns within it are one cluster.
constexpr double ClusterWidth = 0.02;
constexpr std::size_t MostClusters = 4;
/// A cluster has this share of all turns, at least.
constexpr double ClusterShare = 0.1;
/// A process lies in a cluster with this share of its turns, and a cluster in processes with this share of
/// its own.
constexpr double WholeShare = 0.8;
/// A turn of the bare loop that takes no longer holds the counter alone, which is stepped beside the call and
/// takes no time of its own. That is a clock at most, on a busy core or across a cache line up to two.
constexpr double LoopOfCounter = 2.0;
constexpr double Counter = 1.0;

struct Said {
    double clocks = 0;
    std::size_t process = 0;
    bool operator<(const Said& other) const { return clocks < other.clocks; }
};
using Saids = std::vector<Said>;

/// What is taken off, and the step of the clock.
struct Costs {
    double empty = std::numeric_limits<double>::infinity();  ///< of a block
    double loop = std::numeric_limits<double>::infinity();   ///< of a call, clock reads taken off
    double step = 0;                                         ///< of the clock, as a part of a block at most
    std::int64_t calls = 1;                                  ///< in a block of any turn, at most
};

/// Blocks of fewer calls were chosen while something disturbed; a step of the clock is too much of them.
bool counts(const Turn& turn, const Costs& costs) {
    return !turn.ticks.empty() && turn.calls > 0 && 2 * turn.calls >= costs.calls;
}

std::int64_t least(const Turn& turn) { return *std::min_element(turn.ticks.begin(), turn.ticks.end()); }

Costs costsOf(std::span<const std::vector<Turn>> processes) {
    Costs costs;
    std::int64_t step = 0;
    for (const std::vector<Turn>& turns : processes) {
        for (const Turn& turn : turns) {
            costs.calls = std::max(costs.calls, turn.calls);
        }
    }
    for (const std::vector<Turn>& turns : processes) {
        for (const Turn& turn : turns) {
            if (!counts(turn, costs)) {
                continue;
            }
            costs.empty = std::min(costs.empty, static_cast<double>(turn.empty));
            costs.loop = std::min(
                costs.loop, static_cast<double>(turn.loop - turn.empty) / static_cast<double>(turn.calls));
            for (const std::int64_t ticks : turn.ticks) {
                step = std::gcd(step, ticks - turn.ticks.front());
            }
        }
    }
    costs.loop = std::max(0.0, costs.loop);
    costs.step = static_cast<double>(std::max<std::int64_t>(1, step));
    return costs;
}

/// A call that costs no more than is to be taken off keeps its time.
double clocksOf(const Turn& turn, const Costs& costs) {
    const auto calls = static_cast<double>(turn.calls);
    const double block = static_cast<double>(least(turn));
    const double clocks =
        (block - costs.empty) / calls - (costs.loop > LoopOfCounter ? costs.loop - Counter : 0.0);
    return clocks > 0 ? clocks : block / calls;
}

/// In rising order.
Saids saidBy(std::span<const std::vector<Turn>> processes, Costs& costs) {
    Saids all;
    double longest = 0;
    for (std::size_t process = 0; process < processes.size(); ++process) {
        for (const Turn& turn : processes[process]) {
            if (counts(turn, costs)) {
                all.push_back({clocksOf(turn, costs), process});
                longest = std::max(longest, static_cast<double>(least(turn)));
            }
        }
    }
    std::sort(all.begin(), all.end());
    costs.step = longest > 0 ? costs.step / longest : 0;
    return all;
}

/// The first turn of those within `width` of turn `first`, and the one behind the last.
Saids::const_iterator endWithin(const Saids& all, Saids::const_iterator first, double width) {
    return std::upper_bound(first, all.end(), Said{first->clocks * (1 + width), 0});
}

double mean(Saids::const_iterator first, Saids::const_iterator end) {
    const double sum = std::accumulate(first, end, 0.0,
                                       [](double before, const Said& said) { return before + said.clocks; });
    return sum / static_cast<double>(std::distance(first, end));
}

/// The least turn that a second one confirms; the first without any.
Saids::const_iterator floorOf(const Saids& all, double step) {
    const double width = std::max(SameFloor, step);
    for (auto turn = all.begin(); turn + 1 < all.end(); ++turn) {
        if ((turn + 1)->clocks <= turn->clocks * (1 + width)) {
            return turn;
        }
    }
    return all.begin();
}

bool liesByProcess(const Saids& cluster, const std::vector<std::size_t>& turnsOfProcess) {
    std::vector<std::size_t> inside(turnsOfProcess.size());
    for (const Said& said : cluster) {
        ++inside[said.process];
    }
    std::size_t whole = 0;
    for (std::size_t process = 0; process < inside.size(); ++process) {
        const bool lies =
            static_cast<double>(inside[process]) >= WholeShare * static_cast<double>(turnsOfProcess[process]);
        whole += lies ? inside[process] : 0;
    }
    return static_cast<double>(whole) >= WholeShare * static_cast<double>(cluster.size());
}

std::vector<double> clocksIn(const Saids& turns) {
    std::vector<double> clocks;
    clocks.reserve(turns.size());
    for (const Said& said : turns) {
        clocks.push_back(said.clocks);
    }
    return clocks;
}

/// The densest window of `rest`, taken out of it.
Saids takeDensest(Saids& rest, double width) {
    auto best = rest.begin();
    auto bestEnd = best;
    for (auto first = rest.begin(); first != rest.end(); ++first) {
        const auto end = rest.begin() + (endWithin(rest, first, width) - rest.cbegin());
        if (end - first > bestEnd - best) {
            best = first;
            bestEnd = end;
        }
    }
    Saids cluster(best, bestEnd);
    rest.erase(best, bestEnd);
    return cluster;
}

/// Beside the floor's, which is what is below it and within reach.
std::vector<Cluster> clustersOf(const Saids& all, double floor, double width, std::size_t processes) {
    std::vector<std::size_t> turnsOfProcess(processes);
    for (const Said& said : all) {
        ++turnsOfProcess[said.process];
    }
    const auto clusterOf = [&](const Saids& turns) {
        return Cluster{median(clocksIn(turns)), turns.size(), liesByProcess(turns, turnsOfProcess)};
    };
    const auto end = std::upper_bound(all.begin(), all.end(), Said{floor * (1 + width), 0});
    std::vector<Cluster> clusters{clusterOf(Saids(all.begin(), end))};
    clusters.front().clocks = floor;
    Saids rest(end, all.end());
    while (clusters.size() < MostClusters && !rest.empty()) {
        const Saids densest = takeDensest(rest, width);
        if (static_cast<double>(densest.size()) < ClusterShare * static_cast<double>(all.size())) {
            break;
        }
        clusters.push_back(clusterOf(densest));
    }
    std::sort(clusters.begin() + 1, clusters.end(),
              [](const Cluster& a, const Cluster& b) { return a.clocks < b.clocks; });
    return clusters;
}

/// The least turn of each process that has one, in rising order.
std::vector<double> leastOfProcesses(const Saids& all, std::size_t processes) {
    std::vector<double> leasts;
    std::vector<bool> seen(processes);
    for (const Said& said : all) {
        if (!seen[said.process]) {
            seen[said.process] = true;
            leasts.push_back(said.clocks);
        }
    }
    return leasts;
}

}  // namespace

std::optional<Figure> figureOf(std::span<const std::vector<Turn>> processes) {
    Costs costs = costsOf(processes);
    const Saids all = saidBy(processes, costs);
    if (all.empty()) {
        return std::nullopt;
    }
    const auto first = floorOf(all, costs.step);
    Figure figure;
    figure.floor = mean(first, endWithin(all, first, std::max(FloorWidth, costs.step)));
    const std::vector<double> clocks = clocksIn(all);
    figure.median = median(clocks);
    figure.spread = deviation(clocks);
    const std::vector<double> leasts = leastOfProcesses(all, processes.size());
    constexpr std::size_t ProcessesForSecond = 8;
    const std::size_t rank = leasts.size() >= ProcessesForSecond ? 1 : 0;
    figure.low = leasts[rank];
    figure.high = leasts[leasts.size() - 1 - rank];
    figure.loop = costs.loop;
    figure.turns = all.size();
    figure.processes = leasts.size();
    figure.clusters = clustersOf(all, figure.floor, std::max(ClusterWidth, costs.step), processes.size());
    figure.reached = figure.clusters.front().turns;
    return figure;
}

}  // namespace lab
