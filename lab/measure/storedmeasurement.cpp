#include "measure/storedmeasurement.h"

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <vector>

#include "compare/sides.h"
#include "compare/storedreport.h"
#include "measure/measurement.h"
#include "turns/walk.h"

namespace lab {

namespace {

/// A change that is less is none, whatever the processes say.
constexpr double LeastChange = 0.01;

MeasuredPoint pointOf(const StoredPoint& stored) {
    MeasuredPoint point;
    point.function = stored.function;
    point.parameters = stored.parameters;
    point.unit = stored.unit;
    point.divisor = stored.divisor;
    return point;
}

/// The points with their figures. Visits come point by point, so the turns of one are held at a time.
std::vector<MeasuredPoint> pointsOf(Store& store, const StoredHead& head) {
    std::vector<MeasuredPoint> points;
    for (const StoredPoint& stored : head.points) {
        points.push_back(pointOf(stored));
    }
    std::vector<std::vector<Turn>> processes;
    std::size_t current = 0;
    const auto close = [&] {
        if (!processes.empty()) {
            points.at(current).figure = figureOf(processes);
            processes.clear();
        }
    };
    store.eachVisit(
        [&](int, StoredVisit&& visit) {
            const auto point = static_cast<std::size_t>(visit.point);
            if (point != current) {
                close();
                current = point;
            }
            if (visit.fates[0] != Fate()) {
                points.at(point).fate = visit.fates[0];
            }
            processes.push_back(std::move(visit.turns));
        },
        VisitOrder::byPoint);
    close();
    for (const auto& [function, fates] : store.fates()) {
        for (MeasuredPoint& point : points) {
            if (point.function == function) {
                point.fate = fates[0];
            }
        }
    }
    return points;
}

MeasurementReport ownReportOf(Store& store, const StoredHead& head) {
    const MeasureSettings settings = measureSettingsFrom(head);
    MeasurementReport report;
    report.build = buildOf(head.sides[0]);
    report.machine = machineOf(head, store.pairs());
    report.seed = settings.seed;
    report.seconds = std::atof(store.setting("spent").c_str());
    report.processes = settings.processes;
    report.turns = settings.shape.epochs;
    report.finished = store.setting("finished") == "yes" && store.setting("ended").empty();
    report.warnings = store.warnings();
    report.points = pointsOf(store, head);
    return report;
}

/// By the key of the route, which tells points alike apart.
std::map<std::string, const MeasuredPoint*> byKey(const std::vector<MeasuredPoint>& points) {
    std::map<std::string, const MeasuredPoint*> found;
    std::map<std::string, int> times;
    for (const MeasuredPoint& point : points) {
        const PointMessage message{point.function, point.unit, point.divisor, point.parameters};
        const int time = ++times[Route::keyOf(message, 1)];
        found.emplace(Route::keyOf(message, time), &point);
    }
    return found;
}

Beside besideOf(const Figure& now, const Figure& earlier) {
    Beside beside{earlier.floor, now.floor / earlier.floor, Verdict::same};
    if (now.low > earlier.high && beside.ratio > 1 + LeastChange) {
        beside.mark = Verdict::slower;
    } else if (now.high < earlier.low && beside.ratio < 1 - LeastChange) {
        beside.mark = Verdict::faster;
    }
    return beside;
}

std::vector<std::string> caveatsOf(const MeasurementReport& now, const MeasurementReport& earlier) {
    std::vector<std::string> caveats{
        "the earlier figures are of another time and took no turns with these: what the machine has changed "
        "since is in the ratios; \"compare\" measures both builds at once"};
    const auto differs = [&](const std::string& what, const std::string& its, const std::string& mine) {
        if (its != mine) {
            caveats.push_back(what + " differs: " + its + " then, " + mine + " now");
        }
    };
    const auto effort = [](const MeasurementReport& report) {
        return std::to_string(report.processes) + " processes of " + std::to_string(report.turns) + " turns";
    };
    differs("the kernel", earlier.machine.kernel, now.machine.kernel);
    differs("the tick frequency", std::to_string(earlier.machine.mhz), std::to_string(now.machine.mhz));
    differs("the core", std::to_string(earlier.machine.core), std::to_string(now.machine.core));
    differs("the keys", earlier.build.keys, now.build.keys);
    differs("the method", effort(earlier), effort(now));
    if (!earlier.finished) {
        caveats.emplace_back("the earlier measurement is not finished");
    }
    return caveats;
}

}  // namespace

void putBeside(MeasurementReport& report, const MeasurementReport& earlier, const std::string& path) {
    if (earlier.machine.processor != report.machine.processor ||
        earlier.machine.bits != report.machine.bits) {
        throw NotComparable(path + " was measured on " + earlier.machine.processor + " in " +
                            std::to_string(earlier.machine.bits) + " bits, this is " +
                            report.machine.processor + " in " + std::to_string(report.machine.bits));
    }
    report.earlier = Earlier{path, caveatsOf(report, earlier)};
    const auto old = byKey(earlier.points);
    for (const auto& [key, point] : byKey(report.points)) {
        const auto found = old.find(key);
        if (found != old.end() && point->figure && found->second->figure) {
            const auto index = static_cast<std::size_t>(point - report.points.data());
            report.points[index].beside = besideOf(*point->figure, *found->second->figure);
        }
    }
}

MeasurementReport measurementOf(Store& store) {
    const StoredHead head = store.head();
    MeasurementReport report = ownReportOf(store, head);
    const std::string path = measureSettingsFrom(head).against;
    if (!path.empty()) {
        try {
            Store earlier = Store::open(path, false, StoreKind::measurement);
            putBeside(report, ownReportOf(earlier, earlier.head()), path);
        } catch (const std::runtime_error& reason) {
            report.warnings.push_back(std::string("nothing stands beside the figures: ") + reason.what());
        }
    }
    return report;
}

}  // namespace lab
