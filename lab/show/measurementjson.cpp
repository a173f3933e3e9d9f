#include "show/jsonparts.h"
#include "show/measurement.h"

namespace lab {
namespace {

Json toJson(const Cluster& cluster, double divisor) {
    return {{"clocks", clocks(cluster.clocks)},
            {"perUnit", figure(cluster.clocks / divisor, 6)},
            {"turns", cluster.turns},
            {"byProcess", cluster.byProcess}};
}

Json toJson(const Figure& its, double divisor) {
    Json clusters = Json::array();
    for (const Cluster& cluster : its.clusters) {
        clusters.push_back(toJson(cluster, divisor));
    }
    return {{"floor", clocks(its.floor)},
            {"perUnit", figure(its.floor / divisor, 6)},
            {"reached", its.reached},
            {"turns", its.turns},
            {"processes", its.processes},
            {"median", clocks(its.median)},
            {"spread", figure(its.spread, 4)},
            {"leastOfProcesses", Json::array({clocks(its.low), clocks(its.high)})},
            {"loop", figure(its.loop, 4)},
            {"clusters", clusters}};
}

Json toJson(const Beside& beside) {
    return {{"floor", clocks(beside.earlier)},
            {"ratio", figure(beside.ratio, 6)},
            {"mark", beside.mark == Verdict::same ? Json(nullptr) : Json(word(beside.mark))}};
}

Json toJson(const MeasuredPoint& point) {
    return {{"function", point.function},
            {"parameters", objectOf(point.parameters)},
            {"unit", point.unit},
            {"divisor", point.divisor},
            {"figure", point.figure ? toJson(*point.figure, point.divisor) : Json(nullptr)},
            {"fate", toJson(point.fate)},
            {"earlier", point.beside ? toJson(*point.beside) : Json(nullptr)}};
}

Json toJson(const std::optional<Earlier>& earlier) {
    return earlier ? Json{{"path", earlier->path}, {"caveats", earlier->caveats}} : Json(nullptr);
}

}  // namespace

std::string json(const MeasurementReport& report) {
    Json points = Json::array();
    for (const MeasuredPoint& point : report.points) {
        points.push_back(toJson(point));
    }
    return documentOf({{"schema", jsonMeasurementSchema},
                       {"version", jsonMeasurementVersion},
                       {"build", toJson(report.build)},
                       {"machine", toJson(report.machine)},
                       {"seed", report.seed},
                       {"seconds", figure(report.seconds, 3)},
                       {"processes", report.processes},
                       {"turns", report.turns},
                       {"finished", report.finished},
                       {"warnings", report.warnings},
                       {"earlier", toJson(report.earlier)},
                       {"points", points}});
}

}  // namespace lab
