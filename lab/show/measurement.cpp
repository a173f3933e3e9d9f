#include "show/measurement.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "show/columns.h"
#include "show/table.h"
#include "verdict/statistics.h"

namespace lab {
namespace {

std::string percent(double share, int decimals) { return fmt::format("{:.{}f}%", 100 * share, decimals); }

double reachedShare(const Figure& figure) {
    return static_cast<double>(figure.reached) / static_cast<double>(figure.turns);
}

double spreadShare(const Figure& figure) { return figure.spread / figure.median; }

std::string markText(Verdict mark) { return mark == Verdict::same ? "" : std::string(word(mark)); }

std::string remarksOf(const MeasuredPoint& point) {
    if (!point.fate.death.empty()) {
        return fmt::format(" (died: {})", printable(point.fate.death));
    }
    return point.fate.status != 0 ? fmt::format(" (status {})", point.fate.status) : "";
}

/// Of a point: its figures, if it has any.
Cells cellsOf(const MeasuredPoint& point) {
    const std::string name = printable(parameterText(point.parameters)) + remarksOf(point);
    Cells cells{printable(point.function), "?", "?", "?", "?", point.unit, "", "", name};
    if (point.figure) {
        const Figure& figure = *point.figure;
        cells[1] = figureText(figure.floor / point.divisor);
        cells[2] = percent(reachedShare(figure), 0);
        cells[3] = figureText(figure.median / point.divisor);
        cells[4] = percent(spreadShare(figure), 2);
    }
    if (point.beside) {
        cells[6] = change(std::log(point.beside->ratio));
        cells[7] = markText(point.beside->mark);
    }
    return cells;
}

std::vector<Cells> pointRows(const MeasurementReport& report) {
    std::vector<Cells> rows{{"function", "clocks", "reached", "median", "spread", "per",
                             report.earlier ? "change" : "", "", "point"}};
    for (const MeasuredPoint& point : report.points) {
        rows.push_back(cellsOf(point));
        if (point.figure && point.figure->clusters.size() > 1) {
            rows.back().back() += "  [" + clustersText(*point.figure, point.divisor) + "]";
        }
    }
    return rows;
}

/// What the points of a function say together.
struct Line {
    std::string function;
    std::vector<double> clocks;  ///< of a unit
    std::vector<double> reached;
    std::vector<double> spread;
    std::vector<double> ratios;
    std::string unit;
    std::size_t points = 0;
    int slower = 0;
    int faster = 0;
    std::string remarks;

    void add(const MeasuredPoint& point) {
        ++points;
        unit = unit.empty() || unit == point.unit ? point.unit : "?";
        remarks = remarks.empty() ? remarksOf(point) : remarks;
        if (point.figure) {
            clocks.push_back(point.figure->floor / point.divisor);
            reached.push_back(reachedShare(*point.figure));
            spread.push_back(spreadShare(*point.figure));
        }
        if (point.beside) {
            ratios.push_back(std::log(point.beside->ratio));
            slower += point.beside->mark == Verdict::slower;
            faster += point.beside->mark == Verdict::faster;
        }
    }

    Cells cells() const {
        Cells cells{printable(function), std::to_string(points), "?", "?", "?", "?", unit, "", remarks};
        if (!clocks.empty()) {
            const auto [least, most] = std::minmax_element(clocks.begin(), clocks.end());
            cells[2] = figureText(*least);
            cells[3] = figureText(*most);
            cells[4] = percent(*std::min_element(reached.begin(), reached.end()), 0);
            cells[5] = percent(median(spread), 2);
        }
        if (!ratios.empty()) {
            cells[7] = change(median(ratios));
            const Counts counts{slower, faster, 0, 0, 0};
            cells[8] = countsText(counts) + cells[8];
        }
        return cells;
    }
};

std::vector<Cells> functionRows(const MeasurementReport& report) {
    std::vector<Line> lines;
    for (const MeasuredPoint& point : report.points) {
        if (lines.empty() || lines.back().function != point.function) {
            lines.push_back({});
            lines.back().function = point.function;
        }
        lines.back().add(point);
    }
    std::vector<Cells> rows{{"function", "points", "least clocks", "most", "reached", "spread", "per",
                             report.earlier ? "change" : "", ""}};
    for (const Line& line : lines) {
        rows.push_back(line.cells());
    }
    return rows;
}

std::string heading(const MeasurementReport& report) {
    std::string text = fmt::format("build: {}{}{}\n", printable(report.build.name),
                                   report.build.keys.empty() ? "" : " ", printable(report.build.keys));
    for (const std::string& warning : report.warnings) {
        text += fmt::format("warning: {}\n", printable(warning));
    }
    if (report.earlier) {
        text += fmt::format("beside: {}\n", printable(report.earlier->path));
        for (const std::string& caveat : report.earlier->caveats) {
            text += fmt::format("caveat: {}\n", printable(caveat));
        }
    }
    return text + "\n";
}

}  // namespace

std::vector<Cells> rowsOf(const MeasurementReport& report, bool points) {
    return points ? pointRows(report) : functionRows(report);
}

std::string sentence(const MeasurementReport& report) {
    std::size_t measured = 0;
    std::size_t rarely = 0;
    int slower = 0;
    int faster = 0;
    constexpr double Rarely = 0.25;
    for (const MeasuredPoint& point : report.points) {
        measured += point.figure ? 1 : 0;
        rarely += point.figure && reachedShare(*point.figure) < Rarely ? 1 : 0;
        slower += point.beside && point.beside->mark == Verdict::slower;
        faster += point.beside && point.beside->mark == Verdict::faster;
    }
    std::string text = fmt::format(
        "{}{} of {} points measured by up to {} processes of {} turns; at {} the floor was reached by "
        "less than a quarter of the turns.\n",
        report.finished ? "" : "Not finished. ", measured, report.points.size(), report.processes,
        report.turns, rarely);
    if (report.earlier) {
        text += fmt::format(
            "Beside the earlier figures {} points are slower and {} faster by more than both "
            "scatter.\n",
            slower, faster);
    }
    return text;
}

std::string figureText(double clocks) {
    constexpr int Digits = 4;
    if (!(clocks > 0) || !std::isfinite(clocks)) {
        return "?";
    }
    const int before = static_cast<int>(std::floor(std::log10(clocks))) + 1;
    return fmt::format("{:.{}f}", clocks, std::max(0, Digits - before));
}

std::string clustersText(const Figure& figure, double divisor) {
    const Cluster& floor = figure.clusters.front();
    std::string text =
        fmt::format("{} at {} of {} turns", figureText(floor.clocks / divisor), floor.turns, figure.turns);
    std::size_t scattered = figure.turns - floor.turns;
    for (std::size_t i = 1; i < figure.clusters.size(); ++i) {
        const Cluster& cluster = figure.clusters[i];
        text += fmt::format(", {} at {}: {}", figureText(cluster.clocks / divisor), cluster.turns,
                            cluster.byProcess ? "another layout, or a load as long as a process"
                                              : "another load on this core");
        scattered -= cluster.turns;
    }
    return text + (scattered > 0 ? fmt::format(", {} scattered", scattered) : "");
}

std::string table(const MeasurementReport& report, bool points) {
    return heading(report) + aligned(rowsOf(report, points)) + "\n" + sentence(report);
}

}  // namespace lab
