#pragma once

#include <ctime>

#include "zylcore.h"

/// What the tick frequency is measured with; tests put a script in its place.
struct mrRateClocks {
    Zyl64u (*ticks)();
    std::time_t (*seconds)();  ///< the time of day, which may be set while it is read
    double (*steady)();        ///< seconds of a clock that can't be set and goes on while a machine sleeps
};

extern const mrRateClocks mrSystemClocks;

/// MHz of the tick counter, by two full seconds of the time of day; takes two to three seconds. A second that
/// the steady clock sees longer or shorter by more than 1% is measured again, a few times at most. If none is
/// good the least disturbed one stands, and a line of level MSG_WARN on g_ostrm says so.
int mrMeasureMHz(const mrRateClocks& clocks);
