#pragma once

#include "machine/mrsignal.h"
#include "stream/mrostream.h"
#include "stream/mrtrace.h"

// What the sources of mrTest share.

/// A line at the level that every console shows.
inline void writeTestError(const mrString& text) { g_ostrm << MSG_ERR << text << MSG_END; }

/// Runs a step that is the suite's own: it calls the library, and may be given up.
template <class Step>
auto leavableStep(const char* name, Step step) {
    return mrTraced(name, [&] {
        const tsSignal::Leavable leavable;
        return step();
    });
}
