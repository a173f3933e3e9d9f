#include "turns/walk.h"

#include <algorithm>
#include <cmath>

namespace lab {

namespace {

constexpr int ColdBlocks = 3;
constexpr int WarmBlocks = 2;
/// Less than any reading of a clock takes.
constexpr double LeastTicks = 20.0;
/// An instrument takes no more in a block.
constexpr double MostCalls = 1e6;

/// A test that ended because of the library's status.
const char* const failedByStatus = "FUNCFAIL";
const char* const wentOtherWay = "the walk leaves it out";

/// One side of a walk, and how far it is along the route.
class Walker {
  public:
    Walker(Instrument& instrument, const Route& route) : m_instrument(instrument), m_route(route) {}

    Instrument& instrument() { return m_instrument; }

    /// To the first point of the route at `wanted` or after it; false if there is none.
    bool goTo(std::size_t wanted) {
        const PointMessage& target = m_route.points()[wanted];
        while (m_place == Place::Start || m_place == Place::Point) {
            if (m_place == Place::Point && m_index && *m_index >= wanted) {
                return true;
            }
            const bool sameTest =
                m_place == Place::Point && m_instrument.point()->function == target.function;
            look(m_place == Place::Start || sameTest ? m_instrument.step() : m_instrument.skip());
        }
        return false;
    }

    bool isAt(std::size_t wanted) const { return m_place == Place::Point && m_index == wanted; }

    /// Behind the test where the walk stands.
    void leaveTest() {
        if (m_place == Place::Point) {
            look(m_instrument.skip());
        }
    }

    /// After a turn that ended the test.
    void testEnded() { m_place = Place::Start; }

  private:
    enum class Place { Start, Point, End };

    void look(bool isPoint) {
        m_place = isPoint ? Place::Point : Place::End;
        if (isPoint) {
            const PointMessage& point = *m_instrument.point();
            m_index = m_route.find(Route::keyOf(point, ++m_times[Route::keyOf(point, 1)]));
        }
    }

    Instrument& m_instrument;
    const Route& m_route;
    Place m_place = Place::Start;
    std::optional<std::size_t> m_index;
    std::unordered_map<std::string, int> m_times;
};

class Walk {
  public:
    Walk(std::span<Instrument* const> sides, const Route& route, const WalkTask& task)
        : m_route(route), m_task(task) {
        for (Instrument* const side : sides) {
            m_walkers.emplace_back(*side, route);
        }
    }

    WalkEnd run() {
        for (std::size_t first = 0; first < m_task.points.size() && !m_task.stop();) {
            std::size_t end = first;
            const std::string& function = functionOf(first);
            while (end < m_task.points.size() && functionOf(end) == function) {
                ++end;
            }
            std::vector<Visit> visits = visitTest(first, end);
            for (const std::size_t side : anyOrder()) {
                m_walkers[side].leaveTest();
            }
            if (isLost()) {
                return lostIn(function);
            }
            m_task.finish(function, std::move(visits));
            first = end;
        }
        return {};
    }

  private:
    /// All sides, drawn by lot which is first. Whoever makes its data first gets other pages than the
    /// second, so a fixed order would make a difference that all pairs share.
    std::vector<std::size_t> anyOrder() { return m_lots.order(m_walkers.size()); }

    const std::string& functionOf(std::size_t wanted) const {
        return m_route.points()[m_task.points[wanted]].function;
    }

    WalkEnd lostIn(const std::string& function) {
        WalkEnd end{function, {}};
        for (std::size_t side = 0; side < m_walkers.size(); ++side) {
            const auto& loss = m_walkers[side].instrument().loss();
            end.losses.at(side) = loss ? loss->what : "";
        }
        return end;
    }

    bool isLost() { return lostIn("").lost(); }

    /// The wanted points of one test. A test that ended on one side is not measured any further.
    std::vector<Visit> visitTest(std::size_t first, std::size_t end) {
        std::vector<Visit> visits;
        for (std::size_t i = first; i < end && !isLost(); ++i) {
            Visit visit;
            visit.point = m_task.points[i];
            m_lots = {m_task.seed, m_task.pair, visit.point};
            if (allGoOn()) {
                for (const std::size_t side : anyOrder()) {
                    reach(side, visit.point);
                }
            }
            if (allGoOn() && !isLost()) {
                takeTurns(visit);
            }
            for (std::size_t side = 0; side < m_walkers.size(); ++side) {
                noteEnd(side, visit.fates[side]);
            }
            visits.push_back(std::move(visit));
        }
        m_ended = {};
        return visits;
    }

    void noteEnd(std::size_t side, Fate& fate) {
        if (fate.status == 0 && m_ended[side].death == failedByStatus) {
            fate.status = m_ended[side].status;
        } else if (m_ended[side].death != failedByStatus) {
            fate.death = m_ended[side].death;
        }
        m_ended[side].status = fate.status;
    }

    bool allGoOn() const { return m_ended[0].death.empty() && m_ended[1].death.empty(); }

    void reach(std::size_t side, std::size_t point) {
        Walker& walker = m_walkers[side];
        walker.goTo(point);
        if (!walker.isAt(point)) {
            const ResultMessage& result = walker.instrument().result();
            const bool said = result.function == m_route.points()[point].function && result.word != "OK";
            m_ended[side].death = said ? result.word : wentOtherWay;
        }
    }

