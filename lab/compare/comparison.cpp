/// Pairs until every point is closed: each pair visits the points that are open, and what it brings decides
/// which those are. All of that follows from the store alone, so a comparison that was interrupted goes on
/// where it was.

#include "compare/comparison.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <set>

#include "compare/evidence.h"
#include "compare/pairstart.h"
#include "compare/quiet.h"
#include "machine/facts.h"

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

/// The points that stay open at the next look ask for about as many visits again, so much has been seen.
constexpr double LooksAhead = 2.0;

/// One run of continueComparison.
class Run {
  public:
    Run(Store& store, const Watcher& watcher)
        : m_store(store),
          m_watcher(watcher),
          m_head(store.head()),
          m_settings(settingsFrom(m_head)),
          m_mhz(std::stoi(store.setting("mhz"))),
          m_plan(planFor(m_head.points, m_settings.looks(), m_settings.family)),
          m_evidence(m_head.points, m_plan, m_settings.margin),
          m_surroundings(m_settings.core) {
        std::vector<PointMessage> points;
        for (const StoredPoint& point : m_head.points) {
            points.push_back({point.function, point.unit, point.divisor, point.parameters});
        }
        m_route = Route(std::move(points));
        recall();
    }

    void run() {
        m_store.setSetting("ended", "");
        m_store.setSetting("finished", "no");
        for (;; ++m_pair) {
            m_evidence.decideAll();
            m_store.setDecisions(m_evidence.decisions());
            if (openPoints().empty() || m_pair > mostPairs()) {
                break;
            }
            if (isLate()) {
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

    bool isLate() const { return seconds() >= m_settings.seconds; }

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
        StoredPair pair = m_surroundings.look(m_pair, [this](const std::string& text) { warn(text); });
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
            if (!end.lost() && !wanted.empty()) {
                return;  // the time is over
            }
            if (!end.lost()) {
                break;
            }
            noteLoss(end, wanted);
        }
        pair.seconds = seconds();
        m_store.addPair(pair);
        m_store.setSetting("spent", std::to_string(seconds()));
        report();
    }

    /// Takes out of `wanted` what was visited.
    WalkEnd walkOnce(std::vector<std::size_t>& wanted, int start) {
        const std::vector<Started> pair = startSurely(m_head.sides, m_mhz, m_settings, m_pair, start);
        WalkTask task;
        task.points = wanted;
        task.shape = m_settings.shape;
        task.mhz = m_mhz;
        task.seed = m_settings.seed;
        task.pair = static_cast<std::uint64_t>(m_pair);
        task.seconds = [this] { return seconds(); };
        task.stop = [this] { return isLate(); };
        task.finish = [&](const std::string& function, std::vector<Visit> visits) {
            keep(std::move(visits));
            std::erase_if(wanted,
                          [&](std::size_t point) { return m_route.points()[point].function == function; });
            m_losses.erase(function);
            report();
        };
        WalkEnd end = walk(std::array{pair[0].instrument.get(), pair[1].instrument.get()}, m_route, task);
        pair[0].instrument->quit();
        pair[1].instrument->quit();
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
                words.append(words.empty() ? "" : "; ")
                    .append(side == 0 ? "old: " : "new: ")
                    .append(end.losses[side]);
            }
        }
        if (++m_losses[end.function] < end.chances()) {
            warn(end.function + " lost an instrument (" + words + "), and was tried again");
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
        progress.secondsLeft =
            std::clamp(LooksAhead * each * left, 0.0, std::max(0.0, m_settings.seconds - seconds()));
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
    Surroundings m_surroundings;
    Clock::time_point m_start = Clock::now();
    double m_spent = 0.0;  ///< seconds, by earlier runs
    int m_pair = 1;
    int m_visits = 0;  ///< of points, in this run
    int m_visitsAtStart = 0;
    std::set<std::size_t> m_fresh;  ///< points that this pair is asked to confirm
    std::map<std::string, int> m_losses;
};

}  // namespace

void continueComparison(Store& store, const Watcher& watcher, double moreSeconds) {
    if (moreSeconds > 0.0) {
        const std::string spent = store.setting("spent");
        store.setSetting("time", std::to_string(moreSeconds + (spent.empty() ? 0.0 : std::stod(spent))));
    }
    const StoredHead head = store.head();
    const Settings settings = settingsFrom(head);
    const std::string changed = changedObject(head.sides);
    if (!changed.empty()) {
        throw NotComparable(changed + " is not what it was when the comparison began");
    }
    if (!bindToCore(settings.core)) {
        throw std::runtime_error("processor " + std::to_string(settings.core) + " is not for this process");
    }
    Run(store, watcher).run();
}

}  // namespace lab
