#pragma once

#include "text/mrstring.h"

/// Cuts a text into words at separator characters. A double quote among the separators switches quoting on: a
/// quoted word may hold separators, "" inside it is one quote, and a quote that is never closed takes the
/// rest. No word is ever empty.
class mrParse {
  public:
    explicit mrParse(mrString text);

    void initParse(mrString separators);
    bool isSeparator(int index) const;
    /// The next word; false when none is left.
    bool nextWord(mrString& word);

    /// All words; returns their number, which may exceed the number of targets. Targets without a word end
    /// empty.
    int parse(mrStringList& list, mrString separators);
    int parse(mrString& a, mrString& b, mrString separators);
    int parse(mrString& a, mrString& b, mrString& c, mrString separators);

  private:
    bool nextWord_quote(mrString& word);
    mrString quotedWord(int& pos) const;
    /// The first index from `pos` on that is a separator, or is none; the length at the end.
    int skip(int pos, bool separators) const;

    mrString m_text;
    mrString m_separators;
    int m_pos = 0;
    bool m_quotes = false;
};
