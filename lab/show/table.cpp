#include "show/table.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lab {
namespace {

bool died(const Point& point) { return point.decision.reason == Reason::crash; }

/// Groups of lines, the worst first.
int badness(const Point& point) {
    constexpr std::array<int, 4> ofVerdict{1, 4, 3, 2};  // slower, faster, same, unsure
    return died(point) ? 0 : ofVerdict.at(static_cast<std::size_t>(point.decision.verdict));
}

/// Which of a function's points speaks for it: what is known to differ goes before what is not known.
int weight(const Point& point) {
    constexpr std::array<int, 4> ofVerdict{1, 2, 4, 3};
    return died(point) ? 0 : ofVerdict.at(static_cast<std::size_t>(point.decision.verdict));
}

/// How far a point goes into the direction of its verdict, at least; where it has none, at most.
double strength(const Point& point) {
    const Interval& interval = point.decision.interval;
    switch (point.decision.verdict) {
        case Verdict::slower:
            return interval.low;
        case Verdict::faster:
            return -interval.high;
        default:
            return interval.high;
    }
}

bool speaksBefore(const Point& one, const Point& other) {
    return weight(one) != weight(other) ? weight(one) < weight(other) : strength(one) > strength(other);
}

bool wanted(const Point& point, const TableStyle& style) {
    return style.only.empty() || style.only.contains(point.decision.verdict);
}

using Cells = std::array<std::string, 7>;
constexpr std::size_t verdictCell = 1;

Cells headCells(const TableStyle& style) {
    if (style.points) {
        return {"function", "verdict", "change", "interval", "would show", "clocks", "point"};
    }
    return {"function", "verdict", "change", "interval", "points", "", "rests on"};
}

Cells cellsOf(const TableLine& line, const TableStyle& style) {
    const Decision& decision = line.point->decision;
    return {printable(line.point->function),
            verdictText(decision),
            decision.pairs > 0 ? change(decision.interval.middle) : "?",
            intervalText(decision.interval),
            style.points ? change(decision.smallest) : countsText(line.counts),
            style.points ? clocksText(*line.point) : "",
            printable(parameterText(*line.point)) + remarks(*line.point)};
}

std::string rows(const std::vector<TableLine>& lines, const TableStyle& style) {
    std::vector<Cells> all{headCells(style)};
    for (const TableLine& line : lines) {
        all.push_back(cellsOf(line, style));
    }
    std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
    for (const Cells& cells : all) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
        }
    }
    std::string text;
    for (std::size_t row = 0; row < all.size(); ++row) {
        std::string line;
        for (std::size_t i = 0; i + 1 < widths.size(); ++i) {
            if (widths[i] == 0) {
                continue;  // a column of points in a table of functions
            }
            const std::string cell = fmt::format("{:{}}  ", all[row][i], widths[i]);
            const bool isColoured = i == verdictCell && row > 0 && style.colours;
            line += isColoured ? coloured(cell, *lines[row - 1].point) : cell;
        }
        line += all[row].back();
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

/// What the run could have found.
std::string reachText(const Report& report) {
    std::vector<double> reach;
    for (const Point& point : report.points) {
        if (std::isfinite(point.decision.smallest)) {
            reach.push_back(point.decision.smallest);
        }
    }
    if (reach.empty()) {
        return "";
    }
    std::sort(reach.begin(), reach.end());
    const double half = reach[(reach.size() - 1) / 2];
    const double most = reach[(reach.size() - 1) * 9 / 10];
    return fmt::format(
        "A difference of {} would have shown at half of {} points, one of {} at nine of ten.\n",
        change(half).substr(1), reach.size(), change(most).substr(1));
}

std::string buildText(std::string_view side, const Build& build) {
    return fmt::format("{}: {}{}{}\n", side, printable(build.name), build.keys.empty() ? "" : " ",
                       printable(build.keys));
}

std::string heading(const Report& report) {
    std::string text = buildText("old", report.older) + buildText("new", report.newer);
    if (report.identical) {
        text += "Both are the same to the byte: this compares a build with itself.\n";
    }
    for (const std::string& warning : report.warnings) {
        text += fmt::format("warning: {}\n", printable(warning));
    }
    return text + "\n";
}

std::string listed(std::string_view what, const std::vector<std::string>& points) {
    std::string text;
    for (const std::string& point : points) {
        text += fmt::format("{} only: {}\n", what, printable(point));
    }
    return text;
}

std::map<Reason, int> reasonsOf(const std::vector<Point>& points) {
    std::map<Reason, int> reasons;
    for (const Point& point : points) {
        if (point.decision.verdict == Verdict::unsure) {
            ++reasons[point.decision.reason];
        }
    }
    return reasons;
}

/// " (noise 3, layout 5)" of the unsure points.
std::string reasonsText(const std::vector<Point>& points) {
    std::string text;
    for (const auto& [reason, number] : reasonsOf(points)) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", word(reason), number);
    }
    return text.empty() ? "" : " (" + text + ")";
}

/// A line on each of the reasons that are there.
std::string explanations(const std::vector<Point>& points) {
    std::string text;
    for (const auto& [reason, number] : reasonsOf(points)) {
        text += fmt::format("  {}: {}\n", word(reason), explanation(reason));
    }
    return text;
}

