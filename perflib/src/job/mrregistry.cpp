// What initialisers at file scope register. They run before any global of the framework is built, so
// everything here is initialised by the compiler, and objects are made on first use.

#include "job/mrregistry.h"

namespace {

template <class T>
T& made(T*& registry) {
    if (registry == nullptr) {
        registry = new T;
    }
    return *registry;
}

}  // namespace

constinit mrSession* pSession = nullptr;
constinit mrTestList* pTestList = nullptr;
constinit mrList<mrParameter*>* g_pParmList = nullptr;
void (*s_parmFunc)() = nullptr;
constinit mrString* pCmdLine = nullptr;
constinit mrStringList* g_pHotList = nullptr;
constinit bool qKeys = true;
void (*zylEnvironment)() = nullptr;
constinit mrList<ZylVersionFunc>* zylVersionList = nullptr;
void (*initTimingMethod)(mrTool& tool) = nullptr;

int mrRegSession(mrSession* session) {
    pSession = session;
    return 1;
}

int mrRegTest(mrTest* test) {
    made(pTestList).append(test);
    return 1;
}

int mrRegParm(mrParameter& parm) {
    made(g_pParmList).append(&parm);
    return 1;
}

int mrRegParmFunc(void (*func)()) {
    s_parmFunc = func;
    return 1;
}

int mrRegCmdLine(mrString text) {
    made(pCmdLine) << " " << text;
    return 1;
}

int mrRegHotFunction(mrString name) {
    made(g_pHotList).append(name);
    return 1;
}

int mrRegQKeys() {
    qKeys = true;
    return 1;
}

int mrRegZylEnvironment(void (*environment)()) {
    zylEnvironment = environment;
    return 1;
}

int mrRegZylVersion(ZylVersionFunc getVersion) {
    made(zylVersionList).append(getVersion);
    return 1;
}

int mrRegTimingMethod(void (*setUp)(mrTool& tool)) {
    initTimingMethod = setUp;
    return 1;
}
