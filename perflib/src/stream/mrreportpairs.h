#pragma once

#include "stream/mrcstream.h"
#include "stream/mrostream.h"

/// Names and values that stand in turn on a list, as the reports hold them.

/// Calls `use(name, value)` for each pair.
template <class Use>
void mrForEachPair(const mrList<mrString>& list, Use use) {
    for (auto cell = list.begin(); cell != list.end(); ++cell) {
        const mrString& name = *cell;
        ++cell;
        use(name, *cell);
    }
}

/// One line "name,value" for each pair.
void mrPairsToTable(mrUStream& stream, const mrList<mrString>& list);
void mrPairsToTable(mrCStream& stream, const mrList<mrString>& list);
