#include <fcntl.h>
#include <unistd.h>

#include <exception>

#include "machine/mrfloat.h"
#include "machine/mrreserve.h"
#include "parameter/mrmemory.h"
#include "session/mr.h"
#include "stream/mrtrace.h"

namespace {

/// A standard descriptor that was closed at the start would be given to the first file that is opened, and
/// the console's lines would go into it.
void openStandardDescriptors() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (fcntl(number, F_GETFD) < 0) {
            open("/dev/null", O_RDWR);  // gets the lowest number that is free: this one
        }
    }
}

/// Goes before every initialiser, also those of the libraries.
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() = openStandardDescriptors;

void runSession(int argc, char** argv) {
    try {
        pSession->run(argc, argv);
    } catch (const mrException& exception) {
        g_ostrm << MSG_ERR << "-- Run ended by " << exception.msg() << "\n" << MSG_END_FLUSH;
    } catch (const std::exception& exception) {
        g_ostrm << MSG_ERR << "-- Run ended by " << exception.what() << "\n" << MSG_END_FLUSH;
    }
}

}  // namespace

/// Always 0: what failed stands in the reports, and a batch of runs is not to stop at one of them.
int main(int argc, char** argv) {
    mrFlushToZero();
    mrKeepReserve();
    g_trace.traceIn("main");
    if (pSession == nullptr) {
        pSession = new mrSession;
    }
    runSession(argc, argv);
    mrFreeAll();
    g_trace.traceOut("main");
    return 0;
}
