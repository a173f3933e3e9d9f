#pragma once

#include <vector>

#include "text/mrresult.h"
#include "zyltypes.h"

class mrTool;

/// The kinds of timing entry of a test.

/// Runs the function `numLoops` times and stores a clock figure: the best single call in the suites' entries.
using FuncLoop = mrResult (*)(int numLoops, long long* clocks);
/// In: least calls and least total clocks. Out: calls made, and clocks of one call. `numIntLoops` calls are
/// timed as one block.
using FuncStat = mrResult (*)(int* numCalls, long long* clocks, int numIntLoops);
/// One call; the library's status. Also the kind of the entry that puts the data back between calls.
using FuncCall = int (*)();
/// Measures by itself and leaves raw clocks in the tool.
using FuncOld = mrResult (*)(mrTool& tool, int numLoops);

/// The raw ticks behind the figure of a statistic entry. Entries fill it between blocks.
struct mrBlockTicks {
    std::vector<Zyl64u> blocks;  ///< in the order of time
    Zyl64u bareLoop = 0;         ///< of as many turns as a block has calls
    int status = 0;              ///< the last one that was not 0

    static mrBlockTicks* wanted;  ///< null, or where they go
};
