#include "text/mrparse.h"

#include <cstring>

mrParse::mrParse(mrString text) : m_text(text) {}

void mrParse::initParse(mrString separators) {
    m_pos = 0;
    m_quotes = false;
    m_separators = "";
    for (int i = 0; i < separators.length(); ++i) {
        if (separators[i] == '"') {
            m_quotes = true;
        } else {
            m_separators << separators[i];
        }
    }
}

bool mrParse::isSeparator(int index) const {
    return std::memchr(m_separators.c_str(), m_text[index],
                       static_cast<std::size_t>(m_separators.length())) != nullptr;
}

int mrParse::skip(int pos, bool separators) const {
    while (pos < m_text.length() && isSeparator(pos) == separators) {
        ++pos;
    }
    return pos;
}

bool mrParse::nextWord(mrString& word) {
    if (m_quotes) {
        return nextWord_quote(word);
    }
    word = "";
    const int start = skip(m_pos, true);
    if (start == m_text.length()) {
        return false;
    }
    m_pos = skip(start, false);
    word = m_text.substr(start, m_pos - start);
    return true;
}

bool mrParse::nextWord_quote(mrString& word) {
    // An empty quoted word is passed over, so the search goes on until a word holds something.
    for (;;) {
        word = "";
        int pos = skip(m_pos, true);
        if (pos == m_text.length()) {
            return false;
        }
        if (m_text[pos] == '"') {
            word = quotedWord(pos);
        } else {
            const int start = pos;
            while (pos < m_text.length() && m_text[pos] != '"' && !isSeparator(pos)) {
                ++pos;
            }
            word = m_text.substr(start, pos - start);
        }
        m_pos = pos;
        if (!word.empty()) {
            return true;
        }
    }
}

mrString mrParse::quotedWord(int& pos) const {
    mrString word;
    int start = ++pos;
    for (; pos < m_text.length(); ++pos) {
        if (m_text[pos] != '"') {
            continue;
        }
        word += m_text.substr(start, pos - start);
        start = ++pos;
        if (pos == m_text.length() || m_text[pos] != '"') {
            return word;
        }
        // The second quote of a pair stands for itself and opens the next stretch.
    }
    return word + m_text.substr(start, pos - start);
}

int mrParse::parse(mrStringList& list, mrString separators) {
    initParse(separators);
    list.clear();
    int count = 0;
    for (mrString word; nextWord(word); ++count) {
        list.append(word);
    }
    return count;
}

int mrParse::parse(mrString& a, mrString& b, mrString separators) {
    mrString dropped;
    return parse(a, b, dropped, separators);
}

int mrParse::parse(mrString& a, mrString& b, mrString& c, mrString separators) {
    mrStringList words;
    const int count = parse(words, separators);
    auto word = words.begin();
    for (mrString* target : {&a, &b, &c}) {
        *target = "";
        if (word != words.end()) {
            *target = *word;
            ++word;
        }
    }
    return count;
}
