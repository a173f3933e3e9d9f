/// From folders to a store that lists the points of both sides.

#include <algorithm>
#include <random>
#include <set>

#include "compare/comparison.h"
#include "compare/quiet.h"
#include "compare/survey.h"
#include "machine/facts.h"
#include "machine/version.h"

namespace lab {

namespace {

/// The points of both sides in the order of the walks, and whose they are.
std::vector<StoredPoint> merged(const Route& older, const Route& newer) {
    std::vector<StoredPoint> points;
    const auto put = [&](const PointMessage& point, bool inOlder, bool inNewer) {
        points.push_back({point.function, point.parameters, point.unit, point.divisor, inOlder, inNewer, {}});
    };
    std::size_t next = 0;
    for (std::size_t i = 0; i < older.points().size(); ++i) {
        const auto found = newer.find(older.key(i));
        if (found && *found < next) {
            throw NotComparable("the sides walk their points in different orders, " + older.key(i) +
                                " for one");
        }
        for (; found && next < *found; ++next) {
            if (older.find(newer.key(next))) {
                throw NotComparable("the sides walk their points in different orders, " + newer.key(next) +
                                    " for one");
            }
            put(newer.points()[next], false, true);
        }
        next += found ? 1 : 0;
        put(older.points()[i], true, found.has_value());
    }
    for (; next < newer.points().size(); ++next) {
        put(newer.points()[next], false, true);
    }
    return points;
}

std::vector<std::string> functionsOf(const std::vector<StoredPoint>& points) {
    std::set<std::string> functions;
    for (const StoredPoint& point : points) {
        functions.insert(point.function);
    }
    return {functions.begin(), functions.end()};
}

void markEqualCode(std::vector<StoredPoint>& points, const std::array<StoredSide, 2>& sides) {
    const auto equal = functionsOfEqualCode(sides, functionsOf(points));
    for (StoredPoint& point : points) {
        if (std::find(equal.begin(), equal.end(), point.function) != equal.end()) {
            point.marks.emplace_back("same machine code");
        }
    }
}

/// Tells this comparison from every other, those of the same builds and seed too.
std::string newIdentity() {
    std::random_device lots;
    std::string identity;
    for (int i = 0; i < 4; ++i) {
        identity += (i > 0 ? "-" : "") + std::to_string(lots());
    }
    return identity;
}

/// What is to be kept of a survey that was lost.
void keepLoss(Store& store, const Survey& survey, std::size_t side, const Watcher& watcher) {
    if (survey.loss.empty()) {
        return;
    }
    const std::string text = std::string("the instrument of the ") + (side == 0 ? "old" : "new") + " side" +
                             survey.lossText("compared");
    store.addWarning(text);
    watcher.warning(text);
}

}  // namespace

Store beginComparison(const Settings& asked, const std::string& path, const Watcher& watcher) {
    Settings settings = asked;
    StoredHead head;
    Store::checkPath(path, head.kind);
    head.sides = findSides(settings);
    settings.core = takeCore(settings.core);
    Canary canary;
    waitUntilQuiet(settings, canary, watcher.note);
    head.machine = machineFacts(settings.core);
    const int mhz = tickMHz();
    const std::vector<Survey> surveys = surveySides(head.sides, mhz, settings);
    head.points = merged(surveys[0].route, surveys[1].route);
    if (std::none_of(head.points.begin(), head.points.end(),
                     [](const StoredPoint& point) { return point.older && point.newer; })) {
        throw NotComparable("the sides have no point in common");
    }
    if (!areSameObjects(head.sides)) {
        markEqualCode(head.points, head.sides);
    }
    head.settings = settingTexts(settings);
    head.settings.emplace_back("version", labVersion());
    head.settings.emplace_back("mhz", std::to_string(mhz));
    head.settings.emplace_back("session", newIdentity());
    head.settings.emplace_back("identical", isSelfComparison(head.sides) ? "yes" : "no");
    Store store = Store::create(path, head);
    keepLoss(store, surveys[0], 0, watcher);
    keepLoss(store, surveys[1], 1, watcher);
    return store;
}

}  // namespace lab
