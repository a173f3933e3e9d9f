#include "zylch.h"

// A build that has to come out the same on every day gives its own date.
#ifndef ZYL_BUILD_DATE
#define ZYL_BUILD_DATE __DATE__
#endif

const ZylLibraryVersion* zylchGetLibVersion() {
    // No comma in any of the texts: they end up in comma-separated listings.
    static constexpr ZylLibraryVersion version = {"zylCH", "10.0.0", ZYL_BUILD_DATE};
    return &version;
}
