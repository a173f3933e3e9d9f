#pragma once

/// What a comparison keeps, or a measurement of one build: one SQLite file, sound after the process was
/// killed at any moment.

#include <array>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "store/sqlite.h"
#include "verdict/turn.h"
#include "verdict/verdict.h"

namespace lab {

using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// What a store holds. A measurement has one side, which stands in the place of the old one, and a pair of it
/// is a process by itself.
enum class StoreKind { comparison, measurement };

struct StoredObject {
    std::string name;
    std::string path;    ///< of the original
    std::string mapped;  ///< by an instrument
    std::string sha256;
    std::string buildId;
    int bits = 0;
};

struct StoredSide {
    std::string name;               ///< as the user gave it
    std::string folder;             ///< of the shared objects; empty for a side that is a program
    std::string instrument;         ///< path of the program, which may be one of the objects
    std::string library;            ///< line that the library says of itself
    std::vector<std::string> keys;  ///< of the instrument, those of both sides included
    std::vector<StoredObject> objects;
};

/// A point that one side has, or both.
struct StoredPoint {
    std::string function;
    NamedTexts parameters;
    std::string unit;
    double divisor = 1.0;
    bool older = true;
    bool newer = true;
    std::vector<std::string> marks;
};

/// What is kept before the first pair.
struct StoredHead {
    StoreKind kind = StoreKind::comparison;
    NamedTexts settings;
    NamedTexts machine;
    std::array<StoredSide, 2> sides;
    std::vector<StoredPoint> points;  ///< numbered from 0 in this order
};

/// What a pair measured at a point.
struct StoredVisit {
    int point = 0;
    bool fresh = false;  ///< the pair was asked to confirm
    std::vector<Turn> turns;
    std::array<Fate, 2> fates;  ///< old, new
};

enum class VisitOrder { byPair, byPoint };

/// What a pair was started with.
struct StoredPair {
    int number = 0;
    double seconds = 0.0;   ///< from the start of the run to its end
    double busyness = 1.0;  ///< of the canary
    double steal = 0.0;     ///< share of time that a host took
    double load = 0.0;
};

class Store {
  public:
    /// std::runtime_error if create() would refuse the path now.
    static void checkPath(const std::string& path, StoreKind kind);
    /// A new store that holds `head`. Takes the place of a finished one of its kind; std::runtime_error if
    /// there is any other file.
    static Store create(const std::string& path, const StoredHead& head);

    /// One that is there. To go on with (`writing`), or to look at, also while another process goes on with
    /// it. std::runtime_error if it is none of this version or holds the other kind, or another process
    /// writes to it.
    static Store open(const std::string& path, bool writing, StoreKind kind = StoreKind::comparison);
    /// What the store holds that is there; std::runtime_error if it is none of this version.
    static StoreKind kindOf(const std::string& path);

    /// Whether the file is there and is a store.
    static bool isOne(const std::string& path);
    /// One session of a merged store, by its number there, to look at. std::runtime_error if it is none.
    static Store openSession(const std::string& path, int session);

    StoredHead head();
    StoredHead headWithoutPoints();

    /// One transaction: the visits of a test by a pair.
    void addVisits(int pair, const std::vector<StoredVisit>& visits);
    /// All visits, in the order of pairs or in that of points, and then of pairs.
    void eachVisit(const std::function<void(int pair, StoredVisit&& visit)>& take,
                   VisitOrder order = VisitOrder::byPair);
    /// Points that the pair has visited.
    std::set<int> pointsVisited(int pair);

    /// A pair that has visited all it was to visit.
    void addPair(const StoredPair& pair);
    std::vector<StoredPair> pairs();
    /// A function that a side did not live through: the fate of its points that are still open.
    void addFate(const std::string& function, const std::array<Fate, 2>& fates);
    std::vector<std::pair<std::string, std::array<Fate, 2>>> fates();

    /// One transaction: the decision on each point, by its number.
    void setDecisions(const std::vector<Decision>& decisions);

    void addWarning(const std::string& text);
    std::vector<std::string> warnings();
    void setSetting(const std::string& name, const std::string& value);
    /// Empty for one that is not there.
    std::string setting(const std::string& name);

    /// The run is said to be finished, and all is in the one file unless others read it just now.
    void finish();

  private:
    struct Lock;
    struct LockEnd {
        void operator()(Lock* lock) const;
    };
    using LockOwner = std::unique_ptr<Lock, LockEnd>;

    Store(LockOwner lock, std::unique_ptr<Database> base)
        : m_lock(std::move(lock)), m_base(std::move(base)) {}
    void putHead(const StoredHead& head);
    void putSide(int number, const StoredSide& side);
    void putPoint(int number, const StoredPoint& point);
    NamedTexts namedTexts(const char* query);

    LockOwner m_lock;  ///< held longer than the base
    std::unique_ptr<Database> m_base;
};

}  // namespace lab
