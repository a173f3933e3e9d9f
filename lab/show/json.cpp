#include "show/json.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace lab {
namespace {

using Json = nlohmann::ordered_json;

/// A figure to so many decimals, which is more than it is worth; null where there is none.
Json figure(double value, int decimals) {
    const double unit = std::pow(10.0, decimals);
    return std::isfinite(value) ? Json(std::round(value * unit) / unit) : Json(nullptr);
}

Json ratio(double logRatio) { return figure(std::isfinite(logRatio) ? std::exp(logRatio) : logRatio, 6); }

/// Figures of which 0 says that they were not measured.
Json clocks(double value) { return value > 0 ? figure(value, 4) : Json(nullptr); }

Json text(std::string_view value) { return value.empty() ? Json(nullptr) : Json(value); }

Json toJson(const Build& build) {
    Json objects = Json::array();
    for (const SharedObject& object : build.objects) {
        objects.push_back({{"path", object.path}, {"sha256", object.sha256}, {"buildId", object.buildId}});
    }
    return {{"name", build.name},
            {"keys", build.keys},
            {"library", build.library},
            {"mask", build.mask},
            {"objects", objects}};
}

Json toJson(const Machine& machine) {
    return {{"processor", machine.processor},
            {"kernel", machine.kernel},
            {"hypervisor", text(machine.hypervisor)},
            {"governor", text(machine.governor)},
            {"bits", machine.bits},
            {"mhz", machine.mhz},
            {"core", machine.core},
            {"siblings", machine.siblings},
            {"load", figure(machine.load, 2)},
            {"steal", figure(machine.steal, 4)}};
}

Json toJson(const Fate& fate) { return {{"status", fate.status}, {"death", text(fate.death)}}; }

Json ratioOf(const Decision& decision) {
    const Json middle = decision.pairs > 0 ? ratio(decision.interval.middle) : Json(nullptr);
    return Json::array({ratio(decision.interval.low), middle, ratio(decision.interval.high)});
}

Json toJson(const Point& point) {
    Json parameters = Json::object();
    for (const auto& [name, value] : point.parameters) {
        parameters[name] = value;
    }
    return {{"function", point.function},
            {"parameters", parameters},
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

}  // namespace

std::string json(const Report& report, ExitStatus exit) {
    Json points = Json::array();
    for (const Point& point : report.points) {
        points.push_back(toJson(point));
    }
    const Json document{{"schema", jsonSchema},
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
                        {"points", points},
                        {"onlyOld", report.onlyOlder},
                        {"onlyNew", report.onlyNewer},
                        {"summary", toJson(count(report.points))},
                        {"exit", static_cast<int>(exit)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lab
