#pragma once

/// Histories of made-up builds: what their comparisons would say, pair by pair, with a known truth.

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "history/changes.h"
#include "history/joining.h"
#include "verdict/plan.h"
#include "verdict/verdict.h"

namespace lab {

/// One point over builds 0, 1, ...; `truth` gives the logarithm of a build's time.
class MadeUp {
  public:
    using Truth = std::function<double(int build)>;

    /// `scatter`: standard deviation of a pair's value; every twentieth is ten times as far off.
    MadeUp(Truth truth, double scatter, std::uint64_t seed, int points = 438)
        : m_truth(std::move(truth)),
          m_scatter(scatter),
          m_random(seed),
          m_plan(makePlan(points)),
          m_points(points) {
        m_history.points.push_back({"F", "Len=8", "e"});
        m_history.methods.push_back({"Fine One", "", "50 us, 10 blocks", 64});
        addBuild();
    }

    void addBuild() {
        const std::string name = "b" + std::to_string(m_history.builds.size());
        m_history.builds.push_back({name, name, "", "", "2026-11-23", {}});
    }

    /// A comparison that ends when its looks say so.
    void compare(int older, int newer) {
        const double ratio = m_truth(newer) - m_truth(older);
        const std::vector<Pair> all = draw(ratio, m_plan.looks.back().pairs);
        const std::vector<Pair> fresh = draw(ratio, m_plan.confirming.back().pairs);
        const Decision decision = decide({all, fresh, {}, {}}, m_plan, margin);
        // those that the looks took are the first ones of each
        std::vector<double> values;
        std::size_t taken = 0;
        while (taken < all.size() &&
               decide({std::span(all).first(taken), fresh, {}, {}}, m_plan, margin).next == Next::pairs) {
            values.push_back(all[taken++].value);
        }
        for (std::size_t more = 0; more < fresh.size(); ++more) {
            if (decide({all, std::span(fresh).first(more), {}, {}}, m_plan, margin).next != Next::fresh) {
                break;
            }
            values.push_back(fresh[more].value);
        }
        Finding finding = findingOf(values, 0.0, margin);
        finding.verdict = decision.verdict;
        finding.reason = decision.reason;
        m_history.comparisons.push_back({"", older, newer, 0, margin, "2026-11-23", {finding}});
    }

    /// The next build, against the last good one as a nightly job does it.
    void night() {
        const int good = m_history.builds.size() == 1 ? 0 : lastGood(Network(m_history, 0), {point()});
        addBuild();
        compare(good, static_cast<int>(m_history.builds.size()) - 1);
    }

    PointHistory point() const {
        return pointHistory(Network(m_history, 0), 0, margin, evidenceWanted(m_points));
    }

    History& history() { return m_history; }

    static constexpr double margin = 0.01;

  private:
    std::vector<Pair> draw(double ratio, int count) {
        std::vector<Pair> pairs(static_cast<std::size_t>(count));
        for (Pair& pair : pairs) {
            const bool far = std::bernoulli_distribution(0.05)(m_random);
            pair.value = ratio + m_scatter * (far ? 10 : 1) * std::normal_distribution<double>()(m_random);
            pair.epochs = 20;
        }
        return pairs;
    }

    Truth m_truth;
    double m_scatter;
    std::mt19937_64 m_random;
    Plan m_plan;
    int m_points;
    History m_history;
};

}  // namespace lab
