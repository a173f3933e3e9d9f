/// When a history says that a level has changed.
///
/// Each pair of processes of each comparison gives log(newer / older) at a point. Which side is copied first,
/// started first and first in each turn is drawn by lot, so where two builds do not differ, its sign is a
/// fair coin, whatever came before and however the values are spread (verdict/plan.cpp uses the same). Values
/// are cut off at the margin and counted in margins, which leaves signs alone: x(1), x(2), ... within -1 and
/// 1, in the order of adding. With S the sum of them and V the sum of their squares
///
///     E[exp(l x - l^2 x^2 / 2)] = E[cosh(l x) exp(-l^2 x^2 / 2)] <= 1      for every l,
///
/// so exp(l S - l^2 V / 2) is the wealth of a gambler in a game that is not in his favour. Mixed over l by a
/// normal distribution of variance 1 the wealth is
///
///     W = exp(S^2 / (2 (V + 1))) / sqrt(V + 1),
///
/// and the probability that it ever reaches 1/a is at most a (Ville's inequality), whenever one looks and
/// whatever makes one stop: comparisons may end early, be repeated, or choose their builds by what was seen.
///
/// A change may begin at any build, and pairs before it would only dilute it. So there is a gambler for each
/// build, who bets on the comparisons of builds from his on. Each of P points has 365 of them a year and may
/// err in either direction, so each must reach
///
///     W >= P * 365 / 1%:
///
/// builds that do not differ make a history of a year say a change anywhere with a probability of at most 1%.
///
/// Certain is not yet relevant or lasting. A change is told only when the levels of two builds in a row lie
/// beyond the margin around that of the gambler's build, in the direction of S: a single build that is off, a
/// spike, is none. The gambler must also have what is wanted without the comparisons of such builds, whose
/// evidence would linger. What has been told ends the segment, and gamblers of later builds take over.
///
/// Where it is: by the levels from the gambler's build to the last. If two constant levels with a step
/// between fit them better than a straight line does (sum of distances), it is a step, else a drift.

#include "history/changes.h"

#include <algorithm>
#include <cmath>

#include "verdict/statistics.h"

namespace lab {

namespace {

std::size_t at(int index) { return static_cast<std::size_t>(index); }

/// Builds after a departure during which it keeps back what the next build is measured against.
constexpr int BuildsInDoubt = 4;

/// A drift that pauses for no more builds is one drift.
constexpr int LongestPause = 4;

/// The known levels of one chain from build `first` to `last`.
std::vector<int> knownBuilds(const std::vector<Level>& levels, int first, int last) {
    std::vector<int> builds;
    for (int build = first; build <= last; ++build) {
        if (levels[at(build)].chain == levels[at(last)].chain) {
            builds.push_back(build);
        }
    }
    return builds;
}

double distances(const std::vector<double>& values) {
    const double middle = median(values);
    double sum = 0.0;
    for (const double value : values) {
        sum += std::abs(value - middle);
    }
    return sum;
}

double distancesFromLine(const std::vector<double>& values) {
    double sum = 0.0;
    const auto steps = static_cast<double>(values.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double line =
            values.front() + (values.back() - values.front()) * static_cast<double>(i) / steps;
        sum += std::abs(values[i] - line);
    }
    return sum;
}

/// A change between two builds of one chain that are known to differ: the gambler's and the last.
Change located(const std::vector<Level>& levels, int first, int last) {
    const std::vector<int> builds = knownBuilds(levels, first, last);
    std::vector<double> values;
    values.reserve(builds.size());
    for (const int build : builds) {
        values.push_back(levels[at(build)].value);
    }
    std::size_t best = 0;
    double least = distancesFromLine(values);
    for (std::size_t split = 1; split < values.size(); ++split) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(split);
        const double sum = distances({values.begin(), middle}) + distances({middle, values.end()});
        if (sum <= least) {
            best = split;
            least = sum;
        }
    }
    Change change;
    change.drift = best == 0;
    change.from = change.drift ? first : builds[best - 1];
    change.to = change.drift ? last : builds[best];
    change.told = last;
    change.size = difference(levels, change.from, change.to);
    return change;
}

/// The gamblers of a segment, by their builds.
class Gamblers {
  public:
    explicit Gamblers(std::size_t builds) : m_all(builds), m_steady(builds) {}

    void bet(const Link& link, bool steady) {
        for (int build = m_first; build <= link.older; ++build) {
            m_all[at(build)].add(link);
            if (steady) {
                m_steady[at(build)].add(link);
            }
        }
    }
    /// The richest of those who have what is wanted, and whose level differs from that of both builds by more
    /// than `limit`; -1: none.
    int winner(const std::vector<Level>& levels, int before, int last, double limit, double wanted) const {
        int best = -1;
        for (int build = m_first; build < before; ++build) {
            const Purse& purse = m_steady[at(build)];
            if (!purse.mayHave(wanted) || levels[at(build)].chain != levels[at(last)].chain) {
                continue;
            }
            const double sign = purse.push > 0 ? 1.0 : -1.0;
            const auto beyond = [&](int other) {
                return sign * (levels[at(other)].value - levels[at(build)].value) > limit;
            };
            if (beyond(before) && beyond(last) && m_all[at(build)].evidence() >= wanted &&
                purse.evidence() >= (best < 0 ? wanted : m_steady[at(best)].evidence())) {
                best = build;
            }
        }
        return best;
    }
    void begin(int build) { m_first = build; }

