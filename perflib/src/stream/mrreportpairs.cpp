#include "stream/mrreportpairs.h"

void mrPairsToTable(mrUStream& stream, const mrList<mrString>& list) {
    mrForEachPair(
        list, [&](const mrString& name, const mrString& value) { stream << name << "," << value << "\n"; });
    stream.flush();
}

void mrPairsToTable(mrCStream& stream, const mrList<mrString>& list) {
    mrForEachPair(list, [&](const mrString& name, const mrString& value) {
        stream.setNextColm(name);
        stream.setNextColm(value);
        stream.lineOut(0);
    });
}
