#pragma once

/// A run of the instrument that gets to its end whatever the library does.

#include <functional>
#include <string>
#include <vector>

#include "survive/journal.h"
#include "survive/supervised.h"

namespace lab {

/// Says what the instrument can't say itself, without line end.
using Say = std::function<void(const std::string& text)>;

struct SurvivedRun {
    int status =
        0;  ///< the instrument's; 128 and a signal's number, where one ended the run before its reports
    bool stopped = false;  ///< the run was asked to end
    JournalContent content;
};

/// Runs it. When its process dies in a function, or does not return from it for `patience` seconds, the next
/// process gives that function its row and goes on behind it. A function that was not the first one of its
/// process is measured once more by a fresh one before it is said to be lost: the one before may have done
/// it.
///
/// A process that dies before the first test, or three times without having done anything, ends the run.
/// std::runtime_error if one can't be started.
SurvivedRun survive(const SupervisedStart& start, double patience, const Say& say);

/// What the keys ask for in vain, found by a process that measures and writes nothing.
std::vector<std::string> complaintsOf(const SupervisedStart& start, double patience);

}  // namespace lab
