/// Pairs until every point is closed: each pair visits the points that are open, and what it brings decides
/// which those are. All of that follows from the store alone, so a comparison that was interrupted goes on
/// where it was.

#include "compare/comparison.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <thread>

#include "compare/evidence.h"
#include "compare/pairstart.h"
#include "machine/canary.h"
#include "machine/facts.h"
#include "machine/noise.h"
#include "machine/sha256.h"
#include "turns/copies.h"
#include "turns/walk.h"

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

/// Starts of a pair, and losses within a function, that are taken for chance.
constexpr int ChancesToStart = 3;
constexpr int ChancesOfFunction = 2;
constexpr double LongestWait = 10.0;
/// The survey counts as a pair, for its random numbers alone.
constexpr int SurveyPair = 0;

const char* const sideNames[] = {"old", "new"};

std::chrono::milliseconds patienceOf(const Settings& settings) {
    return std::chrono::milliseconds(static_cast<long long>(settings.patience * 1000.0));
}

/// A child that someone killed by chance is no reason to give up.
InstrumentPair startSurely(const std::array<StoredSide, 2>& sides, int mhz, const Settings& settings,
                           int pair, int start) {
    for (int chance = 1;; ++chance) {
        try {
            return startPair(sides, mhz, patienceOf(settings),
                             Random{settings.seed, static_cast<std::uint64_t>(pair),
                                    static_cast<std::uint64_t>(start + chance)});
        } catch (const std::runtime_error&) {
            if (chance == ChancesToStart) {
                throw;
            }
        }
    }
}

/// The core that all runs on, this process too: it sleeps while an instrument works.
int takeCore(int asked) {
    if (asked < 0) {
        return quietestCore(allowedCores());
    }
    if (!bindToCore(asked)) {
        throw std::runtime_error("processor " + std::to_string(asked) + " is not for this process");
    }
    return asked;
}

void waitUntilQuiet(const Settings& settings, Canary& canary, const Watcher& watcher) {
    if (!settings.wait) {
        return;
    }
    bool said = false;
    const auto pause = [&] {
        throwIfInterrupted();
        if (!said) {
            watcher.note("waits for quiet, at most 10 s (--no-wait)");
            said = true;
        }
        const std::chrono::milliseconds step(100);
        std::this_thread::sleep_for(step);
        return std::chrono::duration<double>(step).count();
    };
    waitForQuiet([&] { return canary.busyness(); }, pause, LongestWait);
}

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

/// A side as its instrument walks it.
struct Survey {
    Route route;
    std::string lostIn;  ///< function that the walk did not get past; empty: it came to its end
    std::string loss;
};

/// Both sides. One that is lost, be it by chance, gets further chances, and what it lists then is all it has.
std::array<Survey, 2> surveySides(std::array<StoredSide, 2>& sides, int mhz, const Settings& settings) {
    std::array<Survey, 2> surveys;
    for (int chance = 1; chance <= ChancesToStart; ++chance) {
        InstrumentPair pair = startSurely(sides, mhz, settings, SurveyPair, chance * ChancesToStart);
        bool lost = false;
        for (std::size_t i = 0; i < 2; ++i) {
            Instrument& instrument = *pair.side[i];
            sides[i].library = instrument.hello().library;
            for (std::size_t object = 0; object < sides[i].objects.size(); ++object) {
                sides[i].objects[object].mapped = pair.mapped[i][object];
            }
            surveys[i] = {Route(survey(instrument)), "", ""};
            if (instrument.loss()) {
                surveys[i].lostIn = instrument.lastFunction();
                surveys[i].loss = instrument.loss()->what;
                lost = true;
            }
            instrument.quit();
        }
        if (!lost) {
            break;
        }
    }
    return surveys;
}

/// What is to be kept of a survey that was lost.
void keepLoss(Store& store, const Survey& survey, std::size_t side, const Watcher& watcher) {
    if (survey.loss.empty()) {
        return;
    }
    const std::string text = std::string("the instrument of the ") + sideNames[side] +
                             " side does not get past " +
                             (survey.lostIn.empty() ? "its start" : survey.lostIn) + " (" + survey.loss +
                             "): nothing behind it is compared";
    store.addWarning(text);
    watcher.warning(text);
}

