#include "history/historystore.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "history/historybase.h"

namespace lab {

namespace {

constexpr int LastVerdict = static_cast<int>(Verdict::unsure);
constexpr int LastReason = static_cast<int>(Reason::crash);

/// The value whose word it is, of those up to `last`; the last for a text that is none.
template <class Value>
Value valueOf(std::string_view text, int last) {
    int value = 0;
    while (value < last && word(static_cast<Value>(value)) != text) {
        ++value;
    }
    return static_cast<Value>(value);
}

/// Indices by the numbers of rows, which begin at 1 and are never used again.
class Numbers {
  public:
    void put(std::int64_t number, std::size_t index) {
        if (static_cast<std::size_t>(number) >= m_indices.size()) {
            m_indices.resize(static_cast<std::size_t>(number) + 1, -1);
        }
        m_indices[static_cast<std::size_t>(number)] = static_cast<int>(index);
    }
    int at(std::int64_t number) const {
        const int index = number >= 0 && static_cast<std::size_t>(number) < m_indices.size()
                              ? m_indices[static_cast<std::size_t>(number)]
                              : -1;
        if (index < 0) {
            throw std::runtime_error("the history names a row that is not there");
        }
        return index;
    }

  private:
    std::vector<int> m_indices;
};

void readFindings(Database& base, History& history, const Numbers& comparisons, const Numbers& points) {
    Statement row(
        base,
        "SELECT comparison, point, verdict, reason, pairs, middle, error, push, energy, older, newer, "
        "same_code FROM finding ORDER BY comparison, point");
    while (row.row()) {
        Finding finding;
        finding.point = points.at(row.number(1));
        finding.verdict = valueOf<Verdict>(row.text(2), LastVerdict);
        finding.reason = valueOf<Reason>(row.text(3), LastReason);
        finding.pairs = static_cast<int>(row.number(4));
        finding.middle = row.real(5);
        finding.error = row.real(6);
        finding.push = row.real(7);
        finding.energy = row.real(8);
        finding.older = row.real(9);
        finding.newer = row.real(10);
        finding.sameCode = row.number(11) != 0;
        history.comparisons[static_cast<std::size_t>(comparisons.at(row.number(0)))].findings.push_back(
            finding);
    }
}

void readMeasurements(Database& base, History& history, const Numbers& builds, const Numbers& points) {
    Numbers measurements;
    for (Statement row(base,
                       "SELECT measurement, measurement.identity, build, processor, keys, bits, processes, "
                       "measurement.day "
                       "FROM measurement JOIN build USING(build) ORDER BY place, measurement");
         row.row();) {
        measurements.put(row.number(0), history.measurements.size());
        MeasurementEntry entry;
        entry.identity = row.text(1);
        entry.build = builds.at(row.number(2));
        entry.method = {row.text(3), row.text(4), "", static_cast<int>(row.number(5))};
        entry.processes = static_cast<int>(row.number(6));
        entry.day = row.text(7);
        history.measurements.push_back(std::move(entry));
    }
    for (Statement row(base,
                       "SELECT measurement, point, clocks, low, high FROM figure "
                       "ORDER BY measurement, point");
         row.row();) {
        history.measurements[static_cast<std::size_t>(measurements.at(row.number(0)))].figures.push_back(
            {points.at(row.number(1)), row.real(2), row.real(3), row.real(4)});
    }
}

History readBase(Database& base) {
    History history;
    Numbers builds;
    for (Statement row(base,
                       "SELECT build, label, identity, revision, library, day FROM build ORDER BY place");
         row.row();) {
        builds.put(row.number(0), history.builds.size());
        history.builds.push_back({row.text(1), row.text(2), row.text(3), row.text(4), row.text(5), {}});
    }
    for (Statement row(base, "SELECT build, build_id FROM build_id ORDER BY build, position"); row.row();) {
        history.builds[static_cast<std::size_t>(builds.at(row.number(0)))].buildIds.push_back(row.text(1));
    }
    Numbers methods;
    for (Statement row(base, "SELECT method, processor, keys, turn, bits FROM method ORDER BY method");
         row.row();) {
        methods.put(row.number(0), history.methods.size());
        history.methods.push_back({row.text(1), row.text(2), row.text(3), static_cast<int>(row.number(4))});
    }
    Numbers points;
    for (Statement row(base, "SELECT point, function, parameters, unit FROM point ORDER BY point");
         row.row();) {
        points.put(row.number(0), history.points.size());
        history.points.push_back({row.text(1), row.text(2), row.text(3)});
    }
    Numbers comparisons;
    for (Statement row(base,
                       "SELECT comparison, identity, older, newer, method, margin, day FROM comparison "
                       "ORDER BY comparison");
         row.row();) {
        comparisons.put(row.number(0), history.comparisons.size());
        history.comparisons.push_back({row.text(1),
                                       builds.at(row.number(2)),
                                       builds.at(row.number(3)),
                                       methods.at(row.number(4)),
                                       row.real(5),
                                       row.text(6),
                                       {}});
    }
    readFindings(base, history, comparisons, points);
    if (hasMeasurements(base)) {
        readMeasurements(base, history, builds, points);
    }
    return history;
}

}  // namespace

History readHistory(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error(path + ": no such file");
    }
    // a process that was killed while it wrote has left what takes its half back
    Database base(path, access(path.c_str(), W_OK) == 0 ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);
    checkHistory(base, path);
    base.run("BEGIN");
    return readBase(base);
}

int findBuild(const History& history, const std::string& text) {
    constexpr std::size_t fewest = 4;
    int found = -1;
    for (std::size_t i = 0; i < history.builds.size(); ++i) {
        const BuildEntry& build = history.builds[i];
        if (build.label == text) {
            return static_cast<int>(i);
        }
        const auto begins = [&](const std::string& whole) {
            return text.size() >= fewest && whole.starts_with(text);
        };
        if (begins(build.revision) || begins(build.identity) ||
            std::any_of(build.buildIds.begin(), build.buildIds.end(), begins)) {
            found = static_cast<int>(i);
        }
    }
    return found;
}

}  // namespace lab
