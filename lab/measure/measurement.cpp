/// One process after the other walks all points. All that is known follows from the store alone, so a
/// measurement that was interrupted goes on with the points that the last process had not visited.

#include "measure/measurement.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <thread>

#include "compare/pairstart.h"
#include "compare/quiet.h"
#include "compare/sides.h"
#include "compare/storedreport.h"
#include "compare/survey.h"
#include "machine/facts.h"
#include "machine/instruments.h"
#include "measure/storedmeasurement.h"
#include "turns/walk.h"

namespace lab {

namespace {

using Clock = std::chrono::steady_clock;

/// Visits without a turn after which no further one is made.
constexpr int MostBarren = 2;

/// One run of continueMeasurement.
class Run {
  public:
    Run(Store& store, const StoredHead& head, const Watcher& watcher)
        : m_store(store),
          m_watcher(watcher),
          m_side(head.sides[0]),
          m_settings(measureSettingsFrom(head)),
          m_mhz(settingNumber(head.settings, "mhz")),
          m_barren(head.points.size()),
          m_surroundings(m_settings.core) {
        std::vector<PointMessage> points;
        for (const StoredPoint& point : head.points) {
            points.push_back({point.function, point.unit, point.divisor, point.parameters});
        }
        m_route = Route(std::move(points));
        recall();
    }

    void run() {
        m_store.setSetting("ended", "");
        m_store.setSetting("finished", "no");
        for (; m_process <= m_settings.processes; ++m_process) {
            waitForStart();
            if (isLate() || !runProcess()) {
                m_store.setSetting("ended", "time");
                break;
            }
        }
        m_store.setSetting("spent", std::to_string(seconds()));
        m_store.finish();
    }

  private:
    /// What the store knows already.
    void recall() {
        m_store.eachVisit([&](int, StoredVisit&& visit) { note(visit); });
        for (const auto& [function, fates] : m_store.fates()) {
            m_leftOut.insert(function);
        }
        const auto processes = m_store.pairs();
        m_process = processes.empty() ? 1 : processes.back().number + 1;
        const std::string spent = m_store.setting("spent");
        m_spent = spent.empty() ? 0.0 : std::stod(spent);
    }

    void note(const StoredVisit& visit) {
        m_barren.at(static_cast<std::size_t>(visit.point)) += visit.turns.empty() ? 1 : 0;
    }

    double seconds() const { return m_spent + std::chrono::duration<double>(Clock::now() - m_start).count(); }

    bool isLate() const { return seconds() >= m_settings.seconds; }

    /// The processes of a measurement that is spread over a time start evenly.
    void waitForStart() {
        const double start = m_settings.over * (m_process - 1) / m_settings.processes;
        while (seconds() < start && !isLate()) {
            throwIfInterrupted();
            std::this_thread::sleep_for(std::chrono::duration<double>(std::min(0.1, start - seconds())));
        }
    }

    std::vector<std::size_t> wantedPoints() {
        const std::set<int> visited = m_store.pointsVisited(m_process);
        std::vector<std::size_t> wanted;
        for (std::size_t i = 0; i < m_route.points().size(); ++i) {
            if (m_barren[i] < MostBarren && !m_leftOut.contains(functionOf(i)) &&
                !visited.contains(static_cast<int>(i))) {
                wanted.push_back(i);
            }
        }
        return wanted;
    }

    const std::string& functionOf(std::size_t point) const { return m_route.points()[point].function; }

    /// False if the time was over before its end.
    bool runProcess() {
        StoredPair process = m_surroundings.look(m_process, [this](const std::string& text) { warn(text); });
        std::vector<std::size_t> wanted = wantedPoints();
        m_visitsLeft = static_cast<int>(wanted.size());
        for (int start = 0; !wanted.empty(); start += ChancesToStart) {
            const WalkEnd end = walkOnce(wanted, start);
            if (end.lost()) {
                noteLoss(end, wanted);
            } else if (!wanted.empty()) {
                return false;
            }
        }
        process.seconds = seconds();
        m_store.addPair(process);
        m_store.setSetting("spent", std::to_string(seconds()));
        return true;
    }

    /// Takes out of `wanted` what was visited.
    WalkEnd walkOnce(std::vector<std::size_t>& wanted, int start) {
        const std::vector<Started> started =
            startSurely(std::span(&m_side, 1), m_mhz, m_settings, m_process, start);
        WalkTask task;
        task.points = wanted;
        task.shape = m_settings.shape;
        task.mhz = m_mhz;
        task.seed = m_settings.seed;
        task.pair = static_cast<std::uint64_t>(m_process);
        task.seconds = [this] { return seconds(); };
        task.stop = [this] { return isLate(); };
        task.finish = [&](const std::string& function, std::vector<Visit> visits) {
            keep(std::move(visits));
            takeOut(function, wanted);
            m_losses.erase(function);
        };
        WalkEnd end = walk(std::array{started[0].instrument.get()}, m_route, task);
        started[0].instrument->quit();
        return end;
    }

    void takeOut(const std::string& function, std::vector<std::size_t>& wanted) const {
        std::erase_if(wanted, [&](std::size_t point) { return functionOf(point) == function; });
    }

    void keep(std::vector<Visit> visits) {
        std::vector<StoredVisit> stored;
        stored.reserve(visits.size());
        for (Visit& visit : visits) {
            stored.push_back({static_cast<int>(visit.point), false, std::move(visit.turns), visit.fates});
            note(stored.back());
        }
        m_store.addVisits(m_process, stored);
        report(static_cast<int>(stored.size()));
    }

