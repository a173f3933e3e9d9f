#pragma once

/// The suites as they are in the program, without a session that runs them.

#include <algorithm>

#include "p_common.h"
#include "session/mr.h"
#include "zy.h"

/// Binds the library and sets the common parameters up.
inline void bindSuites() {
    zySetZylEnvironment();
    mrBindFallbacks();
    zyl_Init();
    s_parmFunc();
}

/// A registered test, by the name of its function.
inline mrTest& findTest(const mrString& name) {
    return **std::find_if(pTestList->begin(), pTestList->end(),
                          [&](const mrTest* test) { return test->m_name == name; });
}
