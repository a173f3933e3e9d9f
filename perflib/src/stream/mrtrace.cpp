#include "stream/mrtrace.h"

#include "stream/mrostream.h"

void mrTrace::line(const char* verb, const mrString& name) {
    const mrString line = m_indent + "*****" + verb + name + "\n";
    m_text += line;
    g_ostrm << MSG_TRACE << line;
    if (static_cast<int>(g_ostrm.msgLevel()) <= g_ostrm.outLevel()) {
        g_ostrm.flush();
    }
    g_ostrm << MSG_END;
}

void mrTrace::traceIn(mrString name) {
    m_indent << '*';
    line(" trace into   ", name);
    insert(begin(), name);
}

void mrTrace::traceOut(mrString name) {
    line(" trace out of ", name);
    for (auto open = begin(); open != end(); ++open) {
        m_indent = m_indent.substr(0, m_indent.length() - 1);
        if (*open == name) {
            for (++open; begin() != open;) {
                erase(begin());
            }
            return;
        }
    }
}

void mrTrace::leaveTo(int depth) {
    for (int excess = size() - depth; excess > 0; --excess) {
        erase(begin());
        m_indent = m_indent.substr(0, m_indent.length() - 1);
    }
}

mrString mrTrace::getCurName() const { return empty() ? mrString() : *begin(); }

void mrTrace::clearTexts() {
    m_text = "";
    m_indent = "";
}
