#include "show/markdown.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "show/results.h"
#include "show/table.h"

namespace lab {
namespace {

/// A comment of a pull request holds some 65,000 characters.
constexpr std::size_t mostFolded = 200;
constexpr std::size_t mostLines = 100;

/// Text that stands for itself. A code span would end at a back-tick, a cell at a bar, wherever they stand.
std::string code(std::string_view text) {
    const std::string plain = printable(text);
    if (plain.find_first_of("`|") == std::string::npos && !plain.empty()) {
        return "`" + plain + "`";
    }
    std::string entities;
    for (const char c : plain) {
        const bool isMarkup = std::string_view("`|*_\\[]<>&~\"'!:@#").find(c) != std::string_view::npos;
        entities += isMarkup ? fmt::format("&#{};", static_cast<int>(c)) : std::string(1, c);
    }
    return "<code>" + entities + "</code>";
}

using Cells = std::vector<std::string>;

std::string lineOf(const Cells& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line += " " + cell + " |";
    }
    return line + "\n";
}

/// The head of a table; names that end in a blank are those of figures, which stand to the right.
std::string headOf(const Cells& names) {
    Cells rules;
    for (const std::string& name : names) {
        rules.push_back(name.ends_with(' ') ? "--:" : "---");
    }
    return "\n" + lineOf(names) + lineOf(rules);
}

std::string folded(std::string_view summary, const std::string& text) {
    return fmt::format("\n<details><summary>{}</summary>\n{}\n</details>\n", summary, text);
}

/// At most so many of the lines, and how many there are more.
template <class Items, class ToLine>
std::string linesOf(const Items& items, std::size_t most, ToLine&& toLine) {
    std::string text;
    for (std::size_t i = 0; i < std::min(most, items.size()); ++i) {
        text += toLine(items[i]);
    }
    return items.size() > most ? text + fmt::format("\nand {} more.\n", items.size() - most) : text;
}

bool differs(const TableLine& line) {
    const Decision& decision = line.point->decision;
    return decision.verdict == Verdict::slower || decision.verdict == Verdict::faster ||
           decision.reason == Reason::crash;
}

std::string pointText(const Point& point) {
    const std::string text = parameterText(point);
    const std::string more = remarks(point);
    return (text.empty() ? "" : code(text)) + (more.empty() ? "" : " " + code(more.substr(1)));
}

std::string changeText(const Decision& decision) {
    return decision.pairs > 0 ? change(decision.interval.middle) : "?";
}

std::string verdictCell(const Decision& decision) {
    const std::string text = verdictText(decision);
    return decision.verdict == Verdict::slower ? "**" + text + "**" : text;
}

std::string functionLine(const TableLine& line) {
    const Decision& decision = line.point->decision;
    return lineOf({code(line.point->function), verdictCell(decision), changeText(decision),
                   intervalText(decision.interval), countsText(line.counts), pointText(*line.point)});
}

std::string pointLine(const TableLine& line) {
    const Decision& decision = line.point->decision;
    return lineOf({code(line.point->function), pointText(*line.point), verdictCell(decision),
                   changeText(decision), intervalText(decision.interval), clocksText(*line.point)});
}

std::string changed(const std::vector<TableLine>& lines) {
    if (lines.empty()) {
        return "";
    }
    return headOf({"function", "verdict", "change ", "interval", "points", "rests on"}) +
           linesOf(lines, mostLines, functionLine);
}

/// The functions without a difference, counted.
std::string rest(const std::vector<TableLine>& lines) {
    if (lines.empty()) {
        return "";
    }
    Counts counts;
    for (const TableLine& line : lines) {
        counts.same += line.counts.same;
        counts.unsure += line.counts.unsure;
    }
    return fmt::format("\n{} function{} without a known difference: {}.\n", lines.size(),
                       lines.size() == 1 ? "" : "s", countsText(counts));
}

std::string pointsThatAreNotSame(const Report& report, std::size_t most) {
    const TableStyle style{
        .points = true, .only = {Verdict::slower, Verdict::faster, Verdict::unsure}, .colours = false};
    const std::vector<TableLine> lines = tableLines(report, style);
    if (lines.empty()) {
        return "";
    }
    return folded(
        fmt::format("{} point{} that differ or cannot be told", lines.size(), lines.size() == 1 ? "" : "s"),
        headOf({"function", "point", "verdict", "change ", "interval", "clocks of one call"}) +
            linesOf(lines, most, pointLine));
}

std::string item(std::string_view name, std::string_view text) {
    return text.empty() ? "" : fmt::format("- {}: {}\n", name, code(text));
}

/// Of a comparison or a measurement.
template <class Report>
std::string machineItems(const Report& report) {
    const Machine& machine = report.machine;
    return item("processor", machine.processor) + item("kernel", machine.kernel) +
           item("hypervisor", machine.hypervisor) +
           fmt::format("- {} bits, core {}, {} MHz, {:.1f} s, seed {}\n", machine.bits, machine.core,
                       machine.mhz, report.seconds, report.seed);
}

std::string items(std::string_view name, const std::vector<std::string>& texts) {
    return linesOf(texts, mostLines, [&](const std::string& its) { return item(name, its); });
}

std::string circumstances(const Report& report) {
    std::string text = "\n" + item("old", report.older.name) + item("keys of old", report.older.keys) +
                       item("new", report.newer.name) + item("keys of new", report.newer.keys) +
                       machineItems(report);
    if (report.identical) {
        text += "- both builds are the same to the byte\n";
    }
    return folded("Builds and machine", text + items("warning", report.warnings) +
                                            items("old only", report.onlyOlder) +
                                            items("new only", report.onlyNewer));
}

/// The rows of a table on a terminal, less columns in which nothing stands. The first and the last cell hold
/// names.
std::string tableOf(const std::vector<Cells>& rows, std::size_t most) {
    const auto isUsed = [&](std::size_t column) {
        return std::any_of(rows.begin(), rows.end(),
                           [&](const Cells& cells) { return !cells[column].empty(); });
    };
    const auto ofRow = [&](const Cells& cells, auto&& show) {
        Cells shown;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (isUsed(i)) {
                shown.push_back(show(i, cells[i]));
            }
        }
        return shown;
    };
    const std::size_t last = rows.front().size() - 1;
    const Cells names = ofRow(rows.front(), [&](std::size_t i, const std::string& name) {
        return i == 0 || i == last || name.empty() || name == "per" ? name : name + " ";
    });
    return headOf(names) + linesOf(std::vector(rows.begin() + 1, rows.end()), most, [&](const Cells& cells) {
               return lineOf(ofRow(cells, [&](std::size_t i, const std::string& cell) {
                   return (i == 0 || i == last) && !cell.empty() ? code(cell) : cell;
               }));
           });
}

