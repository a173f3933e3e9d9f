#pragma once

#include "text/mrstring.h"

class mrOStream;
class mrTest;
class mrUStream;

// The report of one test, made like those of report/mrreport.h.

/// The head of a test: name, value and right-hand item in turn.
class mrReportTestTitle : public mrList<mrString> {
  public:
    explicit mrReportTestTitle(const mrTest* test);
};

mrOStream& operator<<(mrOStream& stream, const mrReportTestTitle& report);
/// The first fields of a line of the summary; the result adds the others.
mrUStream& operator<<(mrUStream& stream, const mrReportTestTitle& report);

/// The outcome of a test. Without a test: the column line of the summary.
class mrReportTestResult {
  public:
    explicit mrReportTestResult(const mrTest* test);

    mrString m_result;
    mrString m_name;
    mrString m_date;
    mrString m_message;  ///< no layout prints it
    mrString m_line;     ///< the rest of a line of the summary
};

mrOStream& operator<<(mrOStream& stream, const mrReportTestResult& report);
mrUStream& operator<<(mrUStream& stream, const mrReportTestResult& report);
