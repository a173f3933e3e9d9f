#include "history/historybase.h"

#include <stdexcept>

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

const char* const tablesOfMeasurements = R"(
CREATE TABLE IF NOT EXISTS measurement(measurement INTEGER PRIMARY KEY, identity TEXT NOT NULL UNIQUE,
                   build INTEGER NOT NULL, processor TEXT NOT NULL, keys TEXT NOT NULL, bits INTEGER NOT NULL,
                   processes INTEGER NOT NULL, day TEXT NOT NULL);
-- clocks of a unit
CREATE TABLE IF NOT EXISTS figure(measurement INTEGER NOT NULL, point INTEGER NOT NULL, clocks REAL NOT NULL,
                   low REAL NOT NULL, high REAL NOT NULL, PRIMARY KEY(measurement, point)) WITHOUT ROWID;
)";

}  // namespace

void checkHistory(Database& base, const std::string& path) {
    if (base.number("PRAGMA application_id") != ApplicationId) {
        throw std::runtime_error(path + ": no history of metrig-lab");
    }
    const std::int64_t version = base.number("PRAGMA user_version");
    if (version != HistoryVersion) {
        throw std::runtime_error(path + ": a history of version " + std::to_string(version) +
                                 ", this program reads " + std::to_string(HistoryVersion));
    }
}

void prepareHistory(Database& base, const std::string& path) {
    if (base.number("PRAGMA application_id") == 0 && base.number("SELECT count(*) FROM sqlite_master") == 0) {
        base.run(tables);
        base.run(("PRAGMA application_id = " + std::to_string(ApplicationId)).c_str());
        base.run(("PRAGMA user_version = " + std::to_string(HistoryVersion)).c_str());
    }
    checkHistory(base, path);
    base.run(tablesOfMeasurements);
}

bool hasMeasurements(Database& base) {
    return base.number("SELECT count(*) FROM sqlite_master WHERE name = 'measurement'") != 0;
}

}  // namespace lab
