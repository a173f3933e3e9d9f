#include "store/merged.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "store/base.h"

namespace lab {

namespace {

/// The tables of a store, and what a row of each is known by within it.
constexpr std::pair<const char*, const char*> tables[] = {{"visit", "pair, point"},
                                                          {"setting", "name"},
                                                          {"machine", "position"},
                                                          {"side", "side"},
                                                          {"side_key", "side, position"},
                                                          {"object", "side, name"},
                                                          {"point", "point"},
                                                          {"parameter", "point, position"},
                                                          {"mark", "point, position"},
                                                          {"pair", "pair"},
                                                          {"fate", "function"},
                                                          {"verdict", "point"},
                                                          {"warning", "text"}};
constexpr const char* visits = "visit";

/// A session in a file that is to be merged.
struct Source {
    std::string path;
    int session = 0;  ///< in a merged store; 0: the file is a plain one
    std::string identity;
    std::string kind;
    std::string margin;
    bool finished = false;
    std::array<StoredSide, 2> sides;

    std::string where() const {
        return session > 0 ? " WHERE session = " + std::to_string(session) : std::string();
    }
};

std::string valueOf(const NamedTexts& texts, const std::string& name) {
    const auto found =
        std::find_if(texts.begin(), texts.end(), [&](const auto& known) { return known.first == name; });
    return found == texts.end() ? "" : found->second;
}

Source sourceOf(const std::string& path, int session) {
    Store store = session > 0 ? Store::openSession(path, session) : Store::open(path, false);
    const StoredHead head = store.headWithoutPoints();
    Source source{path,
                  session,
                  valueOf(head.settings, "session"),
                  valueOf(head.settings, "machine kind"),
                  valueOf(head.settings, "margin"),
                  valueOf(head.settings, "finished") == "yes",
                  head.sides};
    if (source.kind.empty()) {
        source.kind = valueOf(head.machine, "processor");
    }
    if (source.identity.empty()) {  // of version 1.0: no two of them began alike
        source.identity = valueOf(head.settings, "seed");
        for (const auto& [name, value] : head.machine) {
            source.identity += "/" + value;
        }
    }
    return source;
}

std::vector<Source> sourcesIn(const std::string& path) {
    if (!isMerged(path)) {
        return {sourceOf(path, 0)};
    }
    std::vector<Source> sources;
    for (const MergedSession& session : mergedSessions(path)) {
        sources.push_back(sourceOf(path, session.number));
    }
    return sources;
}

std::string keysOf(const StoredSide& side) {
    std::string text;
    for (const std::string& key : side.keys) {
        text += (text.empty() ? "" : " ") + key;
    }
    return "\"" + text + "\"";
}

/// Why the objects are not those of one comparison; empty if they are.
std::string differenceOf(const std::array<StoredSide, 2>& one, const std::array<StoredSide, 2>& other) {
    constexpr std::size_t shown = 12;
    for (std::size_t side = 0; side < 2; ++side) {
        for (const StoredObject& object : one[side].objects) {
            for (const StoredObject& its : other[side].objects) {
                if (object.name == its.name && object.sha256 != its.sha256) {
                    return std::string(side == 0 ? "the old " : "the new ") + object.name +
                           " is another (SHA-256 " + object.sha256.substr(0, shown) + "... and " +
                           its.sha256.substr(0, shown) + "...)";
                }
            }
        }
    }
    return "";
}

std::string differenceOf(const Source& one, const Source& other) {
    std::string ofObjects = differenceOf(one.sides, other.sides);
    if (!ofObjects.empty()) {
        return ofObjects;
    }
    if (one.margin != other.margin) {
        return "the margin is another (" + one.margin + " and " + other.margin + ")";
    }
    for (std::size_t side = 0; side < 2 && one.kind == other.kind; ++side) {
        if (one.sides[side].keys != other.sides[side].keys) {
            return "kind " + one.kind + " has other keys (" + keysOf(one.sides[side]) + " and " +
                   keysOf(other.sides[side]) + ")";
        }
    }
    return "";
}

void checkAll(const std::vector<Source>& there, const std::vector<Source>& sources) {
    // the first of all, and the first of its kind, stand for the others
    const Source* first = nullptr;
    std::map<std::string, const Source*> firstOfKind;
    for (const std::vector<Source>* some : {&there, &sources}) {
        for (const Source& source : *some) {
            first = first == nullptr ? &source : first;
            for (const Source* other : {first, firstOfKind.emplace(source.kind, &source).first->second}) {
                const std::string difference = differenceOf(source, *other);
                if (!difference.empty()) {
                    throw std::runtime_error(source.path + ": not of the comparison that " + other->path +
                                             " is of: " + difference);
                }
            }
        }
    }
}

/// A file that another one has attached, as "source".
class Attached {
  public:
    Attached(Database& base, const std::string& path) : m_base(base) {
        Statement(base, "ATTACH ? AS source").with(path).run();
    }
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;
    ~Attached() { sqlite3_exec(m_base.get(), "DETACH source", nullptr, nullptr, nullptr); }

