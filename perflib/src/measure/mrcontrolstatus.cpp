#include "measure/mrcontrolstatus.h"

#include "machine/mrfloat.h"
#include "stream/mrostream.h"

void mrControlStatus::initCtrlStatus() {
    g_ctrl87.init();
    g_ssx.init();
    if (is_W_flagUsed) {
        mrUnmaskFloatExceptions();
    }
}

bool mrControlStatus::badCtrlStatus(bool& bad87, bool& badSSX) {
    bad87 = g_ctrl87.badStatus();
    badSSX = g_ssx.badStatus();
    return bad87 || badSSX;
}

void mrControlStatus::clearCtrlStatus() {
    g_ctrl87.clear();
    g_ssx.clear();
}

void mrControlStatus::printCtrlStatus(bool bad87, bool badSSX) {
    if (bad87) {
        g_ostrm << MSG_WARN << "-- Status    87: " << g_ctrl87.strSW() << "\n" << MSG_END;
    }
    if (badSSX) {
        g_ostrm << MSG_WARN << "-- Status    SSX: " << g_ssx.strExceptionState() << "\n" << MSG_END;
    }
}

void mrControlStatus::printBadCtrlStatus() {
    bool bad87 = false;
    bool badSSX = false;
    badCtrlStatus(bad87, badSSX);
    printCtrlStatus(bad87, badSSX);
}
