// The parameters of a test, and where their values are read from.

#include "job/mrtest.h"
#include "stream/mristream.h"

bool mrTest::setIniSection(mrString name) {
    mrIniFile* ini = g_istrm.iniFile();
    if (m_pressing && ini != nullptr && !ini->sectionExist(name)) {
        return false;
    }
    if (g_istrm.iniWrite()) {
        ini->write(name);
    }
    g_istrm.setIniSection(name);
    return true;
}

void mrTest::regCacheParm(mrIterator<int>& size, mrObject* object, mrCacheCheck check) {
    if (m_cache && m_pCacheIter == nullptr) {
        m_pCacheIter = std::make_unique<mrCacheIteratorInt>(size, object, check);
        m_parms.append(m_pCacheIter.get());
    } else {
        m_parms.append(&size);
    }
}

void mrTest::parmsFromIstrm() {
    for (mrParameter* parm : m_parms) {
        parm->fromIStream(g_istrm);
    }
}
