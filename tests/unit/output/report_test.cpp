#include <gtest/gtest.h>

#include "mr.h"
#include "output/mrcstream.h"
#include "output/mrinventory.h"
#include "output/mrreport.h"
#include "output/mrreportformat.h"
#include "support/captured_output.h"
#include "support/recorded_processor.h"
#include "timing/mrhost.h"

namespace {

/// What a report writes to a stream of type Stream.
template <class Stream, class Report>
std::string written(const Report& report) {
    MemoryFile file;
    Stream stream;
    stream.append(file.stream());
    stream << report;
    return file.text();
}

/// A line of a box, 79 columns: `text` behind the left bar, `right` before the right one.
std::string row(const std::string& text, const mrString& right = "") {
    return "|" + text + std::string(77 - text.size() - str(right).size(), ' ') + str(right) + "|\n";
}

std::string box(const std::string& rows) {
    const std::string rule = "+" + std::string(77, '-') + "+\n";
    return rule + rows + rule;
}

TEST(ReportFormat, PlacesItems) {
    const std::string wide(89, 'x');
    mrReportFormat format(3, {1, 11, mrReportFormat::RightEdge, 0, 0, 0});
    format.setBox(true);
    // A text too long for the line pushes the frame out; one too long for the right edge is dropped.
    EXPECT_EQ(str(format.getLine(wide.c_str())), "| " + wide + "\n");
    EXPECT_EQ(str(format.getLine("elevenchars", ":", wide.c_str())), row(" elevenchars :"));
}

TEST(Report, TitleDescribesTheMachine) {
    const mrTestList tests;
    const ProcessorRecord named{"GenuineZorva", "Zorva(R) CPU @ 2.40GHz", 1, 0x80000004, {}};
    const ProcessorRecord old{"GenuineZorva", "", 1, 0, {{1, 0, {0x435, 0, 0, 3}}}};
    const int processors = mrGetNumOfProcessors();
    const std::string count = processors > 1 ? std::to_string(processors) + "x" : "";
    const std::tuple<const ProcessorRecord&, int, int, std::string> rows[] = {
        {named, 2400, 6 << 20, "Zorva(R) CPU @ 2.40GHz, " + count + "2.4 GHz, Max cache size 6144 K"},
        {named, 1000, 0, "Zorva(R) CPU @ 2.40GHz, " + count + "1 GHz, "},
        {old, 999, 1500, "Unknown CPU, " + count + "999 MHz, Max cache size 1 K"},
    };
    mrStringList* const librariesBefore = std::exchange(g_pLibInfoList, nullptr);
    EXPECT_TRUE(mrRegLibInfo("first, 1.0, Feb  5 2022"));
    EXPECT_FALSE(mrRegLibInfo("first, 1.0, Feb  5 2022"));
    static int cacheSize;
    zyl_GetMaxCacheSizeB = [](int* size) {
        *size = cacheSize;
        return 0;
    };
    for (const auto& [record, mhz, cacheBytes, cpu] : rows) {
        const RecordedProcessor processor(record);
        mrCpuTicker::m_freqMHz = mhz;
        cacheSize = cacheBytes;
        const mrReportTitle title(tests);
        const mrString start = mrDate::text(tests.m_date.startTime());
        EXPECT_EQ(written<mrUStream>(title),
                  "CPU," + cpu + "\nOS," + str(os.text()) + "\nComputer," + str(host.text()) +
                      "\nLibrary,first, 1.0, Feb  5 2022\nStart," + str(start) + "\n");
        CapturedOutput output(MSG_ERR);
        g_ostrm << title;
        EXPECT_EQ(output.text(),
                  box(row(" CPU      : " + cpu) + row(" OS       : " + str(os.text())) +
                      row(" Computer : " + str(host.text())) + row(" Library  : first, 1.0, Feb  5 2022") +
                      row(" Test     : Timing") + row("", start)));
    }
    delete std::exchange(g_pLibInfoList, librariesBefore);
    zyl_GetMaxCacheSizeB = nullptr;
    mrCpuTicker::m_freqMHz = 0;
}

TEST(Report, TestIsALineOfTheSummary) {
    mrTest test{nullptr, nullptr, "zylsFind_8u", "perf/p_chfind_ia", "TimsFind//ZY_REG"};
    test.m_result = MR_DATA_FAIL;
    test.m_bad87 = true;
    EXPECT_EQ(
        written<mrUStream>(mrReportTestResult(nullptr)),
        "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,Result,ExeName\n");
    EXPECT_EQ(written<mrUStream>(mrReportTestTitle(&test)), "zylsFind_8u,Timing,");
    EXPECT_EQ(written<mrUStream>(mrReportTestResult(&test)), "-,?,-,-,TimsFind,0,p_chfind_ia,DATAFAIL,\n");
    test.m_badSSX = true;
    EXPECT_EQ(written<mrUStream>(mrReportTestResult(&test)), "-,?,-,?,TimsFind,0,p_chfind_ia,DATAFAIL,\n");
}

/// Of each result twice as many as of the one before, so that no two sums are the same.
TEST(Report, EndCountsResults) {
    mrTestList tests;
    for (int result = MR_NOT_RUN; result < MR_RESULT_COUNT; ++result) {
        for (int i = 0; i < 1 << result; ++i) {
            tests.plus(result);
        }
    }
    const mrReportEnd end(tests);
    const std::string table =
        "END_DATA\n.Number of tests,4095\n.Successes      ,2\n.Failures       ,1980\n...Fails        ,1920\n"
        ".....-FAIL      ,896\n.....-EXCPTFAIL ,1024\n...Notes        ,60\n.....-NOTE      ,52\n"
        ".....-BADSTSWRN ,8\n...Undefined    ,2113\n.Total time     ,00:00:00\n";
    EXPECT_EQ(written<mrUStream>(end), table);
    EXPECT_EQ(written<mrCStream>(end), table);
    CapturedOutput output(MSG_ERR);
    g_ostrm << MSG_ERR << end << MSG_END;
    const std::string head = box(row(" MR Summary") + row(" .Number of tests : 4095"));
    EXPECT_EQ(output.text().substr(0, 240), head.substr(0, 240));
    EXPECT_EQ(str(mrReportFormat::getTimeStr(363661)), "101:01:01");
}

}  // namespace
