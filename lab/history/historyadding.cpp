#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "history/historybase.h"
#include "history/historystore.h"

namespace lab {

namespace {

constexpr std::size_t DefaultLabelLength = 12;

std::string defaultLabel(const BuildEntry& build) { return build.identity.substr(0, DefaultLabelLength); }

/// The numbers of points, which get one as they come.
class PointNumbers {
  public:
    explicit PointNumbers(Database& base)
        : m_put(base, "INSERT OR IGNORE INTO point(function, parameters, unit) VALUES(?, ?, ?)"),
          m_find(base, "SELECT point FROM point WHERE function = ? AND parameters = ? AND unit = ?") {}

    std::int64_t of(const PointName& name) {
        m_put.with(name.function, name.parameters, name.unit).run();
        m_find.with(name.function, name.parameters, name.unit).row();
        const std::int64_t number = m_find.number(0);
        m_find.row();  // to its end, ready for the next one
        return number;
    }

  private:
    Statement m_put;
    Statement m_find;
};

/// The builds of a base, for what joins it within a transaction.
class Builds {
  protected:
    Builds(Database& base, const JoiningWords& words) : m_base(base), m_words(words) {}

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

    void setRevision(std::int64_t build) {
        if (!m_words.revision.empty()) {
            Statement(m_base, "UPDATE build SET revision = ? WHERE build = ?")
                .with(m_words.revision, build)
                .run();
        }
    }

    std::string labelOf(std::int64_t build) {
        Statement row(m_base, "SELECT label FROM build WHERE build = ?");
        return row.with(build).row() ? row.text(0) : "";
    }

    Database& m_base;
    const JoiningWords& m_words;
};

/// One comparison on its way into the base.
class AddedComparison : Builds {
  public:
    AddedComparison(Database& base, const JoinedComparison& joined, const JoiningWords& words)
        : Builds(base, words), m_joined(joined) {}

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
        setRevision(m_newer);
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
        PointNumbers numbers(m_base);
        Statement finding(m_base,
                          "INSERT OR REPLACE INTO finding VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        for (const Finding& its : m_joined.entry.findings) {
            const std::int64_t point = numbers.of(m_joined.points[static_cast<std::size_t>(its.point)]);
            finding
                .with(comparison, point, word(its.verdict), word(its.reason), its.pairs, its.middle,
                      its.error, its.push, its.energy, its.older, its.newer, its.sameCode)
                .run();
        }
    }

    const JoinedComparison& m_joined;
    std::int64_t m_older = 0;
    std::int64_t m_newer = 0;
};

/// One measurement on its way into the base.
class AddedMeasurement : Builds {
  public:
    AddedMeasurement(Database& base, const JoinedMeasurement& joined, const JoiningWords& words)
        : Builds(base, words), m_joined(joined) {}

    Joining run() {
        Statement known(m_base, "SELECT build FROM measurement WHERE identity = ?");
        const bool isNew = !known.with(m_joined.entry.identity).row();
        std::int64_t build = 0;
        if (isNew) {
            build = buildOfIt();
            putFigures(newMeasurement(build));
        } else {
            build = known.number(0);
            rename(build, m_words.label);
        }
        setRevision(build);
        return {"", labelOf(build), isNew};
    }

  private:
    std::int64_t buildOfIt() {
        if (!m_words.label.empty()) {
            if (const std::int64_t build = labelled(m_words.label, m_joined.build.identity)) {
                return build;
            }
        }
        const std::int64_t build = newestOf(m_joined.build.identity, 0);
        if (build == 0) {
            return newBuild(m_joined.build, m_words.label, false);
        }
        rename(build, m_words.label);
        return build;
    }

    std::int64_t newMeasurement(std::int64_t build) {
        const Method& method = m_joined.entry.method;
        Statement(m_base,
                  "INSERT INTO measurement(identity, build, processor, keys, bits, processes, day) "
                  "VALUES(?, ?, ?, ?, ?, ?, ?)")
            .with(m_joined.entry.identity, build, method.processor, method.keys, method.bits,
                  m_joined.entry.processes, m_words.day)
            .run();
        return sqlite3_last_insert_rowid(m_base.get());
    }

    void putFigures(std::int64_t measurement) {
        PointNumbers numbers(m_base);
        Statement figure(m_base, "INSERT OR REPLACE INTO figure VALUES(?, ?, ?, ?, ?)");
        for (const KeptFigure& its : m_joined.entry.figures) {
            const std::int64_t point = numbers.of(m_joined.points[static_cast<std::size_t>(its.point)]);
            figure.with(measurement, point, its.clocks, its.low, its.high).run();
        }
    }

    const JoinedMeasurement& m_joined;
};

/// One transaction in which something joins.
template <class Added, class Joined>
Joining added(const std::string& path, const Joined& joined, const JoiningWords& words) {
    const bool isThere = std::filesystem::exists(path);
    try {
        Database base(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        Transaction transaction(base);
        prepareHistory(base, path);
        Joining joining = Added(base, joined, words).run();
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

}  // namespace

Joining addToHistory(const std::string& path, const JoinedComparison& joined, const JoiningWords& words) {
    return added<AddedComparison>(path, joined, words);
}

Joining addToHistory(const std::string& path, const JoinedMeasurement& joined, const JoiningWords& words) {
    return added<AddedMeasurement>(path, joined, words);
}

}  // namespace lab
