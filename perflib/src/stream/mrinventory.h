#pragma once

#include "text/mrstring.h"

/// What is known of the libraries under test, and what they say. Both lists are made at the first
/// registration, so that registering works before the framework's own globals are built.
extern mrStringList* g_pLibInfoList;  ///< descriptions, shown in the title
extern mrStringList* g_pLibFuncList;  ///< function names, for -e+ and -e-

/// False if the text is on the list already.
bool mrRegLibInfo(mrString text);
/// False for an empty name. Duplicates are kept.
/// For suites, which know the names of their library; those of the program register none.
bool mrRegLibFunc(mrString name);

/// Prints "status = <n>: <text>" to g_ostrm, after the word for its kind.
void reportStatus(int status);
