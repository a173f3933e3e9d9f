#pragma once

/// Instruments that walk the same points in step and take turns at those that are wanted: both sides of a
/// comparison, or one by itself.

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "machine/random.h"
#include "turns/instrument.h"
#include "verdict/turn.h"
#include "verdict/verdict.h"

namespace lab {

/// Points in the order of the walk; those with equal function and parameters are told apart by their number.
class Route {
  public:
    Route() = default;
    explicit Route(std::vector<PointMessage> points);

    const std::vector<PointMessage>& points() const { return m_points; }
    const std::string& key(std::size_t index) const { return m_keys[index]; }
    /// Where the point stands; nothing for one that is not on the route.
    std::optional<std::size_t> find(const std::string& key) const;

    /// Of the point, seen for the n-th time (from 1) in a walk.
    static std::string keyOf(const PointMessage& point, int time);

  private:
    std::vector<PointMessage> m_points;
    std::vector<std::string> m_keys;
    std::unordered_map<std::string, std::size_t> m_index;
};

/// All points of an instrument, without a turn at any. Its loss, if any, is the instrument's.
std::vector<PointMessage> survey(Instrument& instrument);

/// How turns are taken.
struct TurnShape {
    int epochs = 10;
    double microseconds = 50.0;  ///< of a turn, about
    int blocks = 5;              ///< of a turn, where calls are short enough
};

/// Calls in a block and blocks in a turn for calls of so many ticks.
struct TurnSize {
    long long calls = 1;
    int blocks = 1;
    bool operator==(const TurnSize&) const = default;
};
TurnSize turnSize(const TurnShape& shape, double ticksOfCall, int mhz);

/// What the instruments measured at a point of a route.
struct Visit {
    std::size_t point = 0;
    std::vector<Turn> turns;
    std::array<Fate, 2> fates;  ///< old, new; of one instrument the first
};

struct WalkTask {
    std::vector<std::size_t> points;  ///< that are wanted, in rising order
    TurnShape shape;
    int mhz = 0;
    std::uint64_t seed = 0;
    std::uint64_t pair = 0;           ///< or process, where there is one side: its random numbers
    std::function<bool()> stop;       ///< asked before each test
    std::function<double()> seconds;  ///< since the run began
    std::function<void(const std::string&, std::vector<Visit>)> finish;  ///< takes the visits of a function
};

/// Which side was lost within which function. None: the walk is done.
struct WalkEnd {
    std::string function;
    std::array<std::string, 2> losses;  ///< old, new; empty: that side would have gone on

    bool lost() const { return !losses[0].empty() || !losses[1].empty(); }
    /// So many losses in a row within one function are no chance: more of them where a side was killed, as
    /// that comes from others, a system short of memory or a person.
    int chances() const;
};

/// Walks until all wanted points are visited, the task says stop or an instrument is lost; what was measured
/// of the function where that was is dropped. A test that ends by itself, with a signal say, is no loss: its
/// points have that fate. `sides` are the old one and the new one, or one alone, whose turns and fates are
/// then those of the old side.
WalkEnd walk(std::span<Instrument* const> sides, const Route& route, const WalkTask& task);

}  // namespace lab