  private:
    Database& m_base;
};

/// The columns of the attached file's table but for the session.
std::string columnsOf(Database& base, const std::string& table) {
    Statement row(
        base, "SELECT group_concat(name, ', ') FROM pragma_table_info(?, 'source') WHERE name <> 'session'");
    return row.with(table).row() ? row.text(0) : "";
}

/// With the tables of the attached file, which are thus told in one place.
void makeTables(Database& base) {
    base.run(
        "CREATE TABLE session(session INTEGER PRIMARY KEY, identity TEXT NOT NULL UNIQUE, "
        "kind TEXT NOT NULL)");
    for (const auto& [name, key] : tables) {
        std::ostringstream query;
        query << "CREATE TABLE main." << name << " AS SELECT 0 AS session, " << columnsOf(base, name)
              << " FROM source." << name << " WHERE 0; CREATE UNIQUE INDEX main.key_of_" << name << " ON "
              << name << "(session, " << key << ")";
        base.run(query.str().c_str());
    }
    setBaseId(base, BaseId::merged);
}

std::optional<int> numberOf(Database& base, const Source& source) {
    Statement row(base, "SELECT session FROM main.session WHERE identity = ?");
    return row.with(source.identity).row() ? std::optional(static_cast<int>(row.number(0))) : std::nullopt;
}

void copyRows(Database& base, const Source& source, const std::string& table, int number) {
    const std::string columns = columnsOf(base, table);
    Statement(base,
              ("INSERT OR IGNORE INTO main." + table + "(session, " + columns + ") SELECT ?, " + columns +
               " FROM source." + table + source.where() + (table == visits ? " ORDER BY pair, point" : ""))
                  .c_str())
        .with(number)
        .run();
}

/// std::runtime_error if the attached file tells a pair's turns otherwise.
void checkVisits(Database& base, const Source& source, int number) {
    Statement row(base, ("SELECT its.pair, its.point FROM (SELECT * FROM source.visit" + source.where() +
                         ") AS its JOIN main.visit AS mine ON mine.session = ? AND mine.pair = its.pair AND "
                         "mine.point = its.point WHERE mine.turns <> its.turns OR mine.fresh <> its.fresh")
                            .c_str());
    if (row.with(number).row()) {
        throw std::runtime_error(
            source.path + ": holds pair " + std::to_string(row.number(0)) +
            " of a session that is there already, with other turns: two copies of a store "
            "went on apart");
    }
}

void addSource(Database& base, const Source& source, MergeCount& count) {
    const Attached attached(base, source.path);
    Transaction transaction(base);
    if (base.number("SELECT count(*) FROM main.sqlite_master") == 0) {
        makeTables(base);
    }
    std::optional<int> number = numberOf(base, source);
    const bool isNew = !number;
    if (isNew) {
        Statement(base, "INSERT INTO main.session(identity, kind) VALUES(?, ?)")
            .with(source.identity, source.kind)
            .run();
        number = numberOf(base, source);
        ++count.sessions;
    } else {
        checkVisits(base, source, *number);
    }
    const auto visitsOf = [&](const std::string& where) {
        return base.number(("SELECT count(*) FROM " + where).c_str());
    };
    const std::string here = "main.visit WHERE session = " + std::to_string(*number);
    const std::int64_t before = isNew ? 0 : visitsOf(here);
    copyRows(base, source, visits, *number);
    const std::int64_t after = visitsOf(here);
    count.visits += after - before;
    const bool isWhole = after == visitsOf("source.visit" + source.where());
    if (isNew || (isWhole && (after > before || source.finished))) {
        for (const auto& [table, key] : tables) {
            if (table != visits) {
                base.run(
                    (std::string("DELETE FROM main.") + table + " WHERE session = " + std::to_string(*number))
                        .c_str());
                copyRows(base, source, table, *number);
            }
        }
    }
    transaction.commit();
}

bool isEmpty(const std::string& path) {
    return !std::filesystem::exists(path) ||
           Database(path, SQLITE_OPEN_READONLY).number("SELECT count(*) FROM sqlite_master") == 0;
}

/// The sessions that are there; std::runtime_error if the file is no merged store and holds something.
std::vector<Source> sourcesThere(const std::string& path) {
    if (isEmpty(path)) {
        return {};
    }
    openBase(path, SQLITE_OPEN_READONLY, BaseId::merged);
    return sourcesIn(path);
}

}  // namespace

bool isMerged(const std::string& path) { return isBase(path, BaseId::merged); }

std::vector<MergedSession> mergedSessions(const std::string& path) {
    const auto base = openBase(path, SQLITE_OPEN_READONLY, BaseId::merged);
    std::vector<MergedSession> sessions;
    for (Statement row(*base, "SELECT session, kind FROM session ORDER BY kind, identity"); row.row();) {
        sessions.push_back({static_cast<int>(row.number(0)), row.text(1)});
    }
    return sessions;
}

MergeCount mergeStores(const std::string& path, const std::vector<std::string>& stores) {
    std::vector<Source> sources;
    for (const std::string& store : stores) {
        std::error_code failed;
        if (std::filesystem::equivalent(store, path, failed)) {
            throw std::runtime_error(path + ": can't be merged into itself");
        }
        const std::vector<Source> some = sourcesIn(store);
        sources.insert(sources.end(), some.begin(), some.end());
    }
    checkAll(sourcesThere(path), sources);
    MergeCount count;
    Database base(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    // a whole merge is soon made again; the file is sound after the death of this process all the same
    base.run("PRAGMA synchronous = OFF");
    for (const Source& source : sources) {
        addSource(base, source, count);
    }
    return count;
}

void checkMergeInto(const std::string& path, const std::array<StoredSide, 2>& sides) {
    for (const Source& source : sourcesThere(path)) {
        const std::string difference = differenceOf(sides, source.sides);
        if (!difference.empty()) {
            throw std::runtime_error(
                std::string(path).append(": holds another comparison: ").append(difference));
        }
    }
}

}  // namespace lab
