#include <exception>

#include "mr.h"
#include "output/mrtrace.h"
#include "test/mrmemory.h"
#include "timing/mrfloat.h"

namespace {

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
    g_trace.traceIn("main");
    if (pSession == nullptr) {
        pSession = new mrSession;
    }
    runSession(argc, argv);
    mrFreeAll();
    g_trace.traceOut("main");
    return 0;
}
