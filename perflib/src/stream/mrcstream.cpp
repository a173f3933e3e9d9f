#include "stream/mrcstream.h"

#include <climits>
#include <string>
#include <unordered_map>

#include "stream/mrostream.h"

namespace {

/// Two line indexes, counted from 0 in the record.
struct LinePair {
    int first = INT_MAX;
    int second = 0;
};

/// What makes two lines identical, as one key: the identifying cells, each closed by a NUL, which no cell
/// comparison looks past.
std::string lineKey(mrStringList::const_iterator* cells, int colms) {
    std::string key;
    for (int i = 0; i < colms; ++i) {
        key.append(cells[i]->c_str());
        key.push_back('\0');
        ++cells[i];
    }
    return key;
}

}  // namespace

void mrCStream::setNextColm(mrString text) {
    if (m_nextColm < MaxColms) {
        m_colm[m_nextColm++] = text;
    }
}

void mrCStream::setColm(int index, mrString text) {
    if (index < MaxColms) {
        m_colm[index] = text;
    }
}

bool mrCStream::getColm(int index, mrString& text) const {
    if (index >= MaxColms) {
        return false;
    }
    text = m_colm[index];
    return true;
}

void mrCStream::tableOut(int n) {
    if (empty()) {
        return;
    }
    const int count = n == 0 ? m_nextColm : n;
    mrString line;
    for (int i = 0; i < count; ++i) {
        const bool filled = i < m_nextColm && i < MaxColms && !m_colm[i].empty();
        line << (i > 0 ? "," : "") << (filled ? m_colm[i] : mrString("-"));
    }
    write(line + "\n");
    flush();
}

void mrCStream::tableFlush() {
    for (mrString& colm : m_colm) {
        colm = "";
    }
    m_nextColm = 0;
}

void mrCStream::lineOut(int n) {
    tableOut(n);
    ++m_lineCount;
    if (m_identicalColms != 0) {
        keepLine(m_identical);
    }
    tableFlush();
}

void mrCStream::keepLine(Columns& lists) const {
    for (int i = 0; i < MaxColms; ++i) {
        lists[i].append(m_colm[i]);
    }
}

void mrCStream::clearLines(Columns& lists) {
    for (mrStringList& list : lists) {
        list.clear();
    }
}

void mrCStream::linePostpone() {
    keepLine(m_postponed);
    tableFlush();
}

void mrCStream::linePostponeOut(int n) {
    while (!m_postponed[0].empty()) {
        for (int i = 0; i < MaxColms; ++i) {
            m_colm[i] = *m_postponed[i].begin();
            m_postponed[i].erase(m_postponed[i].begin());
        }
        m_nextColm = n;
        lineOut(n);
    }
}

void mrCStream::identicalLinesStart(int n) {
    m_identicalColms = n < MaxColms ? n : MaxColms;
    clearLines(m_identical);
}

bool mrCStream::identicalLinesCheck() const {
    mrStringList::const_iterator cells[MaxColms];
    for (int i = 0; i < MaxColms; ++i) {
        cells[i] = m_identical[i].begin();
    }
    // Of all equal pairs the one whose first line comes first is told, and of its partners the nearest.
    std::unordered_map<std::string, LinePair> lines;
    LinePair found;
    const int count = m_identical[0].size();
    for (int i = 0; i < count; ++i) {
        auto [line, isNew] = lines.try_emplace(lineKey(cells, m_identicalColms), LinePair{i, 0});
        if (!isNew && line->second.first < found.first) {
            found = {line->second.first, i};
        }
    }
    if (found.first == INT_MAX) {
        return false;
    }
    const int first = m_lineCount - count + 1;
    g_ostrm << MSG_WARN << " Performance table note:\n"
            << " Lines " << mrText(first + found.first) << " & " << mrText(first + found.second)
            << " have identical parameters\n"
            << MSG_END_FLUSH;
    return true;
}

bool mrCStream::identicalLinesStop() {
    if (m_identicalColms == 0 || m_identical[0].empty()) {
        return false;
    }
    const bool found = identicalLinesCheck();
    identicalLinesStart(0);
    return found;
}

mrCStream& operator<<(mrCStream& stream, mrString text) {
    if (text == "\n") {
        stream.lineOut(0);
    } else {
        stream.setNextColm(text);
    }
    return stream;
}
