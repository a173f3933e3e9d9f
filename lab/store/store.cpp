#include "store/store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "store/base.h"
#include "store/turncode.h"

namespace lab {

namespace {

const char* const tables = R"(
CREATE TABLE setting(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE machine(position INTEGER PRIMARY KEY, name TEXT NOT NULL, value TEXT NOT NULL);
-- side 0 is the old one, 1 the new one
CREATE TABLE side(side INTEGER PRIMARY KEY, name TEXT NOT NULL, folder TEXT NOT NULL, instrument TEXT NOT NULL,
                  library TEXT NOT NULL);
CREATE TABLE side_key(side INTEGER NOT NULL, position INTEGER NOT NULL, key TEXT NOT NULL,
                      PRIMARY KEY(side, position)) WITHOUT ROWID;
CREATE TABLE object(side INTEGER NOT NULL, name TEXT NOT NULL, path TEXT NOT NULL, mapped TEXT NOT NULL,
                    sha256 TEXT NOT NULL, build_id TEXT NOT NULL, bits INTEGER NOT NULL,
                    PRIMARY KEY(side, name)) WITHOUT ROWID;
CREATE TABLE point(point INTEGER PRIMARY KEY, function TEXT NOT NULL, unit TEXT NOT NULL, divisor REAL NOT NULL,
                   older INTEGER NOT NULL, newer INTEGER NOT NULL);
CREATE TABLE parameter(point INTEGER NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL,
                       PRIMARY KEY(point, position)) WITHOUT ROWID;
CREATE TABLE mark(point INTEGER NOT NULL, position INTEGER NOT NULL, text TEXT NOT NULL,
                  PRIMARY KEY(point, position)) WITHOUT ROWID;
CREATE TABLE pair(pair INTEGER PRIMARY KEY, seconds REAL NOT NULL, busyness REAL NOT NULL, steal REAL NOT NULL,
                  load REAL NOT NULL);
-- turns as turncode.h tells
CREATE TABLE visit(visit INTEGER PRIMARY KEY, pair INTEGER NOT NULL, point INTEGER NOT NULL, fresh INTEGER NOT NULL,
                   older_status INTEGER NOT NULL, older_death TEXT NOT NULL, newer_status INTEGER NOT NULL,
                   newer_death TEXT NOT NULL, turns BLOB NOT NULL, UNIQUE(pair, point));
CREATE TABLE fate(function TEXT PRIMARY KEY, older_status INTEGER NOT NULL, older_death TEXT NOT NULL,
                  newer_status INTEGER NOT NULL, newer_death TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE verdict(point INTEGER PRIMARY KEY, verdict TEXT NOT NULL, reason TEXT NOT NULL, low REAL, middle REAL,
                     high REAL, pairs INTEGER NOT NULL);
CREATE TABLE warning(warning INTEGER PRIMARY KEY, text TEXT NOT NULL UNIQUE);
)";

const char* const finishedSetting = "finished";
const char* const kindSetting = "kind";
const char* const measurementWord = "measurement";

std::array<Fate, 2> fatesAt(const Statement& row, int column) {
    return {Fate{static_cast<int>(row.number(column)), row.text(column + 1)},
            Fate{static_cast<int>(row.number(column + 2)), row.text(column + 3)}};
}

std::string settingOf(Database& base, const char* name) {
    Statement row(base, "SELECT value FROM setting WHERE name = ?");
    return row.with(name).row() ? row.text(0) : "";
}

StoreKind kindIn(Database& base) {
    return settingOf(base, kindSetting) == measurementWord ? StoreKind::measurement : StoreKind::comparison;
}

std::string named(StoreKind kind) {
    return kind == StoreKind::measurement ? "a measurement of one build" : "a comparison of two builds";
}

void checkKind(Database& base, const std::string& path, StoreKind kind, const std::string& advice) {
    if (kindIn(base) != kind) {
        throw std::runtime_error(path + ": holds " + named(kindIn(base)) + ", not " + named(kind) + advice);
    }
}

void checkIsThere(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error(path + ": no such file");
    }
}

std::unique_ptr<Database> openExisting(const std::string& path) {
    checkIsThere(path);
    // SQLite writes beside a file that a killed process left behind even to read it
    return openBase(path, access(path.c_str(), W_OK) == 0 ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY,
                    BaseId::one);
}

}  // namespace

/// Of the file, as long as a process writes to it.
struct Store::Lock {
    explicit Lock(const std::string& path)
        : number(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
        if (number < 0) {
            throw std::runtime_error(path + ": can't be written");
        }
        if (flock(number, LOCK_EX | LOCK_NB) != 0) {
            close(number);
            throw std::runtime_error(path + ": another metrig-lab writes to it");
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { close(number); }

    int number;
};

void Store::LockEnd::operator()(Lock* lock) const { delete lock; }

void Store::checkPath(const std::string& path, StoreKind kind) {
    const bool isThere = std::filesystem::exists(path);
    const Lock lock(path);
    if (!isThere) {
        std::filesystem::remove(path);
    } else if (std::filesystem::file_size(path) > 0) {
        if (Database(path, SQLITE_OPEN_READWRITE).number("SELECT count(*) FROM sqlite_master") == 0) {
            return;  // of a process that was killed before it wrote the first table
        }
        const auto old = openBase(path, SQLITE_OPEN_READWRITE, BaseId::one);
        checkKind(*old, path, kind, "; take another name");
        if (settingOf(*old, finishedSetting) != "yes") {
            throw std::runtime_error(path + ": holds " + named(kind) +
                                     " that is not finished; resume it or take another name");
        }
    }
}

Store Store::create(const std::string& path, const StoredHead& head) {
    checkPath(path, head.kind);
    LockOwner lock(new Lock(path));
    // in place, as the lock is on the file: its tables go, all of them
    auto base = std::make_unique<Database>(path, SQLITE_OPEN_READWRITE);
    sqlite3_db_config(base->get(), SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
    base->run("VACUUM");
    sqlite3_db_config(base->get(), SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
    // a commit then waits for no disk: what the system has taken survives the death of this process
    base->run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    Store store(std::move(lock), std::move(base));
    Transaction transaction(*store.m_base);
    store.m_base->run(tables);
    setBaseId(*store.m_base, BaseId::one);
    store.putHead(head);
    transaction.commit();
    return store;
}

Store Store::open(const std::string& path, bool writing, StoreKind kind) {
    checkIsThere(path);
    LockOwner lock(writing ? new Lock(path) : nullptr);
    auto base = openExisting(path);
    checkKind(*base, path, kind, "");
    if (writing) {
        base->run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    }
    return {std::move(lock), std::move(base)};
}

StoreKind Store::kindOf(const std::string& path) { return kindIn(*openExisting(path)); }

bool Store::isOne(const std::string& path) { return isBase(path, BaseId::one); }

Store Store::openSession(const std::string& path, int session) {
    auto base = openBase(path, SQLITE_OPEN_READONLY, BaseId::merged);
    std::string views;
    for (Statement row(*base,
                       "SELECT name FROM main.sqlite_master WHERE type = 'table' AND name <> 'session'");
         row.row();) {
        // goes before the table of that name
        views += "CREATE TEMP VIEW " + row.text(0) + " AS SELECT * FROM main." + row.text(0) +
                 " WHERE session = " + std::to_string(session) + ";";
    }
    base->run(views.c_str());
    return {nullptr, std::move(base)};
}

void Store::putHead(const StoredHead& head) {
    for (const auto& [name, value] : head.settings) {
        setSetting(name, value);
    }
    if (head.kind == StoreKind::measurement) {
        setSetting(kindSetting, measurementWord);
    }
    Statement machine(*m_base, "INSERT INTO machine(name, value) VALUES(?, ?)");
    for (const auto& [name, value] : head.machine) {
        machine.with(name, value).run();
    }
    putSide(0, head.sides[0]);
    if (head.kind == StoreKind::comparison) {
        putSide(1, head.sides[1]);
    }
    for (std::size_t i = 0; i < head.points.size(); ++i) {
        putPoint(static_cast<int>(i), head.points[i]);
    }
}

void Store::putSide(int number, const StoredSide& side) {
    Statement(*m_base, "INSERT INTO side VALUES(?, ?, ?, ?, ?)")
        .with(number, side.name, side.folder, side.instrument, side.library)
        .run();
    int position = 0;
    for (const std::string& key : side.keys) {
        Statement(*m_base, "INSERT INTO side_key VALUES(?, ?, ?)").with(number, position++, key).run();
    }
    for (const StoredObject& object : side.objects) {
        Statement(*m_base, "INSERT INTO object VALUES(?, ?, ?, ?, ?, ?, ?)")
            .with(number, object.name, object.path, object.mapped, object.sha256, object.buildId, object.bits)
            .run();
    }
}

void Store::putPoint(int number, const StoredPoint& point) {
    Statement(*m_base, "INSERT INTO point VALUES(?, ?, ?, ?, ?, ?)")
        .with(number, point.function, point.unit, point.divisor, point.older, point.newer)
        .run();
    int position = 0;
    for (const auto& [name, value] : point.parameters) {
        Statement(*m_base, "INSERT INTO parameter VALUES(?, ?, ?, ?)")
            .with(number, position++, name, value)
            .run();
    }
    position = 0;
    for (const std::string& mark : point.marks) {
        Statement(*m_base, "INSERT INTO mark VALUES(?, ?, ?)").with(number, position++, mark).run();
    }
}

NamedTexts Store::namedTexts(const char* query) {
    NamedTexts texts;
    for (Statement row(*m_base, query); row.row();) {
        texts.emplace_back(row.text(0), row.text(1));
    }
    return texts;
}

StoredHead Store::head() {
    StoredHead head = headWithoutPoints();
    for (Statement row(*m_base, "SELECT function, unit, divisor, older, newer FROM point ORDER BY point");
         row.row();) {
        head.points.push_back(
            {row.text(0), {}, row.text(1), row.real(2), row.number(3) != 0, row.number(4) != 0, {}});
    }
    for (Statement row(*m_base, "SELECT point, name, value FROM parameter ORDER BY point, position");
         row.row();) {
        head.points.at(static_cast<std::size_t>(row.number(0)))
            .parameters.emplace_back(row.text(1), row.text(2));
    }
    for (Statement row(*m_base, "SELECT point, text FROM mark ORDER BY point, position"); row.row();) {
        head.points.at(static_cast<std::size_t>(row.number(0))).marks.push_back(row.text(1));
    }
    return head;
}

StoredHead Store::headWithoutPoints() {
    StoredHead head;
    head.kind = kindIn(*m_base);
    head.settings = namedTexts("SELECT name, value FROM setting ORDER BY name");
    head.machine = namedTexts("SELECT name, value FROM machine ORDER BY position");
    for (Statement row(*m_base,
                       "SELECT side, name, folder, instrument, library FROM side WHERE side IN (0, 1)");
         row.row();) {
        StoredSide& side = head.sides[static_cast<std::size_t>(row.number(0))];
        side.name = row.text(1);
        side.folder = row.text(2);
        side.instrument = row.text(3);
        side.library = row.text(4);
    }
    for (Statement row(*m_base,
                       "SELECT side, key FROM side_key WHERE side IN (0, 1) ORDER BY side, position");
         row.row();) {
        head.sides[static_cast<std::size_t>(row.number(0))].keys.push_back(row.text(1));
    }
    for (Statement row(*m_base,
                       "SELECT side, name, path, mapped, sha256, build_id, bits FROM object "
                       "WHERE side IN (0, 1) ORDER BY side, name");
         row.row();) {
        head.sides[static_cast<std::size_t>(row.number(0))].objects.push_back(
            {row.text(1), row.text(2), row.text(3), row.text(4), row.text(5),
             static_cast<int>(row.number(6))});
    }
    return head;
}

void Store::addVisits(int pair, const std::vector<StoredVisit>& visits) {
    Transaction transaction(*m_base);
    Statement insert(*m_base,
                     "INSERT INTO visit(pair, point, fresh, turns, older_status, older_death, "
                     "newer_status, newer_death) VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    for (const StoredVisit& visit : visits) {
        const std::string turns = encodeTurns(visit.turns);
        insert
            .with(pair, visit.point, visit.fresh, Bytes{turns}, visit.fates[0].status, visit.fates[0].death,
                  visit.fates[1].status, visit.fates[1].death)
            .run();
    }
    transaction.commit();
}

void Store::eachVisit(const std::function<void(int pair, StoredVisit&& visit)>& take, VisitOrder order) {
    const std::string query =
        std::string(
            "SELECT pair, point, fresh, turns, older_status, older_death, newer_status, newer_death "
            "FROM visit ORDER BY ") +
        (order == VisitOrder::byPair ? "pair, point" : "point, pair");
    for (Statement row(*m_base, query.c_str()); row.row();) {
        auto turns = decodeTurns(row.text(3));
        if (!turns) {
            throw std::runtime_error("the store holds turns that are none");
        }
        take(static_cast<int>(row.number(0)),
             {static_cast<int>(row.number(1)), row.number(2) != 0, std::move(*turns), fatesAt(row, 4)});
    }
}

std::set<int> Store::pointsVisited(int pair) {
    std::set<int> points;
    Statement rows(*m_base, "SELECT point FROM visit WHERE pair = ?");
    for (rows.with(pair); rows.row();) {
        points.insert(static_cast<int>(rows.number(0)));
    }
    return points;
}

void Store::addPair(const StoredPair& pair) {
    Statement(*m_base, "INSERT OR REPLACE INTO pair VALUES(?, ?, ?, ?, ?)")
        .with(pair.number, pair.seconds, pair.busyness, pair.steal, pair.load)
        .run();
}

std::vector<StoredPair> Store::pairs() {
    std::vector<StoredPair> pairs;
    for (Statement row(*m_base, "SELECT pair, seconds, busyness, steal, load FROM pair ORDER BY pair");
         row.row();) {
        pairs.push_back(
            {static_cast<int>(row.number(0)), row.real(1), row.real(2), row.real(3), row.real(4)});
    }
    return pairs;
}

void Store::addFate(const std::string& function, const std::array<Fate, 2>& fates) {
    Statement(*m_base, "INSERT OR REPLACE INTO fate VALUES(?, ?, ?, ?, ?)")
        .with(function, fates[0].status, fates[0].death, fates[1].status, fates[1].death)
        .run();
}

std::vector<std::pair<std::string, std::array<Fate, 2>>> Store::fates() {
    std::vector<std::pair<std::string, std::array<Fate, 2>>> fates;
    for (Statement row(*m_base,
                       "SELECT function, older_status, older_death, newer_status, newer_death FROM fate");
         row.row();) {
        fates.emplace_back(row.text(0), fatesAt(row, 1));
    }
    return fates;
}

void Store::setDecisions(const std::vector<Decision>& decisions) {
    Transaction transaction(*m_base);
    Statement insert(*m_base, "INSERT OR REPLACE INTO verdict VALUES(?, ?, ?, ?, ?, ?, ?)");
    for (std::size_t i = 0; i < decisions.size(); ++i) {
        const Decision& decision = decisions[i];
        insert
            .with(static_cast<int>(i), word(decision.verdict), word(decision.reason), decision.interval.low,
                  decision.interval.middle, decision.interval.high, decision.pairs)
            .run();
    }
    transaction.commit();
}

void Store::addWarning(const std::string& text) {
    Statement(*m_base, "INSERT OR IGNORE INTO warning(text) VALUES(?)").with(text).run();
}

std::vector<std::string> Store::warnings() {
    std::vector<std::string> warnings;
    for (Statement row(*m_base, "SELECT text FROM warning ORDER BY warning"); row.row();) {
        warnings.push_back(row.text(0));
    }
    return warnings;
}

void Store::setSetting(const std::string& name, const std::string& value) {
    Statement(*m_base, "INSERT OR REPLACE INTO setting VALUES(?, ?)").with(name, value).run();
}

std::string Store::setting(const std::string& name) { return settingOf(*m_base, name.c_str()); }

void Store::finish() {
    setSetting(finishedSetting, "yes");
    // who reads the store just now keeps the file beside it; it is right all the same
    sqlite3_exec(m_base->get(), "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
}

}  // namespace lab