    /// A function that repeats its loss is out of the measurement.
    void noteLoss(const WalkEnd& end, std::vector<std::size_t>& wanted) {
        const std::string& what = end.losses[0];
        if (++m_losses[end.function] < end.chances()) {
            warn(end.function + " lost its instrument (" + what + "), and was tried again");
            return;
        }
        m_store.addFate(end.function, {Fate{0, what}, Fate{}});
        m_leftOut.insert(end.function);
        m_watcher.note(end.function + " loses its instrument (" + what + "), and is left out");
        takeOut(end.function, wanted);
    }

    void warn(const std::string& text) {
        m_store.addWarning(text);
        m_watcher.warning(text);
    }

    /// The time that is left follows from what a visit took so far in this run.
    void report(int visits) {
        m_visits += visits;
        m_visitsLeft -= visits;
        Progress progress;
        progress.pair = m_process;
        progress.mostPairs = m_settings.processes;
        progress.points = static_cast<int>(m_route.points().size());
        progress.closedPoints = progress.points - m_visitsLeft;
        const double each = (seconds() - m_spent) / m_visits;
        const int left = m_visitsLeft + (m_settings.processes - m_process) * progress.points;
        progress.secondsLeft = std::clamp(each * left, 0.0, std::max(0.0, m_settings.seconds - seconds()));
        m_watcher.progress(progress);
    }

    Store& m_store;
    const Watcher& m_watcher;
    StoredSide m_side;
    MeasureSettings m_settings;
    int m_mhz;
    Route m_route;
    std::vector<int> m_barren;        ///< visits of each point that brought no turn
    std::set<std::string> m_leftOut;  ///< functions that lost their instruments
    std::map<std::string, int> m_losses;
    Surroundings m_surroundings;
    Clock::time_point m_start = Clock::now();
    double m_spent = 0.0;  ///< seconds, by earlier runs
    int m_process = 1;
    int m_visits = 0;  ///< of points, in this run
    int m_visitsLeft = 0;
};

std::vector<StoredPoint> storedPoints(const Route& route) {
    std::vector<StoredPoint> points;
    for (const PointMessage& point : route.points()) {
        points.push_back({point.function, point.parameters, point.unit, point.divisor, true, false, {}});
    }
    return points;
}

/// NotComparable, or std::runtime_error, if nothing could stand beside the earlier figures.
void checkEarlier(const std::string& path, const StoredHead& head) {
    if (path.empty()) {
        return;
    }
    Store earlier = Store::open(path, false, StoreKind::measurement);
    MeasurementReport now;
    now.machine = machineOf(head, {});
    MeasurementReport then;
    then.machine = machineOf(earlier.head(), {});
    putBeside(now, then, path);
}

}  // namespace

NamedTexts settingTexts(const MeasureSettings& settings) {
    NamedTexts texts = runSettingTexts(settings);
    texts.emplace_back("processes", std::to_string(settings.processes));
    texts.emplace_back("over", std::to_string(settings.over));
    texts.emplace_back("against", settings.against);
    return texts;
}

MeasureSettings measureSettingsFrom(const StoredHead& head) {
    MeasureSettings settings;
    readRunSettings(head.settings, settings);
    settings.folder = head.sides[0].folder;
    settings.processes = settingNumber(head.settings, "processes");
    settings.over = std::stod(settingText(head.settings, "over"));
    settings.against = settingText(head.settings, "against");
    return settings;
}

Store beginMeasurement(const MeasureSettings& asked, const std::string& path, const Watcher& watcher) {
    MeasureSettings settings = asked;
    StoredHead head;
    head.kind = StoreKind::measurement;
    Store::checkPath(path, head.kind);
    StoredSide& side = head.sides[0];
    side.name = settings.folder;
    side.keys = settings.keys;
    findFiles(side);
    const int bits = side.objects.front().bits;
    side.instrument = settings.instrument.empty() ? instrumentOf(bits) : settings.instrument;
    if (!settings.against.empty()) {
        settings.against = std::filesystem::absolute(settings.against);
    }
    settings.core = takeCore(settings.core);
    head.machine = machineFacts(settings.core);
    checkEarlier(settings.against, head);
    Canary canary;
    waitUntilQuiet(settings, canary, watcher.note);
    const int mhz = tickMHz();
    const std::vector<Survey> surveys = surveySides(std::span(&side, 1), mhz, settings);
    head.points = storedPoints(surveys.front().route);
    if (head.points.empty()) {
        throw std::runtime_error("there is no point to measure with these keys");
    }
    head.settings = settingTexts(settings);
    head.settings.emplace_back("mhz", std::to_string(mhz));
    Store store = Store::create(path, head);
    if (!surveys.front().loss.empty()) {
        const std::string text = "the instrument" + surveys.front().lossText("measured");
        store.addWarning(text);
        watcher.warning(text);
    }
    return store;
}

void continueMeasurement(Store& store, const Watcher& watcher, double moreSeconds) {
    if (moreSeconds > 0.0) {
        const std::string spent = store.setting("spent");
        store.setSetting("time", std::to_string(moreSeconds + (spent.empty() ? 0.0 : std::stod(spent))));
    }
    const StoredHead head = store.head();
    const std::string changed = changedObject(std::span(head.sides.data(), 1));
    if (!changed.empty()) {
        throw std::runtime_error(changed + " is not what it was when the measurement began");
    }
    takeCore(measureSettingsFrom(head).core);
    Run(store, head, watcher).run();
}

}  // namespace lab
