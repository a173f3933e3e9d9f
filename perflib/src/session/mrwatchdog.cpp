#include "session/mrwatchdog.h"

#include <cstdlib>

#include "machine/mrstop.h"
#include "stream/mrostream.h"

void mrReadWatchdog() {
    const char* text = std::getenv("METRIG_WATCHDOG");
    if (text == nullptr) {
        return;
    }
    char* end = nullptr;
    const double seconds = std::strtod(text, &end);
    if (*end == '\0' && seconds >= 0.0) {
        mrStop::setWatchdog(seconds);
    } else {
        g_ostrm << MSG_ERR << "-- METRIG_WATCHDOG is no number of seconds: " << text << "\n" << MSG_END;
    }
}