std::size_t functionsWith(const std::vector<Point>& points, Verdict verdict) {
    std::set<std::string_view> functions;
    for (const Point& point : points) {
        if (point.decision.verdict == verdict) {
            functions.insert(point.function);
        }
    }
    return functions.size();
}

}  // namespace

bool isWorse(const TableLine& one, const TableLine& other) {
    const int mine = badness(*one.point);
    const int its = badness(*other.point);
    return mine != its ? mine < its : strength(*one.point) > strength(*other.point);
}

std::vector<TableLine> tableLines(const Report& report, const TableStyle& style) {
    std::vector<TableLine> lines;
    std::map<std::string_view, Counts> counts;
    std::map<std::string_view, std::size_t> lineOf;
    for (const Point& point : report.points) {
        add(counts[point.function], point);
        if (!wanted(point, style)) {
            continue;
        }
        const auto [known, isNew] = lineOf.emplace(point.function, lines.size());
        if (style.points || isNew) {
            lines.push_back({&point, {}});
        } else if (speaksBefore(point, *lines[known->second].point)) {
            lines[known->second].point = &point;
        }
    }
    for (TableLine& line : lines) {
        line.counts = counts[line.point->function];
    }
    std::stable_sort(lines.begin(), lines.end(), isWorse);
    return lines;
}

std::string verdictText(const Decision& decision) {
    const bool reasoned = decision.reason != Reason::none;
    return fmt::format("{}{}{}", word(decision.verdict), reasoned ? ": " : "", word(decision.reason));
}

std::string coloured(const std::string& cell, const Point& point) {
    constexpr std::array<std::string_view, 5> ofBadness{"\x1b[1;31m", "\x1b[31m", "\x1b[33m", "", "\x1b[32m"};
    const std::string_view colour = ofBadness.at(static_cast<std::size_t>(badness(point)));
    return colour.empty() ? cell : fmt::format("{}{}\x1b[0m", colour, cell);
}

std::string printable(std::string_view text) {
    std::string shown;
    for (const char c : text) {
        shown += c >= ' ' && c <= '~' ? std::string(1, c)
                                      : fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
    }
    return shown;
}

bool coloursWanted(bool terminal, const char* noColour) {
    return terminal && (noColour == nullptr || *noColour == '\0');
}

std::string change(double logRatio) {
    if (!std::isfinite(logRatio)) {
        return "?";
    }
    const double percent = 100 * std::expm1(logRatio);
    const bool none = std::abs(percent) < 0.005;  // there is no "-0.00%"
    return fmt::format("{:+.{}f}%", none ? 0 : percent, std::abs(percent) < 100 ? 2 : 0);
}

std::string parameterText(const Point& point) { return parameterText(point.parameters); }

std::string parameterText(const std::vector<std::pair<std::string, std::string>>& parameters) {
    std::string text;
    for (const auto& [name, value] : parameters) {
        text += fmt::format("{}{}={}", text.empty() ? "" : " ", name, value);
    }
    return text;
}

std::string countsText(const Counts& counts) {
    std::string text;
    const auto add = [&](int number, std::string_view what) {
        if (number > 0) {
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", number, what);
        }
    };
    add(counts.slower, "slower");
    add(counts.faster, "faster");
    add(counts.unsure, "unsure");
    add(counts.same, "same");
    return text;
}

std::string clocksText(const Point& point) {
    const auto figure = [](double clocks) { return clocks > 0 ? fmt::format("{:.2f}", clocks) : "?"; };
    return figure(point.older) + " -> " + figure(point.newer);
}

std::string intervalText(const Interval& interval) {
    return std::isfinite(interval.low) ? change(interval.low) + " .. " + change(interval.high) : "?";
}

std::string remarks(const Point& point) {
    std::string text;
    const auto fate = [&](std::string_view side, const Fate& its) {
        if (!its.death.empty()) {
            text += fmt::format(" ({}: {})", side, printable(its.death));
        } else if (point.decision.reason == Reason::status) {
            text += fmt::format(" ({}: status {})", side, its.status);
        }
    };
    fate("old", point.olderFate);
    fate("new", point.newerFate);
    for (const std::string& mark : point.marks) {
        text += fmt::format(" ({})", printable(mark));
    }
    return text;
}

std::string sentence(const Report& report) {
    const Counts counts = count(report.points);
    const auto differing = [&](int number, Verdict verdict) {
        const std::size_t functions = functionsWith(report.points, verdict);
        const std::string of =
            number > 0 ? fmt::format(" ({} function{})", functions, functions == 1 ? "" : "s") : "";
        return fmt::format("{} {}{}", number, word(verdict), of);
    };
    return fmt::format("{}Of {} points {}, {}, {} the same within {:g}%, {} cannot be told{}.",
                       report.finished ? "" : "Not finished. ", report.points.size(),
                       differing(counts.slower, Verdict::slower), differing(counts.faster, Verdict::faster),
                       counts.same, 100 * report.margin, counts.unsure, reasonsText(report.points));
}

std::string table(const Report& report, const TableStyle& style) {
    return heading(report) + rows(tableLines(report, style), style) + listed("old", report.onlyOlder) +
           listed("new", report.onlyNewer) + "\n" + sentence(report) + "\n" + explanations(report.points) +
           reachText(report);
}

}  // namespace lab
