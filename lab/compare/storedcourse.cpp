/// The run over time is read from the turns themselves. What a call takes when nothing disturbs is the least
/// it ever took at that point on that side; the time of a visit over that is how much the visit was slowed
/// down. Slices of time hold visits of many points, and their median is the machine's doing, not a point's. A
/// point whose speed hangs on the place of code and data would say "slowed down" on a quiet machine too, so
/// such points are left out.

#include "compare/storedcourse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "machine/noise.h"
#include "verdict/statistics.h"

namespace lab {

namespace {

constexpr std::size_t MostSlices = 240;
/// In a slice, on average.
constexpr std::size_t VisitsOfSlice = 12;
/// A slice with fewer says nothing.
constexpr std::size_t FewestVisits = 3;

/// A visit of a point by a pair.
struct Stay {
    std::size_t point = 0;
    double seconds = 0;
    std::array<double, 2> ticks{};  ///< of a call: old, new
};

/// Ticks of a call by the quickest block; 0 for a turn without a figure.
double ticksOf(const Turn& turn) {
    if (turn.ticks.empty() || turn.calls <= 0) {
        return 0;
    }
    const auto least = *std::min_element(turn.ticks.begin(), turn.ticks.end());
    return static_cast<double>(least - turn.empty) / static_cast<double>(turn.calls);
}

/// Nothing unless both sides took turns.
std::optional<Stay> stayOf(std::size_t point, const std::vector<Turn>& turns) {
    std::array<std::vector<double>, 2> ticks;
    Stay stay{point, 0, {}};
    for (const Turn& turn : turns) {
        ticks[turn.side == Side::older ? 0 : 1].push_back(ticksOf(turn));
        stay.seconds = std::max(stay.seconds, turn.seconds);
    }
    stay.ticks = {median(std::move(ticks[0])), median(std::move(ticks[1]))};
    const bool good = stay.ticks[0] > 0 && stay.ticks[1] > 0;
    return good ? std::optional(stay) : std::nullopt;
}

void addSlices(Course& course, const std::vector<Stay>& stays, std::size_t points) {
    std::vector<std::array<double, 2>> least(
        points, {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()});
    double end = 0;
    for (const Stay& stay : stays) {
        for (std::size_t side = 0; side < 2; ++side) {
            least[stay.point][side] = std::min(least[stay.point][side], stay.ticks[side]);
        }
        end = std::max(end, stay.seconds);
    }
    const std::size_t number = std::clamp(stays.size() / VisitsOfSlice, std::size_t{1}, MostSlices);
    if (stays.empty() || !std::isfinite(end) || end <= 0) {
        return;
    }
    course.step = end / static_cast<double>(number);
    std::vector<std::vector<double>> slowdowns(number);
    for (const Stay& stay : stays) {
        const auto slice = static_cast<std::size_t>(std::max(0.0, stay.seconds / course.step));
        const auto& floor = least[stay.point];
        slowdowns[std::min(slice, number - 1)].push_back(
            std::sqrt(stay.ticks[0] / floor[0] * stay.ticks[1] / floor[1]));
    }
    for (std::vector<double>& values : slowdowns) {
        Slice slice;
        if (values.size() >= FewestVisits) {
            slice.slowdown = median(std::move(values));
            slice.busy = *slice.slowdown > BusyCanary;
        }
        course.slices.push_back(slice);
    }
}

/// Steady pairs that disagree, or differences that did not repeat.
bool hangsOnLayout(const Decision& decision) {
    return decision.reason == Reason::layout || decision.reason == Reason::repeated;
}

}  // namespace

Course courseOf(Store& store, const Report& report) {
    // places in the report of the stored points; those of one side alone have none
    constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> places;
    std::size_t compared = 0;
    for (const StoredPoint& point : store.head().points) {
        places.push_back(point.older && point.newer ? compared++ : nowhere);
    }
    Course course;
    course.points.resize(compared);
    std::vector<Stay> stays;
    store.eachVisit([&](int pair, StoredVisit&& visit) {
        const std::size_t place = places.at(static_cast<std::size_t>(visit.point));
        const auto value = pairOf(visit.turns);
        if (place == nowhere || !value) {
            return;
        }
        course.points[place].push_back({pair, value->value, visit.fresh});
        if (const auto stay = stayOf(place, visit.turns);
            stay && !hangsOnLayout(report.points[place].decision)) {
            stays.push_back(*stay);
        }
    });
    addSlices(course, stays, compared);
    for (const StoredPair& pair : store.pairs()) {
        course.pairs.push_back({pair.number, pair.seconds, pair.busyness, pair.steal, pair.load});
    }
    return course;
}

}  // namespace lab
