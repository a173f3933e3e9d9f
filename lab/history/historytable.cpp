#include "history/historytable.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>
#include <string_view>
#include <tuple>

#include "history/historystore.h"
#include "show/measurement.h"
#include "show/table.h"

namespace lab {

namespace {

/// Of a normal distribution: 95% lie within so many standard deviations.
constexpr double Spread = 1.96;

using Cells = std::array<std::string, 5>;

struct Line {
    Cells cells;
    std::string_view colour;
};

class Table {
  public:
    explicit Table(const Overview& overview) : m_overview(overview), m_figures(figuresOf(overview)) {}

    std::string label(int build) const {
        return printable(m_overview.history->builds[static_cast<std::size_t>(build)].label);
    }

    /// `number`: of points of the function that stand behind it.
    Line lineOf(std::size_t index, std::size_t number) const {
        const PointHistory& point = m_overview.points[index];
        const PointName& name = m_overview.history->points[static_cast<std::size_t>(point.point)];
        const Now now = nowOf(m_overview, point);
        Line line;
        line.cells[0] = printable(name.function);
        line.cells[1] = now.to < 0 ? "?" : change(now.level.value);
        const double reach = Spread * now.level.error;
        line.cells[2] =
            now.to < 0 ? "?" : change(now.level.value - reach) + " .. " + change(now.level.value + reach);
        tellChanges(point, line);
        line.cells[4] = printable(name.parameters);
        if (now.to >= 0 && now.from != m_overview.since) {
            line.cells[4] += fmt::format(" (since {})", label(now.from));
        }
        if (number > 1) {
            line.cells[4] += fmt::format(" (of {} points)", number);
        } else if (const auto& figures = m_figures[static_cast<std::size_t>(point.point)]; !figures.empty()) {
            line.cells[4] +=
                fmt::format(" ({} clocks per {} at {})", figureText(figures.back().figure->clocks),
                            printable(name.unit), label(figures.back().entry->build));
        }
        return line;
    }

    std::string heading() const {
        const History& history = *m_overview.history;
        const auto method = static_cast<std::size_t>(m_overview.method);
        std::string text = fmt::format(
            "{} builds, {} .. {}, by {} comparison{} on {}, {} bits{}{}\n", m_overview.builds.size(),
            label(m_overview.builds.front()), label(m_overview.builds.back()), m_overview.comparisons,
            m_overview.comparisons == 1 ? "" : "s", printable(history.methods[method].processor),
            history.methods[method].bits, history.methods[method].keys.empty() ? "" : ", ",
            printable(history.methods[method].keys));
        for (std::size_t other = 0; other < history.methods.size(); ++other) {
            if (other != method) {
                text +=
                    fmt::format("not put together with method {}: {}\n", other + 1,
                                printable(differenceText(history.methods[other], history.methods[method])));
            }
        }
        for (const ChainBreak& its : m_overview.breaks) {
            text += fmt::format("broken at {}: {} ({} of {} points)\n", label(its.build),
                                its.reason == Reason::none ? "no comparison joins it with an earlier build"
                                                           : explanation(its.reason),
                                its.points, m_overview.points.size());
        }
        return text + "\n";
    }

    std::string ending() const {
        return fmt::format(
            "\n{} Any of it false: at most {:g}% for a year of {} builds.\nThe next build is to be "
            "measured against {}.\n",
            printable(historySentence(m_overview)), 100 * YearlyFalse, YearOfBuilds, label(m_overview.good));
    }

