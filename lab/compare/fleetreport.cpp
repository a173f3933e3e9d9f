#include "compare/fleetreport.h"

#include <algorithm>
#include <map>

#include "compare/storedreport.h"
#include "store/merged.h"
#include "verdict/joined.h"

namespace lab {

namespace {

/// Which point it is; of several that are named alike the n-th.
std::vector<std::string> keysOf(const std::vector<Point>& points) {
    std::map<std::string, int> times;
    std::vector<std::string> keys;
    for (const Point& point : points) {
        std::string key = point.function;
        for (const auto& [name, value] : point.parameters) {
            key.append("\n").append(name).append("=").append(value);
        }
        keys.push_back(key + "\n" + std::to_string(++times[key]));
    }
    return keys;
}

std::vector<Point> joinedPoints(const std::vector<Report>& sessions) {
    std::vector<std::vector<const Point*>> all;
    std::map<std::string, std::size_t> known;
    for (const Report& session : sessions) {
        const std::vector<std::string> keys = keysOf(session.points);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const auto [at, isNew] = known.emplace(keys[i], all.size());
            if (isNew) {
                all.emplace_back();
            }
            all[at->second].push_back(&session.points[i]);
        }
    }
    std::vector<Point> points;
    for (const std::vector<const Point*>& ofSessions : all) {
        std::vector<Decision> decisions;
        decisions.reserve(ofSessions.size());
        for (const Point* point : ofSessions) {
            decisions.push_back(point->decision);
        }
        const Joined word = joined(decisions);
        points.push_back(*ofSessions[word.speaker]);
        points.back().decision = word.decision;
    }
    return points;
}

/// Where the sessions ran on different processors, the kind is none.
void warnOfProcessors(Report& report, const std::vector<Report>& sessions) {
    for (const Report& session : sessions) {
        if (session.machine.processor != report.machine.processor) {
            report.warnings.push_back("its sessions ran on different processors: " +
                                      report.machine.processor + " and " + session.machine.processor);
            return;
        }
    }
}

}  // namespace

Report joinedReport(const std::vector<Report>& sessions) {
    Report report = sessions.front();
    report.family = 0.0;
    report.seconds = 0.0;
    report.warnings.clear();
    for (const Report& session : sessions) {
        report.family += session.family;
        report.seconds += session.seconds;
        report.finished = report.finished && session.finished;
        for (const std::string& warning : session.warnings) {
            if (std::find(report.warnings.begin(), report.warnings.end(), warning) == report.warnings.end()) {
                report.warnings.push_back(warning);
            }
        }
    }
    warnOfProcessors(report, sessions);
    report.points = joinedPoints(sessions);
    return report;
}

FleetReport fleetReportOf(const std::string& path) {
    FleetReport fleet;
    std::vector<Report> ofKind;
    const std::vector<MergedSession> sessions = mergedSessions(path);
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        Store store = Store::openSession(path, sessions[i].number);
        ofKind.push_back(reportOf(store));
        if (i + 1 == sessions.size() || sessions[i + 1].kind != sessions[i].kind) {
            fleet.kinds.push_back({sessions[i].kind, static_cast<int>(ofKind.size()), joinedReport(ofKind)});
            ofKind.clear();
        }
    }
    return fleet;
}

}  // namespace lab
