#include "show/json.h"

#include <string>
#include <string_view>

#include "show/jsonparts.h"
#include "show/results.h"

namespace lab {
namespace {

Json ratioOf(const Decision& decision) {
    const Json middle = decision.pairs > 0 ? ratio(decision.interval.middle) : Json(nullptr);
    return Json::array({ratio(decision.interval.low), middle, ratio(decision.interval.high)});
}

Json toJson(const Point& point) {
    return {{"function", point.function},
            {"parameters", objectOf(point.parameters)},
            {"unit", point.unit},
            {"divisor", point.divisor},
            {"verdict", word(point.decision.verdict)},
            {"reason", text(word(point.decision.reason))},
            {"ratio", ratioOf(point.decision)},
            {"smallest", ratio(point.decision.smallest)},
            {"old", clocks(point.older)},
            {"new", clocks(point.newer)},
            {"pairs", point.decision.pairs},
            {"fate", {{"old", toJson(point.olderFate)}, {"new", toJson(point.newerFate)}}},
            {"marks", point.marks}};
}

Json toJson(const Counts& counts) {
    return {{"slower", counts.slower},
            {"faster", counts.faster},
            {"same", counts.same},
            {"unsure", counts.unsure},
            {"crashed", counts.crashed}};
}

Json textsOf(const ResultRun& run, std::string_view name) {
    Json texts = Json::array();
    for (const auto& [its, value] : run) {
        if (its == name) {
            texts.push_back(value);
        }
    }
    return texts;
}

Json toJson(const ResultRun& run) {
    return {{"processor", text(titleOf(run, "CPU"))},
            {"system", text(titleOf(run, "OS"))},
            {"computer", text(titleOf(run, "Computer"))},
            {"libraries", textsOf(run, "Library")},
            {"start", text(titleOf(run, "Start"))}};
}

Json toJson(const ResultRow& row) {
    return {{"run", row.run},
            {"function", row.function},
            {"parameters", objectOf(row.parameters)},
            {"unit", text(row.unit)},
            {"clocks", orNull(row.clocks)},
            {"microseconds", orNull(row.microseconds)},
            {"mflops", orNull(row.mflops)},
            {"calls", orNull(callsOf(row))},
            {"comment", text(row.comment)},
            {"hot", row.hot}};
}

template <class Items>
Json arrayOf(const Items& items) {
    Json array = Json::array();
    for (const auto& item : items) {
        array.push_back(toJson(item));
    }
    return array;
}

}  // namespace

std::string json(const Report& report, ExitStatus exit) {
    return documentOf({{"schema", jsonSchema},
                       {"version", jsonVersion},
                       {"sides", {{"old", toJson(report.older)}, {"new", toJson(report.newer)}}},
                       {"identical", report.identical},
                       {"machine", toJson(report.machine)},
                       {"margin", report.margin},
                       {"family", report.family},
                       {"seed", report.seed},
                       {"seconds", figure(report.seconds, 3)},
                       {"finished", report.finished},
                       {"warnings", report.warnings},
                       {"points", arrayOf(report.points)},
                       {"onlyOld", report.onlyOlder},
                       {"onlyNew", report.onlyNewer},
                       {"summary", toJson(count(report.points))},
                       {"exit", static_cast<int>(exit)}});
}

std::string json(const ResultTable& table) {
    return documentOf({{"schema", jsonTableSchema},
                       {"version", jsonTableVersion},
                       {"runs", arrayOf(table.runs)},
                       {"points", arrayOf(table.rows)},
                       {"warnings", table.warnings}});
}

}  // namespace lab
