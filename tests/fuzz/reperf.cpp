/// "reperf.txt" as the suite of regular expressions reads it, and a search by each of its patterns.

#include <unistd.h>

#include "fuzz.h"
#include "support/temp_folder.h"

// The suite itself: what it has read is kept for the life of the process and must be put back.
#include "p_chregexp_ib.cpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    static const bool there = chdir(folder.path().c_str()) == 0;
    static TimchRegExpFind test(nullptr, nullptr, nullptr, nullptr, "zylsRegExpFind_8u", SourceFile, "");
    mustHold(there);
    folder.file(fileName.c_str(), std::string(data, data + size));
    inited = false;
    test.beginTest();
    if (!test.canStart()) {
        return 0;
    }
    for (test.m_first = true; test.canContinue(); test.m_first = false) {
        const int status = tcall_zylsRegExpFind_8u();
        mustHold(status != 0 || (NumFind >= 0 && NumFind <= Capacity));
        test.parmsToOstrm();
        test.flushData();
    }
    test.flushData();
    return 0;
}
