/// The error of a link. With sorted values d(1) to d(n) of n pairs, [d(k), d(n+1-k)] misses their median with
/// 2 P(Bin(n, 1/2) < k), whatever their distribution. k is the greatest with which that is at most 5%, and
/// half of the interval, over the normal quantile of its own coverage, is the standard deviation. Readings of
/// a clock that steps by g are rounded by up to half of it: another g / sqrt(12), as rounding need not vary
/// from pair to pair.

#include "history/joining.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "compare/settings.h"
#include "compare/storedreport.h"
#include "machine/sha256.h"
#include "measure/storedmeasurement.h"
#include "show/table.h"
#include "verdict/plan.h"
#include "verdict/statistics.h"

namespace lab {

namespace {

constexpr double MostMissed = 0.05;

/// Where a standard normal value lies beyond with that probability, 0 to 1/2.
double normalQuantile(double tail) {
    double low = 0.0;
    double high = 40.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        (std::erfc(middle / std::sqrt(2.0)) / 2 > tail ? low : high) = middle;
    }
    return low;
}

/// Below 0 where the values are too few for an interval.
double errorOfMedian(std::vector<double> values) {
    const int n = static_cast<int>(values.size());
    int rank = 0;
    while (2 * fairTail(n, rank + 1) <= MostMissed) {
        ++rank;
    }
    if (rank == 0) {
        return -1.0;
    }
    std::sort(values.begin(), values.end());
    const auto k = static_cast<std::size_t>(rank);
    return (values[values.size() - k] - values[k - 1]) / 2 / normalQuantile(fairTail(n, rank));
}

bool choosesPoints(const std::string& key) {
    return key.starts_with("-f") || key.starts_with("-t") || key.starts_with("-m") || key.starts_with("-d");
}

std::string joinedKeys(const std::vector<std::string>& keys, const std::vector<std::string>& but) {
    std::string text;
    for (const std::string& key : keys) {
        if (std::find(but.begin(), but.end(), key) == but.end()) {
            text += (text.empty() ? "" : " ") + key;
        }
    }
    return text;
}

/// Keys that both sides have, which are the method's.
std::vector<std::string> commonKeys(const std::array<StoredSide, 2>& sides) {
    std::vector<std::string> common;
    for (const std::string& key : sides[0].keys) {
        if (std::find(sides[1].keys.begin(), sides[1].keys.end(), key) != sides[1].keys.end()) {
            common.push_back(key);
        }
    }
    return common;
}

BuildEntry buildOf(const StoredSide& side, const std::vector<std::string>& common) {
    BuildEntry build;
    build.library = side.library;
    std::string content;
    for (const StoredObject& object : side.objects) {
        content += object.name + " " + object.sha256 + "\n";
        build.buildIds.push_back(object.buildId);
    }
    build.identity = sha256(content + joinedKeys(side.keys, common));
    return build;
}

Method methodOf(const StoredHead& head, std::vector<std::string> keys, std::string turn) {
    Method method;
    for (const auto& [name, value] : head.machine) {
        if (name == "processor") {
            method.processor = value;
        }
    }
    std::erase_if(keys, choosesPoints);
    method.keys = joinedKeys(keys, {});
    method.turn = std::move(turn);
    method.bits = head.sides[0].objects.empty() ? 0 : head.sides[0].objects.front().bits;
    return method;
}

/// Its seed, and what its first visit read, which no other run reads again.
std::string identityOf(std::uint64_t seed, const std::vector<Turn>& first) {
    std::string run = std::to_string(seed);
    for (const Turn& turn : first) {
        for (const std::int64_t ticks : turn.ticks) {
            run += " " + std::to_string(ticks);
        }
    }
    return run;
}

/// All pairs of each point, in their order.
struct PointPairs {
    std::vector<double> values;
    std::vector<double> grains;
};

}  // namespace

Finding findingOf(const std::vector<double>& values, double grain, double margin) {
    Finding finding;
    finding.pairs = static_cast<int>(values.size());
    finding.middle = median(values);
    finding.error = errorOfMedian(values);
    if (finding.measured()) {
        finding.error = std::hypot(finding.error, grain / std::sqrt(12.0));
    }
    for (const double value : values) {
        const double margins = std::clamp(value / std::log1p(margin), -1.0, 1.0);
        finding.push += margins;
        finding.energy += margins * margins;
    }
    return finding;
}

JoinedComparison joinedFrom(Store& store) {
    if (store.setting("finished") != "yes") {
        throw std::runtime_error("the comparison is not finished: resume it first");
    }
    const StoredHead head = store.head();
    const Settings settings = settingsFrom(head);
    std::vector<PointPairs> pairs(head.points.size());
    std::string run;
    store.eachVisit([&](int, StoredVisit&& visit) {
        if (run.empty()) {
            run = identityOf(settings.seed, visit.turns);
        }
        if (const auto pair = pairOf(visit.turns)) {
            PointPairs& point = pairs.at(static_cast<std::size_t>(visit.point));
            point.values.push_back(pair->value);
            point.grains.push_back(pair->grain);
        }
    });

    JoinedComparison joined;
    const std::vector<std::string> common = commonKeys(head.sides);
    joined.sides = {buildOf(head.sides[0], common), buildOf(head.sides[1], common)};
    joined.method = methodOf(
        head, common, fmt::format("{:g} us, {} blocks", settings.shape.microseconds, settings.shape.blocks));
    joined.entry.identity = sha256(joined.sides[0].identity + joined.sides[1].identity + run);
    joined.entry.margin = settings.margin;
    // the report has the points that both sides have, in their order
    std::size_t next = 0;
    for (const Point& point : reportOf(store).points) {
        while (!head.points[next].older || !head.points[next].newer) {
            ++next;
        }
        const PointPairs& its = pairs[next++];
        Finding finding = findingOf(its.values, median(its.grains), settings.margin);
        finding.point = static_cast<int>(joined.points.size());
        finding.verdict = point.decision.verdict;
        finding.reason = point.decision.reason;
        if (finding.reason == Reason::crash || finding.reason == Reason::status) {
            finding.error = -1.0;  // the sides do different work
        }
        finding.older = point.older;
        finding.newer = point.newer;
        finding.sameCode =
            std::find(point.marks.begin(), point.marks.end(), "same machine code") != point.marks.end();
        joined.points.push_back({point.function, parameterText(point), point.unit});
        joined.entry.findings.push_back(finding);
    }
    return joined;
}

JoinedMeasurement joinedMeasurementFrom(Store& store) {
    const MeasurementReport report = measurementOf(store);
    if (!report.finished) {
        throw std::runtime_error("the measurement is not finished: resume it first");
    }
    const StoredHead head = store.head();
    std::string run;
    store.eachVisit([&](int, StoredVisit&& visit) {
        if (run.empty()) {
            run = identityOf(report.seed, visit.turns);
        }
    });
    JoinedMeasurement joined;
    joined.build = buildOf(head.sides[0], head.sides[0].keys);
    joined.entry.identity = sha256(joined.build.identity + run);
    joined.entry.method = methodOf(head, head.sides[0].keys, "");
    joined.entry.processes = report.processes;
    for (const MeasuredPoint& point : report.points) {
        if (point.figure) {
            joined.entry.figures.push_back(
                {static_cast<int>(joined.points.size()), point.figure->floor / point.divisor,
                 point.figure->low / point.divisor, point.figure->high / point.divisor});
            joined.points.push_back({point.function, parameterText(point.parameters), point.unit});
        }
    }
    return joined;
}

}  // namespace lab
