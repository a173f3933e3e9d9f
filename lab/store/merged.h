#pragma once

/// Sessions of one comparison in one file. Its tables are those of a store with a column `session` before the
/// others, so each session can be opened as a store of its own (Store::openSession).

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "store/store.h"

namespace lab {

struct MergedSession {
    int number = 0;
    std::string kind;  ///< of the machine; where none was given, the processor
};

/// What a merge has brought.
struct MergeCount {
    int sessions = 0;         ///< that were not there
    std::int64_t visits = 0;  ///< of a point by a pair, that were not there
};

bool isMerged(const std::string& path);

/// By kind; those of a kind in the order of their identities, which were drawn by lot when they began.
std::vector<MergedSession> mergedSessions(const std::string& path);

/// Adds what the stores hold, plain or merged ones, to the merged store at `path`, which is made if it is not
/// there. What is there already, by session, pair and point, stays as it is, and of what else is kept of a
/// session the copy with more pairs counts. std::runtime_error, with nothing written, if a file is no store
/// or its comparison is another one: of other libraries, with another margin, or on the same kind with other
/// keys. The same, with all of the stores before it written, for one that holds other turns of a pair that is
/// there.
MergeCount mergeStores(const std::string& path, const std::vector<std::string>& stores);

/// std::runtime_error if mergeStores could not add a comparison of these sides to `path`, as far as it can be
/// known before they are measured.
void checkMergeInto(const std::string& path, const std::array<StoredSide, 2>& sides);

}  // namespace lab