/// One run of continueComparison.
class Run {
  public:
    Run(Store& store, const Watcher& watcher)
        : m_store(store),
          m_watcher(watcher),
          m_head(store.head()),
          m_settings(settingsFrom(m_head)),
          m_mhz(std::stoi(store.setting("mhz"))),
          m_plan(planFor(m_head.points, m_settings.looks())),
          m_evidence(m_head.points, m_plan, m_settings.margin),
          m_noise(readNoise(m_settings.core)) {
        std::vector<PointMessage> points;
        for (const StoredPoint& point : m_head.points) {
            points.push_back({point.function, point.unit, point.divisor, point.parameters});
        }
        m_route = Route(std::move(points));
        recall();
    }

    void run() {
        for (;; ++m_pair) {
            m_evidence.decideAll();
            m_store.setDecisions(m_evidence.decisions());
            if (openPoints().empty() || m_pair > mostPairs()) {
                break;
            }
            if (seconds() >= m_settings.seconds) {
                m_store.setSetting("ended", "time");
                break;
            }
            m_visitsAtStart = m_evidence.visitsWanted();
            runPair();
        }
        m_store.setSetting("spent", std::to_string(seconds()));
        m_store.finish();
    }

  private:
    /// What the store knows already.
    void recall() {
        m_store.eachVisit([&](int, StoredVisit&& visit) { m_evidence.add(visit); });
        m_evidence.decideAll();
        for (const auto& [function, fates] : m_store.fates()) {
            m_evidence.setFate(function, fates);
        }
        const auto pairs = m_store.pairs();
        m_pair = pairs.empty() ? 1 : pairs.back().number + 1;
        const std::string spent = m_store.setting("spent");
        m_spent = spent.empty() ? 0.0 : std::stod(spent);
    }

    double seconds() const { return m_spent + std::chrono::duration<double>(Clock::now() - m_start).count(); }

    /// Some more than the looks ask for, as a pair may lose points.
    int mostPairs() const {
        const int confirming = m_plan.confirming.empty() ? 0 : m_plan.confirming.back().pairs;
        return m_settings.mostPairs + confirming + m_settings.mostPairs / 4 + 2;
    }