bool differsSomewhere(const FleetLine& line) {
    return std::any_of(line.ofKinds.begin(), line.ofKinds.end(),
                       [](const TableLine& one) { return one.point != nullptr && differs(one); });
}

std::string kindCell(const TableLine& line) {
    if (line.point == nullptr) {
        return "-";
    }
    const Decision& decision = line.point->decision;
    return verdictCell(decision) + (decision.pairs > 0 ? " " + changeText(decision) : "");
}

std::string fleetLine(const FleetLine& line) {
    Cells cells{code(line.name)};
    for (const TableLine& one : line.ofKinds) {
        cells.push_back(kindCell(one));
    }
    return lineOf(cells);
}

/// The functions that differ on any kind, and how many do on none.
std::string functionsByKinds(const FleetReport& fleet) {
    std::vector<FleetLine> lines = fleetLines(fleet, false);
    const auto same = std::stable_partition(lines.begin(), lines.end(), differsSomewhere);
    const auto others = lines.end() - same;
    lines.erase(same, lines.end());
    std::string text;
    if (!lines.empty()) {
        Cells names{"function"};
        for (const KindReport& kind : fleet.kinds) {
            names.push_back(code(kind.name));
        }
        text = headOf(names) + linesOf(lines, mostLines, fleetLine);
    }
    return others == 0 ? text
                       : text + fmt::format("\n{} function{} without a known difference on any kind.\n",
                                            others, others == 1 ? "" : "s");
}

