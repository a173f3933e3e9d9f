#include "stream/mrostream.h"

void mrOStream::setMsgLevel(MessageLevel level) {
    m_msgStack.insert(m_msgStack.begin(), m_msgLevel);
    m_msgLevel = level;
}

void mrOStream::restoreMsgLevel() {
    if (m_msgStack.empty()) {
        m_msgLevel = MSG_ERR;
        return;
    }
    m_msgLevel = *m_msgStack.begin();
    m_msgStack.erase(m_msgStack.begin());
}

void mrOStream::restoreMsgDepth(int depth) {
    for (int excess = msgDepth() - depth; excess > 0; --excess) {
        restoreMsgLevel();
    }
}

bool mrOStream::beginMessage(MessageLevel level) {
    if (static_cast<int>(level) > m_outLevel) {
        return false;
    }
    setMsgLevel(level);
    return true;
}

void mrOStream::endMessageFlush() {
    endMessage();
    flush();
}

void mrOStream::send(const mrString& text) {
    if (passes()) {
        write(text);
    }
}

mrOStream& operator<<(mrOStream& stream, mrString text) {
    stream.send(text);
    return stream;
}

mrOStream& operator<<(mrOStream& stream, const char* text) { return stream << mrString(text); }

mrOStream& operator<<(mrOStream& stream, MessageLevel level) {
    switch (level) {
        case MSG_END:
            stream.endMessage();
            break;
        case MSG_END_FLUSH:
            stream.endMessageFlush();
            break;
        default:
            stream.setMsgLevel(level);
    }
    return stream;
}
