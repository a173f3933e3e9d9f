#pragma once

#include "text/mrstring.h"

class mrConditions;
class mrCStream;
class mrOStream;
class mrTestList;
class mrUStream;

/// A report gathers the text of one block of output; the type of the stream that it is written to selects the
/// layout: a box of text on mrOStream, a part of the summary table on mrUStream, table lines on mrCStream.
/// Reports are made on the stack, written and dropped.

/// The head of a run: processor, system, computer, libraries, start time. Names and values in turn.
class mrReportTitle : public mrList<mrString> {
  public:
    explicit mrReportTitle(const mrTestList& tests);
};

mrOStream& operator<<(mrOStream& stream, const mrReportTitle& report);
mrUStream& operator<<(mrUStream& stream, const mrReportTitle& report);
mrCStream& operator<<(mrCStream& stream, const mrReportTitle& report);

/// The counters at the end of a run. Names and values in turn.
class mrReportEnd : public mrList<mrString> {
  public:
    explicit mrReportEnd(const mrTestList& tests);
};

mrOStream& operator<<(mrOStream& stream, const mrReportEnd& report);
mrUStream& operator<<(mrUStream& stream, const mrReportEnd& report);
/// For a suite's session that closes the table with the counters.
mrCStream& operator<<(mrCStream& stream, const mrReportEnd& report);

/// The tests that the conditions select, after the library's functions that the mode (mrListMode) asks for.
/// A flat list of cells; a cell "\n" ends a row.
class mrReportList : public mrList<mrString> {
  public:
    mrReportList(mrTestList& tests, mrConditions& conditions, int mode);

  private:
    bool createFuncList();
    void addFunctions(mrTestList& tests, int mode);
    void addTests(mrTestList& tests, mrConditions& conditions);
    static bool presentInTestList(mrString name, mrTestList& tests);
};

mrOStream& operator<<(mrOStream& stream, const mrReportList& report);
/// For a suite's session that lists into the summary table.
mrUStream& operator<<(mrUStream& stream, const mrReportList& report);
mrCStream& operator<<(mrCStream& stream, const mrReportList& report);
