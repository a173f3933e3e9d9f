#pragma once

#include "text/mrstring.h"

/// The layout of a box of text, 79 columns wide: six items at fixed positions on a line.
class mrReportFormat {
  public:
    static constexpr int NumItems = 6;
    /// The position of items that end at the right frame.
    static constexpr int RightEdge = -79;

    /// `colms` only notes how many of the positions the report uses.
    mrReportFormat(int colms, const int (&positions)[NumItems]);

    mrString firstLine();
    mrString lastLine();
    static mrString sepLine();
    mrString getLine(mrString a, mrString b = "", mrString c = "", mrString d = "", mrString e = "",
                     mrString f = "") const;
    void setBox(bool on) { m_box = on; }

    void setStartLine(mrString& line) const;
    void setEndLine(mrString& line) const;
    /// Places `text` at column `pos`, or one blank after a line that has got there already. A negative `pos`
    /// aligns right: the text ends before column -pos - 1; one that is too long for that is dropped.
    static void setItem(mrString& line, mrString text, int pos);
    static void setItemLeft(mrString& line, mrString text, int pos);
    /// Pads with blanks up to `pos`; false if the line is longer.
    static bool setOffsetLine(mrString& line, int pos);
    /// Characters after the last line end.
    static int getLastLen(mrString line);
    /// Cuts a piece of at most `limit` characters off the front of `text`, at a blank, which goes; a longer
    /// first word is cut off whole. False, with both left alone, if `text` fits; false, with all of it in
    /// `piece`, if it holds no blank.
    /// For reports of suites with items longer than their column; the program's have none.
    static bool getPieceItem(mrString& text, mrString& piece, int limit);
    /// "hh:mm:ss", the hours without limit.
    static mrString getTimeStr(int seconds);

  private:
    bool m_box = false;  ///< lines are framed by "|"
    [[maybe_unused]] int m_numColms;
    int m_colmPos[NumItems];
};
