#include "stream/mrinventory.h"

#include "machine/mrlibrary.h"
#include "stream/mrostream.h"

// Plain pointers, null before any initialiser runs: the suites register from theirs.
constinit mrStringList* g_pLibInfoList = nullptr;
constinit mrStringList* g_pLibFuncList = nullptr;

namespace {

/// The lists live to the end of the process.
mrStringList& madeList(mrStringList*& list) {
    if (list == nullptr) {
        list = new mrStringList;
    }
    return *list;
}

}  // namespace

bool mrRegLibInfo(mrString text) {
    mrStringList& list = madeList(g_pLibInfoList);
    for (const mrString& known : list) {
        if (known == text) {
            return false;
        }
    }
    list.append(text);
    return true;
}

bool mrRegLibFunc(mrString name) {
    if (name.empty()) {
        return false;
    }
    madeList(g_pLibFuncList).append(name);
    return true;
}

void reportStatus(int status) {
    g_ostrm << (status < 0 ? "--ZYL FAIL. " : "--ZYL NOTE. ") << "status = " << mrText(status) << ": "
            << zyl_GetStatusString(status) << "\n";
}