  private:
    struct Purse {
        double push = 0;
        double energy = 0;
        void add(const Link& link) {
            push += link.push;
            energy += link.energy;
        }
        /// Quick, and true wherever the evidence is enough.
        bool mayHave(double wanted) const { return push * push >= 2 * wanted * (energy + 1); }
        double evidence() const { return evidenceOf(push, energy); }
    };
    std::vector<Purse> m_all;
    std::vector<Purse> m_steady;  ///< without spikes
    int m_first = 0;
};

/// The last build before it whose level is known in the same chain; -1: none.
int buildBefore(const std::vector<Level>& levels, int build) {
    for (int before = build - 1; before >= 0; --before) {
        if (levels[at(before)].chain == levels[at(build)].chain) {
            return before;
        }
    }
    return -1;
}

int buildAfter(const std::vector<Level>& levels, int build) {
    for (int after = build + 1; after < static_cast<int>(levels.size()); ++after) {
        if (levels[at(after)].chain == levels[at(build)].chain) {
            return after;
        }
    }
    return -1;
}

void put(std::vector<Change>& changes, const Change& change, const std::vector<Level>& levels) {
    if (!changes.empty() && change.drift && changes.back().drift &&
        change.from - changes.back().to <= LongestPause && changes.back().slower() == change.slower()) {
        Change& last = changes.back();
        last.to = change.to;
        last.size = difference(levels, last.from, last.to);
    } else {
        changes.push_back(change);
    }
}

bool accountedFor(const Departure& departure, const std::vector<Change>& changes) {
    return std::any_of(changes.begin(), changes.end(), [&](const Change& change) {
        return departure.from < change.to && departure.to > change.from;
    });
}

bool isSpike(int build, const std::vector<Departure>& departures) {
    return std::any_of(departures.begin(), departures.end(), [&](const Departure& departure) {
        return departure.state == Departure::State::spike && departure.to == build;
    });
}

/// A link into or out of what is known already is no departure of its own.
bool repeats(const Link& link, const std::vector<Departure>& departures) {
    return std::any_of(departures.begin(), departures.end(), [&](const Departure& departure) {
        const bool again = departure.to > link.older && departure.to <= link.newer &&
                           departure.slower() == (link.verdict == Verdict::slower);
        return again || isSpike(link.older, {departure});
    });
}

}  // namespace

double evidenceWanted(int points) { return std::log(std::max(1, points) * YearOfBuilds / YearlyFalse); }

double evidenceOf(double push, double energy) {
    return push * push / (2 * (energy + 1)) - std::log(energy + 1) / 2;
}

std::vector<Departure> findDepartures(const std::vector<Link>& links, const std::vector<Level>& levels) {
    std::vector<Departure> departures;
    for (const Link& link : links) {
        const bool differs = link.verdict == Verdict::slower || link.verdict == Verdict::faster;
        if (!differs || link.error < 0.0 || repeats(link, departures)) {
            continue;
        }
        Departure departure;
        departure.from = link.older;
        departure.to = link.newer;
        departure.size = {link.middle, link.error};
        const int after = buildAfter(levels, link.newer);
        if (after >= 0) {
            const double left = difference(levels, link.older, after).value / link.middle;
            departure.state = left < 0.5 ? Departure::State::spike : Departure::State::once;
        }
        departures.push_back(departure);
    }
    return departures;
}

std::vector<Change> findChanges(const std::vector<Link>& links, const std::vector<Level>& levels,
                                const std::vector<Departure>& departures, double margin, double wanted) {
    std::vector<Change> changes;
    Gamblers gamblers(levels.size());
    // a spike is no level that anything could have changed from or to
    std::vector<Level> steady = levels;
    for (const Departure& departure : departures) {
        if (departure.state == Departure::State::spike) {
            steady[at(departure.to)].chain = -1;
        }
    }
    for (const Link& link : links) {
        gamblers.bet(link, !isSpike(link.newer, departures) && !isSpike(link.older, departures));
        const int before = buildBefore(steady, link.newer);
        if (before < 0 || !steady[at(link.newer)].known()) {
            continue;
        }
        const int first = gamblers.winner(steady, before, link.newer, std::log1p(margin), wanted);
        if (first >= 0) {
            const Change change = located(steady, first, link.newer);
            put(changes, change, steady);
            gamblers.begin(change.to);
        }
    }
    return changes;
}

PointHistory pointHistory(const Network& network, int point, double margin, double wanted) {
    PointHistory history;
    history.point = point;
    history.links = network.links(point);
    history.levels = network.levels(history.links);
    history.departures = findDepartures(history.links, history.levels);
    history.changes = findChanges(history.links, history.levels, history.departures, margin, wanted);
    std::erase_if(history.departures, [&](const Departure& departure) {
        return departure.state != Departure::State::spike && accountedFor(departure, history.changes);
    });
    bool any = false;
    for (int build = 0; build < static_cast<int>(history.levels.size()); ++build) {
        if (history.levels[at(build)].chain != build) {
            continue;
        }
        if (any) {
            const auto into = std::find_if(history.links.begin(), history.links.end(),
                                           [&](const Link& link) { return link.newer == build; });
            history.breaks.push_back({build, into == history.links.end() ? Reason::none : into->reason});
        }
        any = true;
    }
    return history;
}

int lastGood(const Network& network, const std::vector<PointHistory>& points) {
    int newest = static_cast<int>(network.history().builds.size()) - 1;
    while (newest > 0 && !network.has(newest)) {
        --newest;
    }
    int good = newest;
    for (const PointHistory& point : points) {
        for (const Departure& departure : point.departures) {
            if (departure.state != Departure::State::spike && newest - departure.to < BuildsInDoubt) {
                good = std::min(good, departure.from);
            }
        }
    }
    return good;
}

}  // namespace lab
