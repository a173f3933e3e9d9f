#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "history/historytable.h"

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

/// More digits than it is worth; null where there is no figure.
Json figure(double value) {
    constexpr double unit = 1e6;
    return std::isfinite(value) ? Json(std::round(value * unit) / unit) : Json(nullptr);
}

Json clocks(double value) { return value > 0 ? figure(value) : Json(nullptr); }

class Document {
  public:
    explicit Document(const Overview& overview)
        : m_overview(overview), m_history(*overview.history), m_figures(figuresOf(overview)) {
        m_numbers.resize(m_history.builds.size(), -1);
        for (std::size_t i = 0; i < overview.builds.size(); ++i) {
            m_numbers[static_cast<std::size_t>(overview.builds[i])] = static_cast<int>(i);
        }
    }

    Json all() const {
        Json functions = Json::array();
        for (const std::vector<std::size_t>& function : byFunction(m_overview)) {
            Json points = Json::array();
            for (const std::size_t point : function) {
                points.push_back(ofPoint(m_overview.points[point]));
            }
            functions.push_back(
                {{"function", nameOf(m_overview.points[function.front()]).function}, {"points", points}});
        }
        const Method& method = m_history.methods[static_cast<std::size_t>(m_overview.method)];
        return {{"schema", "metrig-lab.history"},
                {"version", 1},
                {"sentence", historySentence(m_overview)},
                {"method",
                 {{"processor", method.processor},
                  {"bits", method.bits},
                  {"keys", method.keys},
                  {"turn", method.turn}}},
                {"others", others(method)},
                {"margin", m_overview.margin},
                {"family", YearlyFalse},
                {"year", YearOfBuilds},
                {"comparisons", m_overview.comparisons},
                {"since", number(m_overview.since)},
                {"good", number(m_overview.good)},
                {"builds", builds()},
                {"breaks", breaks()},
                {"functions", functions}};
    }

  private:
    /// Builds are counted as the document lists them.
    int number(int build) const { return m_numbers[static_cast<std::size_t>(build)]; }

    const PointName& nameOf(const PointHistory& point) const {
        return m_history.points[static_cast<std::size_t>(point.point)];
    }

    Json builds() const {
        Json builds = Json::array();
        for (const int index : m_overview.builds) {
            const BuildEntry& build = m_history.builds[static_cast<std::size_t>(index)];
            builds.push_back({{"label", build.label},
                              {"identity", build.identity},
                              {"buildIds", build.buildIds},
                              {"revision", build.revision},
                              {"library", build.library},
                              {"day", build.day}});
        }
        return builds;
    }

    Json others(const Method& method) const {
        Json others = Json::array();
        for (std::size_t i = 0; i < m_history.methods.size(); ++i) {
            if (static_cast<int>(i) != m_overview.method) {
                others.push_back(
                    {{"method", i + 1}, {"differs", differenceText(m_history.methods[i], method)}});
            }
        }
        return others;
    }

    Json breaks() const {
        Json breaks = Json::array();
        for (const ChainBreak& its : m_overview.breaks) {
            breaks.push_back({{"build", number(its.build)},
                              {"reason", its.reason == Reason::none ? "no comparison" : word(its.reason)},
                              {"points", its.points}});
        }
        return breaks;
    }

    Json size(const Difference& size) const {
        return {{"log", figure(size.value)}, {"error", figure(size.error)}};
    }

    Json changes(const PointHistory& point) const {
        Json changes = Json::array();
        for (const Change& its : point.changes) {
            changes.push_back({{"kind", its.drift ? "drift" : "step"},
                               {"from", number(its.from)},
                               {"to", number(its.to)},
                               {"told", number(its.told)},
                               {"size", size(its.size)}});
        }
        return changes;
    }

    Json departures(const PointHistory& point) const {
        constexpr std::array<const char*, 3> words{"spike", "once", "fresh"};
        Json departures = Json::array();
        for (const Departure& its : point.departures) {
            departures.push_back({{"kind", words.at(static_cast<std::size_t>(its.state))},
                                  {"from", number(its.from)},
                                  {"to", number(its.to)},
                                  {"size", size(its.size)}});
        }
        return departures;
    }

    /// A column for each build: [level, error, first build of the chain], null where it is not known.
    Json ofPoint(const PointHistory& point) const {
        Json levels = Json::array();
        for (const int build : m_overview.builds) {
            const Level& level = point.levels[static_cast<std::size_t>(build)];
            levels.push_back(level.known()
                                 ? Json::array({figure(level.value), figure(std::sqrt(level.variance)),
                                                number(level.chain)})
                                 : Json(nullptr));
        }
        const Now now = nowOf(m_overview, point);
        return {{"parameters", nameOf(point).parameters},
                {"unit", nameOf(point).unit},
                {"now",
                 now.to < 0
                     ? Json(nullptr)
                     : Json{{"from", number(now.from)}, {"to", number(now.to)}, {"size", size(now.level)}}},
                {"clocks", clocks(lastClocks(point))},
                {"levels", levels},
                {"changes", changes(point)},
                {"departures", departures(point)},
                {"figures", figures(point)}};
    }

    /// Clocks of a unit. Builds by label: they need not be among those that were compared.
    Json figures(const PointHistory& point) const {
        Json figures = Json::array();
        for (const MeasuredFigure& its : m_figures[static_cast<std::size_t>(point.point)]) {
            figures.push_back({{"build", m_history.builds[static_cast<std::size_t>(its.entry->build)].label},
                               {"day", its.entry->day},
                               {"clocks", figure(its.figure->clocks)},
                               {"low", figure(its.figure->low)},
                               {"high", figure(its.figure->high)},
                               {"processes", its.entry->processes}});
        }
        return figures;
    }

    /// Of one call by the last build; on the machine as it was then.
    double lastClocks(const PointHistory& point) const {
        if (point.links.empty()) {
            return 0.0;
        }
        const ComparisonEntry& last =
            m_history.comparisons[static_cast<std::size_t>(point.links.back().comparison)];
        for (const Finding& finding : last.findings) {
            if (finding.point == point.point) {
                return finding.newer;
            }
        }
        return 0.0;
    }

    const Overview& m_overview;
    const History& m_history;
    std::vector<std::vector<MeasuredFigure>> m_figures;
    std::vector<int> m_numbers;
};

}  // namespace

std::string historyJson(const Overview& overview) {
    return Document(overview).all().dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lab
