#include "verdict/turn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "verdict/statistics.h"

namespace lab {
namespace {

/// A block in which nothing is left beside the empty stretch counts as one tick, so that there is a ratio.
std::int64_t net(const Turn& turn) {
    return std::max<std::int64_t>(1, *std::min_element(turn.ticks.begin(), turn.ticks.end()) - turn.empty);
}

double ofOneCall(std::int64_t ticks, const Turn& turn) {
    return static_cast<double>(ticks) / static_cast<double>(turn.calls);
}

void lower(double& least, double value) { least = least > 0 ? std::min(least, value) : value; }

/// Ticks of one call of a side as the tables have them. The bare loop holds the clock reads too; it runs but
/// once a turn, so the least of all turns counts.
class Clocks {
  public:
    void add(const Turn& turn) {
        lower(m_block, ofOneCall(*std::min_element(turn.ticks.begin(), turn.ticks.end()), turn));
        lower(m_loop, ofOneCall(turn.loop, turn));
    }
    /// A call that costs no more than the loop keeps its time.
    double ticks() const { return m_block > m_loop ? m_block - m_loop : m_block; }

  private:
    double m_block = 0;
    double m_loop = 0;
};

/// What any two readings differ by is a multiple of the clock's step. Equal readings tell nothing: one tick.
class ClockStep {
  public:
    void add(const Turn& turn) {
        for (const std::int64_t ticks : turn.ticks) {
            m_step = std::gcd(m_step, ticks - (m_any ? m_first : ticks));
            m_first = m_any ? m_first : ticks;
            m_any = true;
        }
    }
    double ticks() const { return static_cast<double>(std::max<std::int64_t>(1, m_step)); }

  private:
    std::int64_t m_first = 0;
    std::int64_t m_step = 0;
    bool m_any = false;
};

}  // namespace

std::optional<Pair> pairOf(std::span<const Turn> turns) {
    std::map<int, std::array<double, 2>> epochs;  // the least of each side, for one call; 0: no turn
    std::array<Clocks, 2> clocks;
    std::int64_t shortest = 0;
    ClockStep step;
    for (const Turn& turn : turns) {
        if (turn.ticks.empty() || turn.calls < 1) {
            continue;
        }
        const std::size_t side = turn.side == Side::newer;
        lower(epochs[turn.epoch][side], ofOneCall(net(turn), turn));
        clocks[side].add(turn);
        shortest = shortest == 0 ? net(turn) : std::min(shortest, net(turn));
        step.add(turn);
    }
    std::vector<double> ratios;
    for (const auto& [epoch, sides] : epochs) {
        if (sides[0] > 0 && sides[1] > 0) {
            ratios.push_back(std::log(sides[1] / sides[0]));
        }
    }
    if (ratios.empty()) {
        return std::nullopt;
    }
    return Pair{.value = median(ratios),
                .spread = deviation(ratios),
                .grain = step.ticks() / static_cast<double>(shortest),
                .epochs = static_cast<int>(ratios.size()),
                .older = clocks[0].ticks(),
                .newer = clocks[1].ticks()};
}

}  // namespace lab
