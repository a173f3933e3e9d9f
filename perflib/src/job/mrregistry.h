#pragma once

#include "job/mrtestlist.h"
#include "machine/mrlibrary.h"

class mrSession;

// Registration, from initialisers at file scope, before any global of the framework is built. Each returns 1,
// so that it can initialise a variable; what it needs is made on first use.

/// For a suite with a session class of its own.
int mrRegSession(mrSession* session);
/// The list owns the test from here on.
int mrRegTest(mrTest* test);
int mrRegParm(mrParameter& parm);
/// The function registers the common parameters when the session asks for them.
int mrRegParmFunc(void (*func)());
/// Adds to the command line that counts when none is given: for a suite that is a program of its own.
int mrRegCmdLine(mrString text);
int mrRegHotFunction(mrString name);
/// For a suite that relies on the keys -q and -Q, which are there without it too.
int mrRegQKeys();
int mrRegZylEnvironment(void (*environment)());
int mrRegZylVersion(ZylVersionFunc getVersion);
/// For a suite with a method of its own as default.
int mrRegTimingMethod(void (*setUp)(mrTool& tool));

extern mrSession* pSession;
extern mrTestList* pTestList;
extern mrList<mrParameter*>* g_pParmList;
extern void (*s_parmFunc)();
extern mrString* pCmdLine;
extern mrStringList* g_pHotList;
extern bool qKeys;
extern void (*initTimingMethod)(mrTool& tool);