/// "Of 3 kinds 1 has something slower, 0 something faster."
std::string sentenceOf(const FleetReport& fleet) {
    const auto have = [&](auto&& isIt) {
        return std::count_if(fleet.kinds.begin(), fleet.kinds.end(), [&](const KindReport& kind) {
            const std::vector<Point>& points = kind.report.points;
            return std::any_of(points.begin(), points.end(),
                               [&](const Point& point) { return isIt(point.decision); });
        });
    };
    const auto slower = have([](const Decision& one) { return one.verdict == Verdict::slower; });
    const auto faster = have([](const Decision& one) { return one.verdict == Verdict::faster; });
    const auto crash = have([](const Decision& one) { return one.reason == Reason::crash; });
    return fmt::format("Of {} kind{} {} {} something slower, {} something faster{}.", fleet.kinds.size(),
                       fleet.kinds.size() == 1 ? "" : "s", slower, slower == 1 ? "has" : "have", faster,
                       crash == 0 ? "" : fmt::format(", {} a crash", crash));
}

std::string functionResultsLine(const FunctionResults& function) {
    return lineOf({code(function.function), std::to_string(function.count), figureText(function.least),
                   figureText(function.most), code(function.unit)});
}

std::string resultLine(const ResultRow& row) {
    return lineOf({code(row.function), code(parameterText(row.parameters)), figureText(row.clocks),
                   code(row.unit), figureText(row.microseconds)});
}

}  // namespace

std::string markdown(const Report& report) {
    std::vector<TableLine> lines = tableLines(report, {});
    const auto same = std::stable_partition(lines.begin(), lines.end(), differs);
    const std::vector<TableLine> others(same, lines.end());
    lines.erase(same, lines.end());
    return "**" + sentence(report) + "**\n" + changed(lines) + rest(others) +
           pointsThatAreNotSame(report, mostFolded) + circumstances(report);
}

std::string markdown(const FleetReport& fleet) {
    std::string text = "**" + sentenceOf(fleet) + "**\n" + functionsByKinds(fleet);
    for (const KindReport& kind : fleet.kinds) {
        text += fmt::format("\n{}: {} session{}. {}\n", code(kind.name), kind.sessions,
                            kind.sessions == 1 ? "" : "s", sentence(kind.report)) +
                pointsThatAreNotSame(kind.report, std::max<std::size_t>(1, mostFolded / fleet.kinds.size())) +
                circumstances(kind.report);
    }
    return text;
}

std::string markdown(const MeasurementReport& report) {
    std::string sentences = sentence(report);
    sentences.pop_back();
    std::string build = "\n" + item("build", report.build.name) + item("keys", report.build.keys) +
                        machineItems(report) + items("warning", report.warnings);
    if (report.earlier) {
        build += item("beside", report.earlier->path) + items("caveat", report.earlier->caveats);
    }
    return "**" + sentences + "**\n" + tableOf(rowsOf(report, false), mostLines) +
           folded("All points", tableOf(rowsOf(report, true), mostFolded)) +
           folded("Build and machine", build);
}

std::string markdown(const ResultTable& table) {
    std::string text = "**" + sentence(table) + "**\n" +
                       headOf({"function", "results ", "least clocks ", "most ", "per"}) +
                       linesOf(functionsOf(table), mostLines, functionResultsLine);
    text += folded("All results", headOf({"function", "point", "clocks ", "per", "usec "}) +
                                      linesOf(table.rows, mostFolded, resultLine));
    std::string runs = "\n";
    for (const ResultRun& run : table.runs) {
        for (const auto& [name, value] : run) {
            runs += item(name, value);
        }
    }
    return text + folded("Runs", runs);
}

}  // namespace lab
