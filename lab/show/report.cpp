#include "show/report.h"

#include "verdict/statistics.h"

namespace lab {

void add(Counts& counts, const Point& point) {
    const Verdict verdict = point.decision.verdict;
    counts.slower += verdict == Verdict::slower;
    counts.faster += verdict == Verdict::faster;
    counts.same += verdict == Verdict::same;
    counts.unsure += verdict == Verdict::unsure;
    counts.crashed += point.olderFate.death.empty() && !point.newerFate.death.empty();
}

Counts count(const std::vector<Point>& points) {
    Counts counts;
    for (const Point& point : points) {
        add(counts, point);
    }
    return counts;
}

ExitStatus exitStatus(const Report& report, bool failOnUnsure) {
    const Counts counts = count(report.points);
    if (counts.crashed > 0) {
        return exitCrash;
    }
    if (counts.slower > 0) {
        return exitSlower;
    }
    return failOnUnsure && counts.unsure > 0 ? exitUnsure : exitNothingSlower;
}

void setClocks(Point& point, const std::vector<Pair>& pairs) {
    std::vector<double> older;
    std::vector<double> newer;
    for (const Pair& pair : pairs) {
        older.push_back(pair.older);
        newer.push_back(pair.newer);
    }
    point.older = median(std::move(older));
    point.newer = median(std::move(newer));
}

}  // namespace lab
