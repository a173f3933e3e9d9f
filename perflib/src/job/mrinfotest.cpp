#include "job/mrinfotest.h"

#include "machine/mrhost.h"

void __mrInfoTest::loopData() {
    g_ostrm << MSG_ERR;
    printInformation();
    g_ostrm << MSG_END_FLUSH;
    m_currentResult = MR_OK;
}

void __mrOSTest::printInformation() { g_ostrm << " OS       : " << os.text() << "\n"; }

void __mrHostTest::printInformation() { g_ostrm << " Computer : " << host.text() << "\n"; }
