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

/// Ticks of one call as the tables have it: the bare loop holds the clock reads too.
double ofOneCall(const Turn& turn) {
    const std::int64_t least = *std::min_element(turn.ticks.begin(), turn.ticks.end());
    return static_cast<double>(std::max<std::int64_t>(0, least - turn.loop)) /
           static_cast<double>(turn.calls);
}

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

void lower(double& least, double value) { least = least > 0 ? std::min(least, value) : value; }

}  // namespace

std::optional<Pair> pairOf(std::span<const Turn> turns) {
    std::map<int, std::array<double, 2>> epochs;  // the least of each side, for one call; 0: no turn
    std::array<double, 2> clocks{};
    std::int64_t shortest = 0;
    ClockStep step;
    for (const Turn& turn : turns) {
        if (turn.ticks.empty() || turn.calls < 1) {
            continue;
        }
        const std::size_t side = turn.side == Side::newer;
        lower(epochs[turn.epoch][side], static_cast<double>(net(turn)) / static_cast<double>(turn.calls));
        lower(clocks[side], ofOneCall(turn));
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
                .older = clocks[0],
                .newer = clocks[1]};
}

}  // namespace lab
