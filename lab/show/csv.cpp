#include "show/csv.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "show/figures.h"
#include "show/results.h"

namespace lab {
namespace {

using Cells = std::vector<std::string>;
using Parameters = std::vector<std::pair<std::string, std::string>>;

std::string cellOf(std::string_view text) {
    std::string cell;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        cell += byte < ' ' || byte == 0x7f ? fmt::format("\\x{:02x}", byte) : std::string(1, c);
        if (c == '"') {
            cell += '"';
        }
    }
    const bool bare =
        cell.find_first_of(",\"") == std::string::npos && !cell.starts_with(' ') && !cell.ends_with(' ');
    return bare ? cell : "\"" + cell + "\"";
}

template <class Number>
std::string cellOf(const std::optional<Number>& figure) {
    return figure ? fmt::format("{}", *figure) : "";
}

std::string lineOf(const Cells& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += (&cell == cells.data() ? "" : ",") + cell;
    }
    return line + "\n";
}

/// Databases take names that differ by the case of letters alone for one.
Cells distinct(Cells names) {
    std::set<std::string> taken;
    for (std::string& name : names) {
        const std::string given = name;
        const auto isNew = [&] {
            std::string lower = name;
            std::transform(lower.begin(), lower.end(), lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            return taken.insert(lower).second;
        };
        for (int number = 2; !isNew(); ++number) {
            name = fmt::format("{}_{}", given, number);
        }
    }
    return names;
}

/// A column for each parameter that any of the points has.
class ParameterColumns {
  public:
    template <class Points>
    void add(const Points& points) {
        for (const auto& point : points) {
            for (const auto& [name, value] : point.parameters) {
                if (m_columns.emplace(name, m_names.size()).second) {
                    m_names.push_back(name);
                }
            }
        }
    }

    /// The line of names: the first ones, the parameters, and `others`. All but the parameters keep their
    /// names.
    std::string head(const Cells& first, const Cells& others) const {
        Cells names = first;
        names.insert(names.end(), others.begin(), others.end());
        names.insert(names.end(), m_names.begin(), m_names.end());
        names = distinct(std::move(names));
        const auto behind = names.begin() + static_cast<std::ptrdiff_t>(first.size());
        std::rotate(behind, behind + static_cast<std::ptrdiff_t>(others.size()), names.end());
        return lineOf(cellsOf(names));
    }

    std::string line(const Cells& first, const Parameters& parameters, const Cells& others) const {
        Cells cells = cellsOf(first);
        cells.resize(first.size() + m_names.size());
        for (const auto& [name, value] : parameters) {
            cells[first.size() + m_columns.at(name)] = cellOf(value);
        }
        cells.insert(cells.end(), others.begin(), others.end());
        return lineOf(cells);
    }

  private:
    static Cells cellsOf(Cells texts) {
        for (std::string& text : texts) {
            text = cellOf(text);
        }
        return texts;
    }

    Cells m_names;
    std::map<std::string, std::size_t> m_columns;
};

const Cells ofComparison{"unit",       "divisor",   "verdict",    "reason",     "ratio_low", "ratio",
                         "ratio_high", "smallest",  "old_clocks", "new_clocks", "pairs",     "old_status",
                         "new_status", "old_death", "new_death",  "marks"};

Cells othersOf(const Point& point) {
    const Decision& decision = point.decision;
    std::string marks;
    for (const std::string& mark : point.marks) {
        marks += (marks.empty() ? "" : "; ") + mark;
    }
    return {cellOf(point.unit),
            fmt::format("{}", point.divisor),
            cellOf(word(decision.verdict)),
            cellOf(word(decision.reason)),
            cellOf(ratioFigure(decision.interval.low)),
            decision.pairs > 0 ? cellOf(ratioFigure(decision.interval.middle)) : "",
            cellOf(ratioFigure(decision.interval.high)),
            cellOf(ratioFigure(decision.smallest)),
            cellOf(clocksFigure(point.older)),
            cellOf(clocksFigure(point.newer)),
            std::to_string(decision.pairs),
            std::to_string(point.olderFate.status),
            std::to_string(point.newerFate.status),
            cellOf(point.olderFate.death),
            cellOf(point.newerFate.death),
            cellOf(marks)};
}

}  // namespace

std::string csv(const Report& report) {
    ParameterColumns columns;
    columns.add(report.points);
    std::string text = columns.head({"function"}, ofComparison);
    for (const Point& point : report.points) {
        text += columns.line({point.function}, point.parameters, othersOf(point));
    }
    return text;
}

std::string csv(const FleetReport& fleet) {
    ParameterColumns columns;
    for (const KindReport& kind : fleet.kinds) {
        columns.add(kind.report.points);
    }
    std::string text = columns.head({"kind", "function"}, ofComparison);
    for (const KindReport& kind : fleet.kinds) {
        for (const Point& point : kind.report.points) {
            text += columns.line({kind.name, point.function}, point.parameters, othersOf(point));
        }
    }
    return text;
}

std::string csv(const MeasurementReport& report) {
    ParameterColumns columns;
    columns.add(report.points);
    std::string text =
        columns.head({"function"}, {"unit", "divisor", "floor", "per_unit", "reached", "turns", "processes",
                                    "median", "spread", "least_low", "least_high", "loop", "status", "death",
                                    "earlier_floor", "earlier_ratio", "earlier_mark"});
    for (const MeasuredPoint& point : report.points) {
        Cells others{cellOf(point.unit), fmt::format("{}", point.divisor)};
        const auto add = [&others](const Cells& cells) {
            others.insert(others.end(), cells.begin(), cells.end());
        };
        if (point.figure) {
            const Figure& its = *point.figure;
            add({cellOf(clocksFigure(its.floor)), cellOf(rounded(its.floor / point.divisor, 6)),
                 std::to_string(its.reached), std::to_string(its.turns), std::to_string(its.processes),
                 cellOf(clocksFigure(its.median)), cellOf(rounded(its.spread, 4)),
                 cellOf(clocksFigure(its.low)), cellOf(clocksFigure(its.high)),
                 cellOf(rounded(its.loop, 4))});
        } else {
            add(Cells(10));
        }
        add({std::to_string(point.fate.status), cellOf(point.fate.death)});
        if (point.beside) {
            const Beside& its = *point.beside;
            add({cellOf(clocksFigure(its.earlier)), cellOf(rounded(its.ratio, 6)),
                 its.mark == Verdict::same ? "" : std::string(word(its.mark))});
        } else {
            add(Cells(3));
        }
        text += columns.line({point.function}, point.parameters, others);
    }
    return text;
}

std::string csv(const ResultTable& table) {
    ParameterColumns columns;
    columns.add(table.rows);
    std::string text = columns.head({"function"}, {"clocks", "unit", "microseconds", "mflops", "calls",
                                                   "comment", "hot", "run", "start", "library"});
    for (const ResultRow& row : table.rows) {
        const ResultRun& run = table.runs[static_cast<std::size_t>(row.run)];
        text += columns.line(
            {row.function}, row.parameters,
            {cellOf(row.clocks), cellOf(row.unit), cellOf(row.microseconds), cellOf(row.mflops),
             cellOf(callsOf(row)), cellOf(row.comment), row.hot ? "1" : "0", std::to_string(row.run + 1),
             cellOf(titleOf(run, "Start")), cellOf(titleOf(run, "Library"))});
    }
    return text;
}

}  // namespace lab
