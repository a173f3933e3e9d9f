#pragma once

#include "stream/mrfilelist.h"
#include "text/mrstates.h"

/// The table stream: assembles a line in at most 32 columns and writes it, comma separated, to all its files.
/// It holds back postponed lines, and keeps a record of one test's lines in order to find two with equal
/// parameters.
class mrCStream : public mrFileList {
  public:
    static constexpr int MaxColms = 32;

    /// Fills the next column; one past the last is dropped without a word.
    void setNextColm(mrString text);
    void setColm(int index, mrString text);
    bool getColm(int index, mrString& text) const;
    int nextColm() const { return m_nextColm; }
    /// Jumps, for instance to the first result column; columns never written print as "-".
    void setNextColmIndex(int index) { m_nextColm = index; }
    /// Lines written, for suites that add lines of their own.
    int lineCount() const { return m_lineCount; }
    /// For a run that goes on behind the lines of an earlier process.
    void setLineCount(int count) { m_lineCount = count; }

    /// Ends the line: writes its first `n` columns (0: as many as were filled), records it, empties the
    /// columns.
    void lineOut(int n);
    void tableOut(int n);
    void tableFlush();
    /// Holds the line back; linePostponeOut writes all lines held back, `n` columns each, in their order.
    void linePostpone();
    void linePostponeOut(int n);

    /// Begins a record of lines that are told apart by their first `n` columns; 0 switches it off.
    void identicalLinesStart(int n);
    /// Names the first pair of recorded lines with equal identifying columns on g_ostrm; false if there is
    /// none.
    bool identicalLinesCheck() const;
    /// Checks and ends the record.
    bool identicalLinesStop();

  private:
    using Columns = mrStringList[MaxColms];
    void keepLine(Columns& lists) const;
    static void clearLines(Columns& lists);

    mrString m_colm[MaxColms];
    int m_nextColm = 0;
    int m_lineCount = 0;
    int m_identicalColms = 0;
    Columns m_identical;
    Columns m_postponed;
};

/// Fills the next column, or ends the line for the text "\n".
mrCStream& operator<<(mrCStream& stream, mrString text);

extern mrCStream g_cstrm;  ///< the performance table
extern mrCStream g_qstrm;  ///< the parameter name table
extern mrCStream g_mstrm;  ///< kept for table kinds to come; nothing writes to it

/// Lines with the names of a test's parameters, which -q asks for.
class mrNameLines {
  public:
    static int m_nameMode;   ///< bits of mrNameMode
    static bool m_nameExit;  ///< -Q with -q: the run measures nothing
};

/// Runs `write`, which writes to g_cstrm, with the name table's files in the place of the table's own: the
/// one way by which lines get there.
template <class Write>
void mrToNameTable(Write write) {
    g_cstrm.swap(g_qstrm);
    write();
    g_cstrm.swap(g_qstrm);
}