  private:
    void tellChanges(const PointHistory& point, Line& line) const {
        std::string& text = line.cells[3];
        const auto add = [&](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
        for (const Change& its : shownChanges(m_overview, point)) {
            add(its.drift
                    ? fmt::format("{} from {} to {}", change(its.size.value), label(its.from), label(its.to))
                    : fmt::format("{} at {}", change(its.size.value), label(its.to)));
            line.colour = its.slower() ? "\x1b[31m" : line.colour.empty() ? "\x1b[32m" : line.colour;
        }
        for (const Departure& its : shownDepartures(m_overview, point)) {
            constexpr std::array<std::string_view, 3> words{"alone", "seen once", "not measured again yet"};
            add(fmt::format("({} at {}, {})", change(its.size.value), label(its.to),
                            words.at(static_cast<std::size_t>(its.state))));
            if (its.state != Departure::State::spike && line.colour.empty()) {
                line.colour = "\x1b[33m";
            }
        }
        if (text.empty()) {
            text = "none";
        }
    }

    const Overview& m_overview;
    std::vector<std::vector<MeasuredFigure>> m_figures;
};

std::string rows(const std::vector<Line>& lines, bool colours) {
    std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
    for (const Line& line : lines) {
        for (std::size_t i = 0; i + 1 < widths.size(); ++i) {
            widths[i] = std::max(widths[i], line.cells[i].size());
        }
    }
    std::string text;
    for (const Line& line : lines) {
        std::string row;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const std::string cell =
                fmt::format("{:{}}{}", line.cells[i], widths[i], i + 1 < widths.size() ? "  " : "");
            const bool coloured = i == 3 && colours && !line.colour.empty();
            row += coloured ? fmt::format("{}{}\x1b[0m", line.colour, cell) : cell;
        }
        text += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

}  // namespace

std::string historySentence(const Overview& overview) {
    int slower = 0;
    int faster = 0;
    int doubt = 0;
    for (const PointHistory& point : overview.points) {
        const std::vector<Change> changes = shownChanges(overview, point);
        const auto any = [&](bool wanted) {
            return std::any_of(changes.begin(), changes.end(),
                               [&](const Change& its) { return its.slower() == wanted; });
        };
        const std::vector<Departure> departures = shownDepartures(overview, point);
        slower += any(true) ? 1 : 0;
        faster += any(false) ? 1 : 0;
        doubt += std::any_of(departures.begin(), departures.end(),
                             [](const Departure& its) { return its.state != Departure::State::spike; })
                     ? 1
                     : 0;
    }
    return fmt::format("Since {}: of {} points {} became slower, {} faster, {} in doubt.",
                       overview.history->builds[static_cast<std::size_t>(overview.since)].label,
                       overview.points.size(), slower, faster, doubt);
}

std::string historyTable(const Overview& overview, bool points, bool colours) {
    const Table table(overview);
    std::vector<Line> lines{{{"function", "now", "95%", "changes", "rests on"}, ""}};
    for (const std::vector<std::size_t>& function : byFunction(overview)) {
        lines.push_back(table.lineOf(function.front(), points ? 1 : function.size()));
        for (std::size_t i = 1; points && i < function.size(); ++i) {
            lines.push_back(table.lineOf(function[i], 1));
        }
    }
    return table.heading() + rows(lines, colours) + table.ending();
}

std::string figuresTable(const History& history, const Choice& choice) {
    const int since = choice.since.empty() ? 0 : findBuild(history, choice.since);
    if (since < 0 && !isDay(choice.since)) {
        throw std::runtime_error("the history has no build \"" + choice.since +
                                 "\", and it is no day like 2026-11-23");
    }
    // those of one function and point stand together, whenever they were measured
    std::map<std::tuple<std::string_view, int, std::string>, std::vector<Line>> found;
    for (const MeasurementEntry& entry : history.measurements) {
        if (since < 0 ? entry.day < choice.since : entry.build < since) {
            continue;
        }
        const std::string with = fmt::format("{}, {} bits{}{}", entry.method.processor, entry.method.bits,
                                             entry.method.keys.empty() ? "" : ", ", entry.method.keys);
        for (const KeptFigure& its : entry.figures) {
            const PointName& name = history.points[static_cast<std::size_t>(its.point)];
            if (choice.function.empty() || choice.function == name.function) {
                found[{name.function, its.point, with}].push_back(
                    {{printable(name.function),
                      fmt::format("{} per {}", figureText(its.clocks), printable(name.unit)),
                      fmt::format("{} .. {}", figureText(its.low), figureText(its.high)),
                      fmt::format("{}, {}",
                                  printable(history.builds[static_cast<std::size_t>(entry.build)].label),
                                  entry.day),
                      fmt::format("{} ({} processes on {})", printable(name.parameters), entry.processes,
                                  printable(with))},
                     ""});
            }
        }
    }
    if (found.empty()) {
        throw std::runtime_error("the history has no such figure");
    }
    std::vector<Line> lines{{{"function", "clocks", "processes say", "of", "rests on"}, ""}};
    for (const auto& [where, figures] : found) {
        lines.insert(lines.end(), figures.begin(), figures.end());
    }
    return rows(lines, false) +
           "\nMachines drift: figures of different days are records, and no change is told by them.\n";
}

}  // namespace lab
