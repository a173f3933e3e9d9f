#include "job/mrtestlist.h"
#include "report/mrreport.h"
#include "stream/mrreportformat.h"
#include "stream/mrreportpairs.h"

mrReportEnd::mrReportEnd(const mrTestList& tests) {
    const auto& counts = tests.m_counts;
    const int badFails = counts[MR_ACCURACY_FAIL] + counts[MR_DATA_FAIL] + counts[MR_LIB_FAIL];
    const int fails = badFails + counts[MR_EXCEPTION];
    const int badNotes = counts[MR_BAD_ACCURACY] + counts[MR_DATA_NOTE] + counts[MR_LIB_NOTE];
    const int notes = badNotes + counts[MR_BAD_STATUS];
    const auto addPair = [this](const char* name, const mrString& value) {
        append(name);
        append(value);
    };
    addPair(".Number of tests", mrText(tests.m_runCount));
    addPair(".Successes      ", mrText(counts[MR_OK]));
    addPair(".Failures       ", mrText(fails + notes));
    addPair("...Fails        ", mrText(fails));
    addPair(".....-FAIL      ", mrText(badFails));
    addPair(".....-EXCPTFAIL ", mrText(counts[MR_EXCEPTION]));
    addPair("...Notes        ", mrText(notes));
    addPair(".....-NOTE      ", mrText(badNotes));
    addPair(".....-BADSTSWRN ", mrText(counts[MR_BAD_STATUS]));
    // Tests that end as plain "WRN" or "FAIL" stand here, on purpose: no line above is theirs.
    addPair("...Undefined    ", mrText(tests.m_runCount - counts[MR_OK] - fails - notes));
    addPair(".Total time     ", mrReportFormat::getTimeStr(tests.m_date.seconds()));
}

/// Sets no level of its own; the caller's MSG_END closes the message.
mrOStream& operator<<(mrOStream& stream, const mrReportEnd& report) {
    constexpr int right = mrReportFormat::RightEdge;
    mrReportFormat format(3, {1, 33, 34, right, right, right});
    stream << format.firstLine() << format.getLine("MR Summary");
    mrForEachPair(report, [&](const mrString& name, const mrString& value) {
        stream << format.getLine(name + " : " + value);
    });
    stream << format.lastLine();
    stream.flush();
    return stream;
}

mrUStream& operator<<(mrUStream& stream, const mrReportEnd& report) {
    stream << "END_DATA\n";
    mrPairsToTable(stream, report);
    return stream;
}

mrCStream& operator<<(mrCStream& stream, const mrReportEnd& report) {
    stream.setNextColm("END_DATA");
    stream.lineOut(0);
    mrPairsToTable(stream, report);
    return stream;
}
