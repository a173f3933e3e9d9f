#include "history/overview.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <stdexcept>
#include <utility>

#include "history/historystore.h"

namespace lab {

namespace {

std::size_t at(int index) { return static_cast<std::size_t>(index); }

int methodChosen(const History& history, int number) {
    if (number == 0) {
        return history.comparisons.back().method;
    }
    if (number < 1 || number > static_cast<int>(history.methods.size())) {
        throw std::runtime_error(
            fmt::format("the history has {} method(s), no number {}", history.methods.size(), number));
    }
    return number - 1;
}

/// The build before the first one of that day; else the build named.
int sinceOf(const History& history, const std::vector<int>& builds, const std::string& text) {
    if (text.empty()) {
        return builds.front();
    }
    if (const int build = findBuild(history, text); build >= 0) {
        return build;
    }
    if (!isDay(text)) {
        throw std::runtime_error("the history has no build \"" + text +
                                 "\", and it is no day like 2026-11-23");
    }
    int since = builds.front();
    for (const int build : builds) {
        if (history.builds[at(build)].day >= text) {
            break;
        }
        since = build;
    }
    return since;
}

std::vector<ChainBreak> breaksOf(const Overview& overview) {
    std::map<std::pair<int, Reason>, int> counts;
    for (const PointHistory& point : overview.points) {
        for (const Break& its : point.breaks) {
            if (its.build > overview.since) {
                ++counts[{its.build, its.reason}];
            }
        }
    }
    std::vector<ChainBreak> breaks;
    breaks.reserve(counts.size());
    for (const auto& [where, points] : counts) {
        breaks.push_back({where.first, where.second, points});
    }
    return breaks;
}

/// How much a point has to say: the less, the more.
struct Telling {
    int group = 4;  ///< slower, in doubt, faster, spikes alone, nothing
    double size = 0;
    bool operator<(const Telling& other) const {
        return group != other.group ? group < other.group : size > other.size;
    }
};

Telling tellingOf(const Overview& overview, const PointHistory& point) {
    Telling telling;
    telling.size = std::abs(nowOf(overview, point).level.value);
    const auto tell = [&](int group, double size) {
        telling = std::min(telling, Telling{group, std::abs(size)});
    };
    for (const Change& change : shownChanges(overview, point)) {
        tell(change.slower() ? 0 : 2, change.size.value);
    }
    for (const Departure& departure : shownDepartures(overview, point)) {
        tell(departure.state == Departure::State::spike ? 3 : 1, departure.size.value);
    }
    return telling;
}

}  // namespace

bool isDay(const std::string& text) {
    constexpr std::string_view shape = "0000-00-00";
    return text.size() == shape.size() &&
           std::equal(text.begin(), text.end(), shape.begin(),
                      [](char c, char s) { return s == '0' ? c >= '0' && c <= '9' : c == s; });
}

Overview overviewOf(const History& history, const Choice& choice) {
    if (history.comparisons.empty()) {
        throw std::runtime_error("the history is empty");
    }
    Overview overview;
    overview.history = &history;
    overview.method = methodChosen(history, choice.method);
    overview.margin = history.comparisons.back().margin;
    overview.comparisons = static_cast<int>(
        std::count_if(history.comparisons.begin(), history.comparisons.end(),
                      [&](const ComparisonEntry& entry) { return entry.method == overview.method; }));
    const Network network(history, overview.method);
    for (int build = 0; build < static_cast<int>(history.builds.size()); ++build) {
        if (network.has(build)) {
            overview.builds.push_back(build);
        }
    }
    overview.since = sinceOf(history, overview.builds, choice.since);
    const double wanted = evidenceWanted(static_cast<int>(history.points.size()));
    std::vector<PointHistory> all;
    for (std::size_t point = 0; point < history.points.size(); ++point) {
        all.push_back(pointHistory(network, static_cast<int>(point), overview.margin, wanted));
    }
    // whether the next build is measured against the last one is no matter of what is shown
    overview.good = lastGood(network, all);
    for (PointHistory& point : all) {
        const std::string& function = history.points[at(point.point)].function;
        if (!point.links.empty() && (choice.function.empty() || function == choice.function)) {
            overview.points.push_back(std::move(point));
        }
    }
    if (overview.points.empty()) {
        throw std::runtime_error("the history has no function \"" + choice.function +
                                 "\" measured like that");
    }
    overview.breaks = breaksOf(overview);
    return overview;
}

std::vector<Change> shownChanges(const Overview& overview, const PointHistory& point) {
    std::vector<Change> shown = point.changes;
    std::erase_if(shown, [&](const Change& change) { return change.to <= overview.since; });
    return shown;
}

std::vector<Departure> shownDepartures(const Overview& overview, const PointHistory& point) {
    std::vector<Departure> shown = point.departures;
    std::erase_if(shown, [&](const Departure& departure) { return departure.to <= overview.since; });
    return shown;
}

Now nowOf(const Overview& overview, const PointHistory& point) {
    Now now;
    for (int build = static_cast<int>(point.levels.size()) - 1; build >= 0 && now.to < 0; --build) {
        now.to = point.levels[at(build)].known() ? build : -1;
    }
    if (now.to < 0) {
        return now;
    }
    const int chain = point.levels[at(now.to)].chain;
    now.from = point.levels[at(overview.since)].chain == chain ? overview.since : chain;
    now.level = difference(point.levels, now.from, now.to);
    return now;
}

bool hasChange(const Overview& overview, bool slowerOnly) {
    return std::any_of(overview.points.begin(), overview.points.end(), [&](const PointHistory& point) {
        const std::vector<Change> changes = shownChanges(overview, point);
        return std::any_of(changes.begin(), changes.end(),
                           [&](const Change& change) { return !slowerOnly || change.slower(); });
    });
}

std::vector<std::vector<std::size_t>> byFunction(const Overview& overview) {
    std::vector<Telling> tellings;
    std::map<std::string_view, std::vector<std::size_t>> functions;
    for (std::size_t i = 0; i < overview.points.size(); ++i) {
        tellings.push_back(tellingOf(overview, overview.points[i]));
        functions[overview.history->points[at(overview.points[i].point)].function].push_back(i);
    }
    const auto tellsMore = [&](std::size_t one, std::size_t other) {
        return tellings[one] < tellings[other];
    };
    std::vector<std::vector<std::size_t>> all;
    for (auto& [function, points] : functions) {
        std::stable_sort(points.begin(), points.end(), tellsMore);
        all.push_back(std::move(points));
    }
    std::stable_sort(all.begin(), all.end(), [&](const auto& one, const auto& other) {
        return tellsMore(one.front(), other.front());
    });
    return all;
}

std::string differenceText(const Method& method, const Method& before) {
    std::string text;
    const auto differ = [&](std::string_view what, const std::string& its, const std::string& other) {
        if (its != other) {
            text += fmt::format("{}other {} ({}; before: {})", text.empty() ? "" : ", ", what,
                                its.empty() ? "none" : its, other.empty() ? "none" : other);
        }
    };
    differ("processor", method.processor, before.processor);
    differ("width", fmt::format("{} bits", method.bits), fmt::format("{} bits", before.bits));
    differ("keys", method.keys, before.keys);
    differ("turns", method.turn, before.turn);
    return text;
}

}  // namespace lab
