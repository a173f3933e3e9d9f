#include "history/historystore.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "store/sqlite.h"

namespace lab {

namespace {

/// "mlhi": tells a history from other SQLite files.
constexpr std::int64_t ApplicationId = 0x6D6C6869;
constexpr std::int64_t HistoryVersion = 1;

const char* const tables = R"(
-- in the order of place
CREATE TABLE build(build INTEGER PRIMARY KEY, place INTEGER NOT NULL UNIQUE, label TEXT NOT NULL UNIQUE,
                   identity TEXT NOT NULL, revision TEXT NOT NULL, library TEXT NOT NULL, day TEXT NOT NULL);
CREATE INDEX build_by_identity ON build(identity);
CREATE TABLE build_id(build INTEGER NOT NULL, position INTEGER NOT NULL, build_id TEXT NOT NULL,
                      PRIMARY KEY(build, position)) WITHOUT ROWID;
CREATE TABLE method(method INTEGER PRIMARY KEY, processor TEXT NOT NULL, keys TEXT NOT NULL, turn TEXT NOT NULL,
                    bits INTEGER NOT NULL, UNIQUE(processor, keys, turn, bits));
CREATE TABLE point(point INTEGER PRIMARY KEY, function TEXT NOT NULL, parameters TEXT NOT NULL, unit TEXT NOT NULL,
                   UNIQUE(function, parameters, unit));
CREATE TABLE comparison(comparison INTEGER PRIMARY KEY, identity TEXT NOT NULL UNIQUE, older INTEGER NOT NULL,
                        newer INTEGER NOT NULL, method INTEGER NOT NULL, margin REAL NOT NULL, day TEXT NOT NULL);
-- logarithms of new / old; error is below 0 where there is no ratio
CREATE TABLE finding(comparison INTEGER NOT NULL, point INTEGER NOT NULL, verdict TEXT NOT NULL,
                     reason TEXT NOT NULL, pairs INTEGER NOT NULL, middle REAL NOT NULL, error REAL NOT NULL,
                     push REAL NOT NULL, energy REAL NOT NULL, older REAL NOT NULL, newer REAL NOT NULL,
                     same_code INTEGER NOT NULL, PRIMARY KEY(comparison, point)) WITHOUT ROWID;
)";

constexpr std::size_t DefaultLabelLength = 12;
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

std::string defaultLabel(const BuildEntry& build) { return build.identity.substr(0, DefaultLabelLength); }

void makeTables(Database& base) {
    base.run(tables);
    base.run(("PRAGMA application_id = " + std::to_string(ApplicationId)).c_str());
    base.run(("PRAGMA user_version = " + std::to_string(HistoryVersion)).c_str());
}

void checkBase(Database& base, const std::string& path) {
    if (base.number("PRAGMA application_id") != ApplicationId) {
        throw std::runtime_error(path + ": no history of metrig-lab");
    }
    const std::int64_t version = base.number("PRAGMA user_version");
    if (version != HistoryVersion) {
        throw std::runtime_error(path + ": a history of version " + std::to_string(version) +
                                 ", this program reads " + std::to_string(HistoryVersion));
    }
}

/// One comparison on its way into the base, within a transaction.
class Adding {
  public:
    Adding(Database& base, const JoinedComparison& joined, const JoiningWords& words)
        : m_base(base), m_joined(joined), m_words(words) {}

    Joining run() {
        Statement known(m_base, "SELECT comparison, older, newer FROM comparison WHERE identity = ?");
        const bool isNew = !known.with(m_joined.entry.identity).row();
        if (isNew) {
            findBuilds();
        } else {
            m_older = known.number(1);
            m_newer = known.number(2);
            rename(m_newer, m_words.label);
            rename(m_older, m_words.oldLabel);
        }
        if (!m_words.revision.empty()) {
            Statement(m_base, "UPDATE build SET revision = ? WHERE build = ?")
                .with(m_words.revision, m_newer)
                .run();
        }
        const std::int64_t comparison = isNew ? newComparison() : known.number(0);
        Statement(m_base, "DELETE FROM finding WHERE comparison = ?").with(comparison).run();
        putFindings(comparison);
        return {labelOf(m_older), labelOf(m_newer), isNew};
    }

  private:
    void findBuilds() {
        const BuildEntry& newer = m_joined.sides[1];
        m_newer =
            m_words.label.empty() ? newestOf(newer.identity, 0) : labelled(m_words.label, newer.identity);
        m_older = newestOf(m_joined.sides[0].identity, m_newer);
        if (m_older == 0) {
            if (m_newer != 0 && m_joined.sides[0].identity == newer.identity) {
                throw std::runtime_error("it compares the build with itself");
            }
            m_older = newBuild(m_joined.sides[0], m_words.oldLabel, m_newer != 0);
        } else {
            rename(m_older, m_words.oldLabel);
        }
        if (m_newer == 0) {
            m_newer = newBuild(newer, m_words.label, false);
        }
    }

    /// The last entry of these bytes but for one; 0: none.
    std::int64_t newestOf(const std::string& identity, std::int64_t but) {
        Statement row(
            m_base, "SELECT build FROM build WHERE identity = ? AND build <> ? ORDER BY place DESC LIMIT 1");
        return row.with(identity, but).row() ? row.number(0) : 0;
    }

