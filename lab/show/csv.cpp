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
template <class Points>
class ParameterColumns {
  public:
    explicit ParameterColumns(const Points& points) {
        for (const auto& point : points) {
            for (const auto& [name, value] : point.parameters) {
                if (m_columns.emplace(name, m_names.size()).second) {
                    m_names.push_back(name);
                }
            }
        }
    }

    /// The line of names: the function, the parameters, and `others`, which keep their names.
    std::string head(const Cells& others) const {
        Cells names{"function"};
        names.insert(names.end(), others.begin(), others.end());
        names.insert(names.end(), m_names.begin(), m_names.end());
        names = distinct(std::move(names));
        std::rotate(names.begin() + 1, names.begin() + 1 + static_cast<std::ptrdiff_t>(others.size()),
                    names.end());
        std::transform(names.begin(), names.end(), names.begin(),
                       [](const std::string& name) { return cellOf(name); });
        return lineOf(names);
    }

    std::string line(std::string_view function, const Parameters& parameters, const Cells& others) const {
        Cells cells(1 + m_names.size());
        cells[0] = cellOf(function);
        for (const auto& [name, value] : parameters) {
            cells[1 + m_columns.at(name)] = cellOf(value);
        }
        cells.insert(cells.end(), others.begin(), others.end());
        return lineOf(cells);
    }

  private:
    Cells m_names;
    std::map<std::string, std::size_t> m_columns;
};

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
    const ParameterColumns columns(report.points);
    std::string text = columns.head({"unit", "divisor", "verdict", "reason", "ratio_low", "ratio",
                                     "ratio_high", "smallest", "old_clocks", "new_clocks", "pairs",
                                     "old_status", "new_status", "old_death", "new_death", "marks"});
    for (const Point& point : report.points) {
        text += columns.line(point.function, point.parameters, othersOf(point));
    }
    return text;
}

std::string csv(const ResultTable& table) {
    const ParameterColumns columns(table.rows);
    std::string text = columns.head(
        {"clocks", "unit", "microseconds", "mflops", "calls", "comment", "hot", "run", "start", "library"});
    for (const ResultRow& row : table.rows) {
        const ResultRun& run = table.runs[static_cast<std::size_t>(row.run)];
        text += columns.line(
            row.function, row.parameters,
            {cellOf(row.clocks), cellOf(row.unit), cellOf(row.microseconds), cellOf(row.mflops),
             cellOf(callsOf(row)), cellOf(row.comment), row.hot ? "1" : "0", std::to_string(row.run + 1),
             cellOf(titleOf(run, "Start")), cellOf(titleOf(run, "Library"))});
    }
    return text;
}

}  // namespace lab
