#include "job/mrtestlist.h"
#include "report/mrreport.h"
#include "stream/mrcstream.h"
#include "stream/mrinventory.h"
#include "text/mrstates.h"

namespace {

constexpr const char* EndOfRow = "\n";

/// Service functions, no subject of measurement. A name that merely holds such a word is left out as well, as
/// intended.
bool isServiceFunction(const mrString& name) {
    for (const char* word :
         {"Init", "Close", "Alloc", "Malloc", "Free", "PutVal", "RotateCenter", "ResizeShift", "DrawText"}) {
        if (name.found(word)) {
            return true;
        }
    }
    return (name.found("Get") && !name.found("Get_")) || (name.found("Set") && !name.found("Set_"));
}

}  // namespace

mrReportList::mrReportList(mrTestList& tests, mrConditions& conditions, int mode) {
    if (mode != MR_LIST_TESTS && createFuncList()) {
        addFunctions(tests, mode);
    }
    addTests(tests, conditions);
}

bool mrReportList::createFuncList() {
    if (g_pLibFuncList == nullptr) {
        return false;
    }
    for (const mrString& name : *g_pLibFuncList) {
        if (!isServiceFunction(name)) {
            append(name);
        }
    }
    return !empty();
}

/// Makes a row of every name on the list, or takes it off.
void mrReportList::addFunctions(mrTestList& tests, int mode) {
    auto name = begin();
    for (const char* title : {"Exist", "Function", EndOfRow}) {
        insert(name, title);
    }
    while (name != end()) {
        const bool tested = presentInTestList(*name, tests);
        if (tested && mode < MR_LIST_FUNCTIONS) {
            name = erase(name);
            continue;
        }
        insert(name, tested ? "+" : "-");
        insert(++name, EndOfRow);
    }
}

void mrReportList::addTests(mrTestList& tests, mrConditions& conditions) {
    for (const char* title : {"   #", "Function", "Test", "Source", EndOfRow}) {
        append(title);
    }
    int number = 0;
    for (mrTest* test : tests) {
        if (test->tobeRun(conditions)) {
            append(mrFormat("%4d", ++number));
            append(test->m_name);
            append(test->m_info.m_suite);
            append(test->m_fileName);
            append(EndOfRow);
        }
    }
}

bool mrReportList::presentInTestList(mrString name, mrTestList& tests) {
    for (const mrTest* test : tests) {
        if (test->m_name == name) {
            return true;
        }
    }
    return false;
}

mrOStream& operator<<(mrOStream& stream, const mrReportList& report) {
    if (!stream.passes()) {
        return stream;
    }
    for (const mrString& cell : report) {
        stream << cell << (cell == EndOfRow ? "" : "\t");
    }
    return stream;
}

mrUStream& operator<<(mrUStream& stream, const mrReportList& report) {
    const char* separator = "";
    for (const mrString& cell : report) {
        stream << separator << cell;
        separator = ",";
    }
    return stream;
}

mrCStream& operator<<(mrCStream& stream, const mrReportList& report) {
    for (const mrString& cell : report) {
        stream << cell;
    }
    return stream;
}