    /// The entry of that label; 0: none.
    std::int64_t labelled(const std::string& label, const std::string& identity) {
        Statement row(m_base, "SELECT build, identity FROM build WHERE label = ?");
        if (!row.with(label).row()) {
            return 0;
        }
        if (row.text(1) != identity) {
            throw std::runtime_error("the history has another build with the label \"" + label + "\"");
        }
        return row.number(0);
    }

    /// A build that has the label already keeps it; one that has been given another does not get this one.
    void rename(std::int64_t build, const std::string& label) {
        if (label.empty() || labelOf(build) == label) {
            return;
        }
        Statement row(m_base, "SELECT identity FROM build WHERE build = ?");
        row.with(build).row();
        const std::string identity = row.text(0);
        if (labelOf(build) != identity.substr(0, DefaultLabelLength)) {
            throw std::runtime_error("the history has \"" + label + "\" under the label \"" + labelOf(build) +
                                     "\"");
        }
        if (labelled(label, identity) != 0) {
            throw std::runtime_error("the history has another build with the label \"" + label + "\"");
        }
        Statement(m_base, "UPDATE build SET label = ? WHERE build = ?").with(label, build).run();
    }

    std::int64_t newBuild(const BuildEntry& build, const std::string& label, bool first) {
        const std::string name = label.empty() ? defaultLabel(build) : label;
        if (labelled(name, build.identity) != 0) {
            throw std::runtime_error("the history has another build with the label \"" + name + "\"");
        }
        const std::int64_t place = m_base.number(first ? "SELECT coalesce(min(place), 0) - 1 FROM build"
                                                       : "SELECT coalesce(max(place), 0) + 1 FROM build");
        Statement(
            m_base,
            "INSERT INTO build(place, label, identity, revision, library, day) VALUES(?, ?, ?, '', ?, ?)")
            .with(place, name, build.identity, build.library, m_words.day)
            .run();
        const std::int64_t number = sqlite3_last_insert_rowid(m_base.get());
        int position = 0;
        for (const std::string& id : build.buildIds) {
            Statement(m_base, "INSERT INTO build_id VALUES(?, ?, ?)").with(number, position++, id).run();
        }
        return number;
    }

    std::int64_t newComparison() {
        Statement(
            m_base,
            "INSERT INTO comparison(identity, older, newer, method, margin, day) VALUES(?, ?, ?, ?, ?, ?)")
            .with(m_joined.entry.identity, m_older, m_newer, method(), m_joined.entry.margin, m_words.day)
            .run();
        return sqlite3_last_insert_rowid(m_base.get());
    }

    std::int64_t method() {
        const Method& method = m_joined.method;
        Statement(m_base, "INSERT OR IGNORE INTO method(processor, keys, turn, bits) VALUES(?, ?, ?, ?)")
            .with(method.processor, method.keys, method.turn, method.bits)
            .run();
        Statement row(m_base,
                      "SELECT method FROM method WHERE processor = ? AND keys = ? AND turn = ? AND bits = ?");
        row.with(method.processor, method.keys, method.turn, method.bits).row();
        return row.number(0);
    }

    void putFindings(std::int64_t comparison) {
        Statement point(m_base, "INSERT OR IGNORE INTO point(function, parameters, unit) VALUES(?, ?, ?)");
        Statement number(m_base,
                         "SELECT point FROM point WHERE function = ? AND parameters = ? AND unit = ?");
        Statement finding(m_base,
                          "INSERT OR REPLACE INTO finding VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        for (const Finding& its : m_joined.entry.findings) {
            const PointName& name = m_joined.points[static_cast<std::size_t>(its.point)];
            point.with(name.function, name.parameters, name.unit).run();
            number.with(name.function, name.parameters, name.unit).row();
            finding
                .with(comparison, number.number(0), word(its.verdict), word(its.reason), its.pairs,
                      its.middle, its.error, its.push, its.energy, its.older, its.newer, its.sameCode)
                .run();
            number.row();  // to its end, ready for the next one
        }
    }

    std::string labelOf(std::int64_t build) {
        Statement row(m_base, "SELECT label FROM build WHERE build = ?");
        return row.with(build).row() ? row.text(0) : "";
    }

    Database& m_base;
    const JoinedComparison& m_joined;
    const JoiningWords& m_words;
    std::int64_t m_older = 0;
    std::int64_t m_newer = 0;
};

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
    return history;
}

}  // namespace

History readHistory(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error(path + ": no such file");
    }
    // a process that was killed while it wrote has left what takes its half back
    Database base(path, access(path.c_str(), W_OK) == 0 ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);
    checkBase(base, path);
    base.run("BEGIN");
    return readBase(base);
}

Joining addToHistory(const std::string& path, const JoinedComparison& joined, const JoiningWords& words) {
    const bool isThere = std::filesystem::exists(path);
    try {
        Database base(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        Transaction transaction(base);
        if (base.number("PRAGMA application_id") == 0 &&
            base.number("SELECT count(*) FROM sqlite_master") == 0) {
            makeTables(base);
        }
        checkBase(base, path);
        Joining joining = Adding(base, joined, words).run();
        transaction.commit();
        return joining;
    } catch (...) {
        std::error_code ignored;
        if (!isThere && std::filesystem::file_size(path, ignored) == 0) {
            std::filesystem::remove(path, ignored);
        }
        throw;
    }
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
