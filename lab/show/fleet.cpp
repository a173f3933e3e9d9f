#include "show/fleet.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>

#include "show/json.h"

namespace lab {

namespace {

std::string nameOf(const Point& point, bool points) {
    return printable(points ? point.function + " " + parameterText(point) : point.function);
}

/// What the function has on the kind where it stands worst.
const TableLine& worstOf(const FleetLine& line) {
    const TableLine* worst = nullptr;
    for (const TableLine& one : line.ofKinds) {
        if (one.point != nullptr && (worst == nullptr || isWorse(one, *worst))) {
            worst = &one;
        }
    }
    return *worst;
}

std::string cellOf(const TableLine& line) {
    if (line.point == nullptr) {
        return "-";
    }
    const Decision& decision = line.point->decision;
    const std::string words = verdictText(decision);
    return decision.pairs > 0 ? words + " " + change(decision.interval.middle) : words;
}

std::string withoutBlanksAtEnd(const std::string& line) {
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

std::string rows(const FleetReport& fleet, bool points, bool colours) {
    const std::vector<FleetLine> lines = fleetLines(fleet, points);
    std::size_t nameWidth = 8;
    std::vector<std::size_t> widths;
    for (const KindReport& kind : fleet.kinds) {
        widths.push_back(printable(kind.name).size());
    }
    for (const FleetLine& line : lines) {
        nameWidth = std::max(nameWidth, line.name.size());
        for (std::size_t kind = 0; kind < widths.size(); ++kind) {
            widths[kind] = std::max(widths[kind], cellOf(line.ofKinds[kind]).size());
        }
    }
    std::string head = fmt::format("{:{}}  ", points ? "point" : "function", nameWidth);
    for (std::size_t kind = 0; kind < widths.size(); ++kind) {
        head += fmt::format("{:{}}  ", printable(fleet.kinds[kind].name), widths[kind]);
    }
    std::string text = withoutBlanksAtEnd(head);
    for (const FleetLine& line : lines) {
        std::string row = fmt::format("{:{}}  ", line.name, nameWidth);
        for (std::size_t kind = 0; kind < widths.size(); ++kind) {
            const TableLine& one = line.ofKinds[kind];
            const std::string cell = fmt::format("{:{}}  ", cellOf(one), widths[kind]);
            row += colours && one.point != nullptr ? coloured(cell, *one.point) : cell;
        }
        text += withoutBlanksAtEnd(row);
    }
    return text;
}

std::string kindText(const KindReport& kind) {
    const std::string& processor = kind.report.machine.processor;
    std::string text =
        fmt::format("{}: {} session{}{}{}. {}\n", printable(kind.name), kind.sessions,
                    kind.sessions == 1 ? "" : "s", processor.empty() || processor == kind.name ? "" : " on ",
                    processor == kind.name ? "" : printable(processor), sentence(kind.report));
    for (const std::string& warning : kind.report.warnings) {
        text += fmt::format("  warning: {}\n", printable(warning));
    }
    return text;
}

}  // namespace

std::vector<FleetLine> fleetLines(const FleetReport& fleet, bool points) {
    TableStyle style;
    style.points = points;
    std::map<std::string, FleetLine> byName;
    for (std::size_t kind = 0; kind < fleet.kinds.size(); ++kind) {
        for (const TableLine& line : tableLines(fleet.kinds[kind].report, style)) {
            FleetLine& known = byName[nameOf(*line.point, points)];
            known.ofKinds.resize(fleet.kinds.size());
            known.ofKinds[kind] = line;
        }
    }
    std::vector<FleetLine> lines;
    for (auto& [name, line] : byName) {
        line.name = name;
        lines.push_back(std::move(line));
    }
    std::stable_sort(lines.begin(), lines.end(), [](const FleetLine& one, const FleetLine& other) {
        return isWorse(worstOf(one), worstOf(other));
    });
    return lines;
}

double familyOf(const FleetReport& fleet) {
    double family = 0.0;
    for (const KindReport& kind : fleet.kinds) {
        family += kind.report.family;
    }
    return family;
}

ExitStatus exitStatus(const FleetReport& fleet, bool failOnUnsure) {
    constexpr std::array order{exitNothingSlower, exitUnsure, exitSlower, exitCrash};
    ExitStatus gravest = exitNothingSlower;
    for (const KindReport& kind : fleet.kinds) {
        const ExitStatus status = exitStatus(kind.report, failOnUnsure);
        if (std::find(order.begin(), order.end(), status) > std::find(order.begin(), order.end(), gravest)) {
            gravest = status;
        }
    }
    return gravest;
}

std::string fleetTable(const FleetReport& fleet, bool points, bool colours) {
    if (fleet.kinds.empty()) {
        return "No session yet.\n";
    }
    const Report& first = fleet.kinds.front().report;
    std::string text =
        fmt::format("old: {}\nnew: {}\n", printable(first.older.name), printable(first.newer.name));
    if (first.identical) {
        text += "Both are the same to the byte: this compares a build with itself.\n";
    }
    text += "\n" + rows(fleet, points, colours) + "\n";
    for (const KindReport& kind : fleet.kinds) {
        text += kindText(kind);
    }
    return text + fmt::format("A false \"slower\" or \"faster\" anywhere, on all kinds: at most {:.3g}%.\n",
                              100 * familyOf(fleet));
}

std::string fleetJson(const FleetReport& fleet, bool failOnUnsure) {
    using Json = nlohmann::ordered_json;
    Json kinds = Json::array();
    for (const KindReport& kind : fleet.kinds) {
        const ExitStatus status = exitStatus(kind.report, failOnUnsure);
        kinds.push_back({{"kind", kind.name},
                         {"sessions", kind.sessions},
                         {"comparison", Json::parse(json(kind.report, status))}});
    }
    const Json document{{"schema", fleetJsonSchema},
                        {"version", fleetJsonVersion},
                        {"family", familyOf(fleet)},
                        {"kinds", kinds},
                        {"exit", static_cast<int>(exitStatus(fleet, failOnUnsure))}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lab