    std::vector<std::size_t> openPoints() const {
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < m_head.points.size(); ++i) {
            if (m_evidence.isOpen(i)) {
                open.push_back(i);
            }
        }
        return open;
    }

    void runPair() {
        lookAround();
        std::vector<std::size_t> wanted = openPoints();
        m_fresh.clear();
        for (const std::size_t point : wanted) {
            if (m_evidence.wantsFresh(point)) {
                m_fresh.insert(point);
            }
        }
        const std::set<int> visited = m_store.pointsVisited(m_pair);
        std::erase_if(wanted, [&](std::size_t point) { return visited.contains(static_cast<int>(point)); });
        for (int start = 0; !wanted.empty(); start += ChancesToStart) {
            const WalkEnd end = walkOnce(wanted, start);
            if (!end.lost()) {
                break;
            }
            noteLoss(end, wanted);
        }
        m_store.addPair({m_pair, seconds(), m_busyness, m_steal, m_load});
        m_store.setSetting("spent", std::to_string(seconds()));
        report();
    }

    /// Takes out of `wanted` what was visited.
    WalkEnd walkOnce(std::vector<std::size_t>& wanted, int start) {
        InstrumentPair pair = startSurely(m_head.sides, m_mhz, m_settings, m_pair, start);
        WalkTask task;
        task.points = wanted;
        task.shape = m_settings.shape;
        task.mhz = m_mhz;
        task.seed = m_settings.seed;
        task.pair = static_cast<std::uint64_t>(m_pair);
        task.seconds = [this] { return seconds(); };
        task.finish = [&](const std::string& function, std::vector<Visit> visits) {
            keep(std::move(visits));
            std::erase_if(wanted,
                          [&](std::size_t point) { return m_route.points()[point].function == function; });
            m_losses.erase(function);
            report();
        };
        WalkEnd end = walk(*pair.side[0], *pair.side[1], m_route, task);
        pair.side[0]->quit();
        pair.side[1]->quit();
        return end;
    }

    void keep(std::vector<Visit> visits) {
        std::vector<StoredVisit> stored;
        stored.reserve(visits.size());
        for (Visit& visit : visits) {
            stored.push_back({static_cast<int>(visit.point), m_fresh.contains(visit.point),
                              std::move(visit.turns), visit.fates});
        }
        m_store.addVisits(m_pair, stored);
        for (const StoredVisit& visit : stored) {
            m_evidence.add(visit);
        }
    }

    /// A function that repeats its loss is out of the comparison.
    void noteLoss(const WalkEnd& end, std::vector<std::size_t>& wanted) {
        std::string words;
        std::array<Fate, 2> fates;
        for (std::size_t side = 0; side < 2; ++side) {
            if (!end.losses[side].empty()) {
                fates[side].death = end.losses[side];
                words += (words.empty() ? "" : "; ") + std::string(sideNames[side]) + ": " + end.losses[side];
            }
        }
        if (++m_losses[end.function] < ChancesOfFunction) {
            warn(end.function + " lost an instrument once (" + words + "), and was tried again");
            return;
        }
        m_store.addFate(end.function, fates);
        m_evidence.setFate(end.function, fates);
        m_watcher.note(end.function + " loses its instrument (" + words + "), and is left out");
        std::erase_if(wanted,
                      [&](std::size_t point) { return m_route.points()[point].function == end.function; });
    }

    void warn(const std::string& text) {
        m_store.addWarning(text);
        m_watcher.warning(text);
    }

    void lookAround() {
        const NoiseReading now = readNoise(m_settings.core);
        m_busyness = m_canary.busyness();
        m_steal = m_noise.steal(now);
        m_load = now.load;
        for (const std::string& text :
             m_noise.warnings(now, m_busyness, static_cast<int>(std::thread::hardware_concurrency()))) {
            warn(text);
        }
    }

    /// The time that is left follows from what a visit took so far in this run.
    void report() {
        Progress progress;
        progress.pair = m_pair;
        progress.mostPairs = m_settings.mostPairs;
        progress.closedPoints = m_evidence.closedPoints();
        progress.points = m_evidence.comparedPoints();
        const int left = m_evidence.visitsWanted();
        m_visits += m_visitsAtStart - left;
        m_visitsAtStart = left;
        const double each = m_visits > 0 ? (seconds() - m_spent) / m_visits : 0.0;
        progress.secondsLeft = std::clamp(each * left, 0.0, std::max(0.0, m_settings.seconds - seconds()));
        m_watcher.progress(progress);
    }

    Store& m_store;
    const Watcher& m_watcher;
    StoredHead m_head;
    Settings m_settings;
    int m_mhz;
    Plan m_plan;
    EvidenceTable m_evidence;
    Route m_route;
    NoiseWatch m_noise;
    Canary m_canary;
    Clock::time_point m_start = Clock::now();
    double m_spent = 0.0;  ///< seconds, by earlier runs
    int m_pair = 1;
    int m_visits = 0;  ///< of points, in this run
    int m_visitsAtStart = 0;
    std::set<std::size_t> m_fresh;  ///< points that this pair is asked to confirm
    std::map<std::string, int> m_losses;
    double m_busyness = 1.0;
    double m_steal = 0.0;
    double m_load = 0.0;
};

}  // namespace

Store beginComparison(const Settings& asked, const std::string& path, const Watcher& watcher) {
    Settings settings = asked;
    StoredHead head;
    Store::checkPath(path);
    head.sides = findSides(settings);
    settings.core = takeCore(settings.core);
    Canary canary;
    waitUntilQuiet(settings, canary, watcher);
    head.machine = machineFacts(settings.core);
    const int mhz = tickMHz();
    const std::array<Survey, 2> surveys = surveySides(head.sides, mhz, settings);
    head.points = merged(surveys[0].route, surveys[1].route);
    if (std::none_of(head.points.begin(), head.points.end(),
                     [](const StoredPoint& point) { return point.older && point.newer; })) {
        throw NotComparable("the sides have no point in common");
    }
    if (!areSameObjects(head.sides)) {
        markEqualCode(head.points, head.sides);
    }
    head.settings = settingTexts(settings);
    head.settings.emplace_back("mhz", std::to_string(mhz));
    head.settings.emplace_back("identical", isSelfComparison(head.sides) ? "yes" : "no");
    Store store = Store::create(path, head);
    keepLoss(store, surveys[0], 0, watcher);
    keepLoss(store, surveys[1], 1, watcher);
    return store;
}

void continueComparison(Store& store, const Watcher& watcher) {
    const StoredHead head = store.head();
    const Settings settings = settingsFrom(head);
    for (const StoredSide& side : head.sides) {
        for (const StoredObject& object : side.objects) {
            if (sha256(fileContent(object.path)) != object.sha256) {
                throw NotComparable(object.path + " is not what it was when the comparison began");
            }
        }
    }
    if (!bindToCore(settings.core)) {
        throw std::runtime_error("processor " + std::to_string(settings.core) + " is not for this process");
    }
    Run(store, watcher).run();
}

}  // namespace lab
