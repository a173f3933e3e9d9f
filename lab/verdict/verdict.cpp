/// From the pairs of a point to what is said about it. The error rates are reckoned in plan.cpp.

#include "verdict/verdict.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "verdict/statistics.h"

namespace lab {
namespace {

constexpr std::array<std::string_view, 4> verdictWords{"slower", "faster", "same", "unsure"};

struct ReasonText {
    std::string_view word;
    std::string_view explanation;
};
constexpr std::array<ReasonText, 9> reasonTexts{{
    {"", ""},
    {"pairs", "too few pairs were measured"},
    {"noise", "what ran beside disturbed the turns"},
    {"layout", "the speed depends on where code and data lie in memory"},
    {"margin", "the difference lies near the margin"},
    {"grain", "one step of the clock is too much of a turn"},
    {"repeated", "fresh pairs, or another session, did not repeat it"},
    {"status", "the library's status differs between the builds"},
    {"crash", "a build did not live through it"},
}};

std::vector<double> valuesOf(std::span<const Pair> pairs) {
    std::vector<double> values;
    values.reserve(pairs.size());
    for (const Pair& pair : pairs) {
        values.push_back(pair.value);
    }
    return values;
}

/// Rank 0, or one that leaves nothing between the ends: an interval without ends.
Interval intervalOf(std::vector<double> values, int rank) {
    std::sort(values.begin(), values.end());
    Interval interval;
    const std::size_t n = values.size();
    const std::size_t k = static_cast<std::size_t>(rank);
    if (k > 0 && 2 * k <= n + 1) {
        interval.low = values[k - 1];
        interval.high = values[n - k];
    }
    interval.middle = median(std::move(values));
    return interval;
}

/// Walks the looks that a point has had, and stops where one decides.
struct Judge {
    const Evidence& evidence;
    const Plan& plan;
    double limit;  ///< log(1 + margin)

    Verdict seems(const Interval& interval) const {
        if (interval.low > limit) {
            return Verdict::slower;
        }
        if (interval.high < -limit) {
            return Verdict::faster;
        }
        return interval.low > -limit && interval.high < limit ? Verdict::same : Verdict::unsure;
    }

    /// What is rounded to a step of the clock may be as much as a step away, so "same" needs that much room.
    bool coarse(const Interval& interval, std::span<const Pair> pairs) const {
        std::vector<double> grains;
        for (const Pair& pair : pairs) {
            grains.push_back(pair.grain);
        }
        const double inside = limit - median(std::move(grains));
        return interval.low <= -inside || interval.high >= inside;
    }

    /// Pairs that disagree by more than the scatter of their epochs explains: layout.
    bool disagree(std::span<const Pair> pairs) const {
        constexpr double ofMedian = 1.2533;  // error of a median by that of a mean
        constexpr double clearly = 2;
        std::vector<double> explained;
        for (const Pair& pair : pairs) {
            explained.push_back(ofMedian * pair.spread / std::sqrt(std::max(1, pair.epochs)));
        }
        return deviation(valuesOf(pairs)) > clearly * median(std::move(explained));
    }

    Reason whyUnsure(const Interval& interval, std::span<const Pair> pairs) const {
        if (!std::isfinite(interval.low)) {
            return Reason::pairs;
        }
        if (seems(interval) == Verdict::same) {
            return Reason::grain;
        }
        if (interval.high - interval.low <= limit) {
            return Reason::margin;
        }
        return disagree(pairs) ? Reason::layout : Reason::noise;
    }

    Decision decided(Verdict verdict, const Interval& interval, int pairs) const {
        const double reach = std::max(interval.middle - interval.low, interval.high - interval.middle);
        return {.verdict = verdict,
                .reason = Reason::none,
                .interval = interval,
                .smallest = limit + reach,
                .pairs = pairs,
                .next = Next::nothing,
                .wanted = 0};
    }

    Decision unsure(Reason reason, const Interval& interval, int pairs) const {
        Decision decision = decided(Verdict::unsure, interval, pairs);
        decision.reason = reason;
        return decision;
    }

    /// All pairs together give the interval of a difference that was repeated. At least the sum of both ranks
    /// less one, so that it lies beyond the margin as its parts do; more where 99% need less.
    Interval pooled(std::span<const Pair> pairs, std::span<const Pair> fresh, int atLeast) const {
        std::vector<double> values = valuesOf(pairs);
        const std::vector<double> more = valuesOf(fresh);
        values.insert(values.end(), more.begin(), more.end());
        int rank = atLeast;
        while (2 * fairTail(static_cast<int>(values.size()), rank + 1) <= 0.01) {
            ++rank;
        }
        return intervalOf(std::move(values), rank);
    }

    /// Fresh pairs are asked for until they show `side`, or half of them do not.
    Decision confirmed(Verdict side, const Interval& seen, const Look& first) const {
        for (const Look& look : plan.confirming) {
            const std::size_t n = static_cast<std::size_t>(look.pairs);
            if (look.rank == 0) {
                continue;  // too early to confirm anything
            }
            if (evidence.fresh.size() < n) {
                Decision open = unsure(Reason::pairs, seen, first.pairs);
                open.next = Next::fresh;
                open.wanted = look.pairs;
                return open;
            }
            const std::span<const Pair> fresh = evidence.fresh.first(n);
            const Interval again = intervalOf(valuesOf(fresh), look.rank);
            if (seems(again) == side) {
                const auto pairs = evidence.pairs.first(static_cast<std::size_t>(first.pairs));
                return decided(side, pooled(pairs, fresh, first.rank + look.rank - 1),
                               first.pairs + look.pairs);
            }
            if (seems({again.middle, again.middle, again.middle}) != side) {
                break;
            }
        }
        return unsure(Reason::repeated, seen, first.pairs);
    }

    Decision decision() const {
        Interval interval = intervalOf(valuesOf(evidence.pairs), 0);
        std::span<const Pair> pairs = evidence.pairs;
        for (const Look& look : plan.looks) {
            const std::size_t n = static_cast<std::size_t>(look.pairs);
            if (evidence.pairs.size() < n) {
                Decision open = unsure(whyUnsure(interval, pairs), interval, static_cast<int>(pairs.size()));
                open.next = Next::pairs;
                open.wanted = look.pairs;
                return open;
            }
            pairs = evidence.pairs.first(n);
            interval = intervalOf(valuesOf(pairs), look.rank);
            const Verdict verdict = seems(interval);
            if (verdict == Verdict::slower || verdict == Verdict::faster) {
                return confirmed(verdict, interval, look);
            }
            if (verdict == Verdict::same && !coarse(interval, pairs)) {
                return decided(verdict, interval, look.pairs);
            }
        }
        return unsure(whyUnsure(interval, pairs), interval, static_cast<int>(pairs.size()));
    }
};

}  // namespace

std::string_view word(Verdict verdict) { return verdictWords.at(static_cast<std::size_t>(verdict)); }

std::string_view word(Reason reason) { return reasonTexts.at(static_cast<std::size_t>(reason)).word; }

std::string_view explanation(Reason reason) {
    return reasonTexts.at(static_cast<std::size_t>(reason)).explanation;
}

Decision decide(const Evidence& evidence, const Plan& plan, double margin) {
    Decision decision = Judge{evidence, plan, std::log1p(margin)}.decision();
    const bool died = !evidence.older.death.empty() || !evidence.newer.death.empty();
    if (died || evidence.older.status != evidence.newer.status) {
        decision.verdict = Verdict::unsure;
        decision.reason = died ? Reason::crash : Reason::status;
        decision.next = Next::nothing;
        decision.wanted = 0;
    }
    return decision;
}

}  // namespace lab