    std::optional<TicksMessage> take(std::size_t side, const TurnSize& size, Visit& visit) {
        Take take = m_walkers[side].instrument().take(size.calls, size.blocks);
        if (take.loss) {
            if (take.loss->alive) {
                m_ended[side].death = take.loss->what;
                m_walkers[side].testEnded();
            }
            return std::nullopt;
        }
        if (take.status != 0) {
            visit.fates[side].status = take.status;
        }
        // a negative status ends the taking
        return take.ticks.blocks.empty() || take.status < 0 ? std::nullopt
                                                            : std::optional(std::move(take.ticks));
    }

    /// Has another side the same fate?
    void seeFateOfOthers(std::size_t side, const TurnSize& size, Visit& visit) {
        for (std::size_t other = 0; other < m_walkers.size(); ++other) {
            if (other != side) {
                take(other, size, visit);
            }
        }
    }

    void takeTurns(Visit& visit) {
        const auto size = sizeOfTurns(visit);
        if (!size) {
            return;
        }
        for (int epoch = 0; epoch < m_task.shape.epochs; ++epoch) {
            for (const std::size_t side : anyOrder()) {
                auto turn = take(side, *size, visit);
                if (!turn) {
                    seeFateOfOthers(side, *size, visit);
                    visit.turns.clear();
                    return;
                }
                visit.turns.push_back({side == 0 ? Side::older : Side::newer, epoch, size->calls,
                                       std::vector<std::int64_t>(turn->blocks.begin(), turn->blocks.end()),
                                       turn->empty, turn->loop, m_task.seconds()});
            }
        }
    }

    /// Ticks of a call on the fastest side, by the least of some blocks of `calls`; 0 if a side did not live
    /// to tell.
    double ticksOfCall(long long calls, int blocks, Visit& visit) {
        double least = 0.0;
        bool lived = true;
        for (const std::size_t side : anyOrder()) {
            const auto turn = take(side, {calls, blocks}, visit);
            if (!turn) {
                lived = false;
                continue;
            }
            const auto block =
                static_cast<double>(*std::min_element(turn->blocks.begin(), turn->blocks.end()));
            const double one = std::max(block, LeastTicks) / static_cast<double>(calls);
            least = least == 0.0 ? one : std::min(least, one);
        }
        return lived ? least : 0.0;
    }

    /// One call by itself says too much, as the reading of the clock is in it, so a second look follows with
    /// as many as that allows. All sides are warm then. Nothing if a side did not live to tell.
    std::optional<TurnSize> sizeOfTurns(Visit& visit) {
        TurnSize size;
        if (ticksOfCall(1, ColdBlocks, visit) <= 0.0) {
            return std::nullopt;
        }
        for (const int blocks : {ColdBlocks, WarmBlocks}) {
            const double ticks = ticksOfCall(size.calls, blocks, visit);
            if (ticks <= 0.0) {
                return std::nullopt;
            }
            size = turnSize(m_task.shape, ticks, m_task.mhz);
            if (size.calls == 1) {
                break;
            }
        }
        return size;
    }

    std::vector<Walker> m_walkers;
    const Route& m_route;
    const WalkTask& m_task;
    Random m_lots{};  ///< of the point, so that a pair that was interrupted draws the same for what is left
    /// How the test ended on a side before its last wanted point, and the last status before.
    std::array<Fate, 2> m_ended;
};

}  // namespace

Route::Route(std::vector<PointMessage> points) : m_points(std::move(points)) {
    std::unordered_map<std::string, int> times;
    for (const PointMessage& point : m_points) {
        m_keys.push_back(keyOf(point, ++times[keyOf(point, 1)]));
        m_index.emplace(m_keys.back(), m_keys.size() - 1);
    }
}

std::optional<std::size_t> Route::find(const std::string& key) const {
    const auto found = m_index.find(key);
    return found == m_index.end() ? std::nullopt : std::optional(found->second);
}

std::string Route::keyOf(const PointMessage& point, int time) {
    const std::string parameters = point.parameterText();
    return point.function + (parameters.empty() ? "" : " " + parameters) +
           (time > 1 ? " #" + std::to_string(time) : "");
}

std::vector<PointMessage> survey(Instrument& instrument) {
    std::vector<PointMessage> points;
    while (instrument.step()) {
        points.push_back(*instrument.point());
    }
    return points;
}

TurnSize turnSize(const TurnShape& shape, double ticksOfCall, int mhz) {
    const double callsOfTurn = shape.microseconds * mhz / ticksOfCall;
    const double callsOfBlock = std::floor(callsOfTurn / shape.blocks);
    if (callsOfBlock > 1.0) {
        return {static_cast<long long>(std::min(callsOfBlock, MostCalls)), shape.blocks};
    }
    return {1, std::clamp(static_cast<int>(std::min(callsOfTurn, 1e6)), 1, shape.blocks)};
}

int WalkEnd::chances() const {
    constexpr int usual = 2;
    constexpr int whenKilled = 6;
    const auto killed = [](const std::string& loss) { return loss.starts_with("killed by signal 9 "); };
    return std::any_of(losses.begin(), losses.end(), killed) ? whenKilled : usual;
}

WalkEnd walk(std::span<Instrument* const> sides, const Route& route, const WalkTask& task) {
    return Walk(sides, route, task).run();
}

}  // namespace lab
