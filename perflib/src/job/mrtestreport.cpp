#include "job/mrtestreport.h"

#include "job/mrtest.h"
#include "stream/mrfilenames.h"
#include "stream/mrostream.h"
#include "stream/mrreportformat.h"

namespace {

constexpr int Right = mrReportFormat::RightEdge;

/// Tests have lines round their blocks from the level on that shows what stands between them.
bool blocksAreBoxed() { return g_ostrm.outLevel() > MSG_WARN; }

const char* className(const mrString& testName) {
    return testName.beginsWith("__mr") ? "Information" : "Timing";
}

const char* statusMark(bool changed) { return changed ? "?" : "-"; }

/// The fields of a summary line after the first two, which stand there already when the test ends.
mrString summaryFields(const mrTest& test, const mrString& result) {
    mrString line = "-,";
    line << statusMark(test.m_bad87) << ",-," << statusMark(test.m_badSSX) << "," << test.m_info.m_suite
         << "," << test.m_date.seconds() << "," << test.m_fileName << "," << result << ","
         << mrFileNames::m_exePath.getFileName() << "\n";
    return line;
}

}  // namespace

mrReportTestTitle::mrReportTestTitle(const mrTest* test) {
    const auto addTriple = [this](const char* name, const mrString& value, const mrString& right) {
        append(name);
        append(value);
        append(right);
    };
    addTriple("Function", test->m_name, mrDate::text(test->m_date.startTime()));
    if (g_ostrm.outLevel() >= MSG_WARN) {
        addTriple("Test", test->m_info.m_suite, "");
        addTriple("Source", test->m_fileName, "");
    }
    if (!test->m_info.m_group.empty()) {
        addTriple("Description", test->m_info.m_group, "");
    }
}

mrOStream& operator<<(mrOStream& stream, const mrReportTestTitle& report) {
    mrReportFormat format(4, {1, 12, 14, Right, Right, Right});
    format.setBox(true);
    const bool boxed = blocksAreBoxed();
    if (boxed) {
        stream << format.firstLine();
    }
    for (auto cell = report.begin(); cell != report.end(); ++cell) {
        const mrString& name = *cell;
        const mrString& value = *++cell;
        stream << format.getLine(name, ":", value, *++cell);
        if (!boxed) {
            break;
        }
    }
    if (boxed) {
        stream << format.lastLine();
    }
    stream.flush();
    return stream;
}

mrUStream& operator<<(mrUStream& stream, const mrReportTestTitle& report) {
    auto value = report.begin();
    ++value;
    stream << *value << "," << className(*value) << ",";
    stream.flush();
    return stream;
}

mrReportTestResult::mrReportTestResult(const mrTest* test) {
    if (test == nullptr) {
        m_line =
            "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time "
            "(sec.),SrcName,Result,ExeName\n";
        return;
    }
    m_result = mrResultWord(test->m_result);
    m_name = test->m_name;
    m_date = mrDate::text(test->m_date.stopTime());
    m_line = summaryFields(*test, m_result);
    if (test->m_result == MR_NOT_RUN) {
        m_message = "--No measurements have been done\n";
    }
}

mrOStream& operator<<(mrOStream& stream, const mrReportTestResult& report) {
    mrReportFormat format(3, {1, 14, Right, Right, Right, Right});
    format.setBox(true);
    const bool boxed = blocksAreBoxed();
    stream << MSG_ERR << (boxed ? format.firstLine() : "")
           << format.getLine(mrString("-") + report.m_result, report.m_name, report.m_date)
           << (boxed ? format.lastLine() : "") << MSG_END_FLUSH;
    return stream;
}

mrUStream& operator<<(mrUStream& stream, const mrReportTestResult& report) {
    stream << report.m_line;
    stream.flush();
    return stream;
}
