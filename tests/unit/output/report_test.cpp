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
    const struct {
        bool box;
        const char* items[3];
        std::string line;
    } rows[] = {
        {false, {"a", "b", ""}, "  a        b\n"},
        {true, {"", "", ""}, row("")},
        {true, {"elevenchars", ":", "right"}, row(" elevenchars :", "right")},
        // A text too long for the line pushes the frame out; one too long for the right edge is dropped.
        {true, {wide.c_str(), "", ""}, "| " + wide + "\n"},
        {true, {"a", "", wide.c_str()}, row(" a")},
    };
    for (const auto& [isBox, items, line] : rows) {
        mrReportFormat format(3, {1, 11, mrReportFormat::RightEdge, 0, 0, 0});
        format.setBox(isBox);
        EXPECT_EQ(str(format.getLine(items[0], items[1], items[2])), line);
    }
    EXPECT_EQ(str(mrReportFormat::getTimeStr(3661)), "01:01:01");
    EXPECT_EQ(str(mrReportFormat::getTimeStr(360000)), "100:00:00");
}

TEST(ReportFormat, CutsPieces) {
    static constexpr struct {
        int limit;
        bool cut;
        const char* piece;
        const char* rest;
    } rows[] = {
        {14, false, "old", "longword two x"}, {13, true, "longword two", "x"},
        {12, true, "longword two", "x"},      {11, true, "longword", "two x"},
        {3, true, "longword", "two x"},
    };
    for (const auto& expected : rows) {
        mrString text = "longword two x";
        mrString piece = "old";
        EXPECT_EQ(mrReportFormat::getPieceItem(text, piece, expected.limit), expected.cut);
        EXPECT_EQ(str(piece), expected.piece);
        EXPECT_EQ(str(text), expected.rest);
    }
}

class Report : public testing::Test {
  protected:
    Report() {
        mrSession::m_exePath = "/opt/bin/metrig";
        libraries.append("first, 1.0, Feb  5 2022");
        libraries.append("second");
        std::swap(libraryList, g_pLibInfoList);
        zyl_GetMaxCacheSizeB = [](int* size) {
            *size = cacheSize;
            return 0;
        };
        info.m_result = MR_OK;
    }
    ~Report() override {
        mrSession::m_exePath = "";
        std::swap(libraryList, g_pLibInfoList);
        zyl_GetMaxCacheSizeB = nullptr;
        mrCpuTicker::m_freqMHz = 0;
    }

    /// The value of "CPU".
    std::string cpu(int mhz, int cacheBytes) {
        mrCpuTicker::m_freqMHz = mhz;
        cacheSize = cacheBytes;
        const mrReportTitle title(tests);
        return str(*++title.begin());
    }

    static inline int cacheSize = 0;
    const ProcessorRecord record{"GenuineZorva", "Zorva(R) CPU @ 2.40GHz", 1, 0x80000004, {}};
    const ProcessorRecord oldRecord{"GenuineZorva", "", 1, 0, {{1, 0, {0x435, 0, 0, 3}}}};
    const std::string count = mrGetNumOfProcessors() > 1 ? std::to_string(mrGetNumOfProcessors()) + "x" : "";
    mrStringList libraries;
    mrStringList* libraryList = &libraries;
    mrTestList tests;
    mrTest test{nullptr, nullptr, "zylsFind_8u", "perf/p_chfind_ia", "TimsFind//ZY_REG"};
    mrTest info{nullptr, nullptr, "__mrCpu", "perflib/src/mr", "__mrCpuTest/CPU information"};
};

TEST_F(Report, TitleDescribesTheProcessor) {
    const RecordedProcessor processor(record);
    EXPECT_EQ(cpu(2400, 6 << 20), "Zorva(R) CPU @ 2.40GHz, " + count + "2.4 GHz, Max cache size 6144 K");
    EXPECT_EQ(cpu(1000, 0), "Zorva(R) CPU @ 2.40GHz, " + count + "1 GHz, ");
    const RecordedProcessor old(oldRecord);
    EXPECT_EQ(cpu(999, 1500), "Unknown CPU, " + count + "999 MHz, Max cache size 1 K");
}

TEST_F(Report, TitleHasALayoutForEachStream) {
    const RecordedProcessor processor(oldRecord);
    const std::string name = cpu(66, 0);
    const mrReportTitle title(tests);
    const mrString start = mrDate::text(tests.m_date.startTime());
    CapturedOutput output(MSG_ERR);
    g_ostrm << title;
    EXPECT_EQ(output.text(),
              box(row(" CPU      : " + name) + row(" OS       : " + str(os.text())) +
                  row(" Computer : " + str(host.text())) + row(" Library  : first, 1.0, Feb  5 2022") +
                  row(" Library  : second") + row(" Test     : Timing") + row("", start)));
    const std::string pairs = "CPU," + name + "\nOS," + str(os.text()) + "\nComputer," + str(host.text()) +
                              "\nLibrary,first, 1.0, Feb  5 2022\nLibrary,second\nStart," + str(start) + "\n";
    EXPECT_EQ(written<mrUStream>(title), pairs);
    EXPECT_EQ(written<mrCStream>(title), pairs);
}

TEST_F(Report, TestIsBoxedFromTheThirdLevelOn) {
    const std::string function = row(" Function  : __mrCpu", mrDate::text(info.m_date.startTime()));
    const std::string result = row(" -OK         __mrCpu", mrDate::text(info.m_date.stopTime()));
    const std::string more =
        row(" Test      : __mrCpuTest") + row(" Source    : mr") + row(" Description : CPU information");
    CapturedOutput output(MSG_ERR);
    g_ostrm << MSG_ERR << mrReportTestTitle(&info) << MSG_END << mrReportTestResult(&info);
    EXPECT_EQ(output.text(), function + result);
    g_ostrm.setOutLevel(MSG_ERR | MSG_WARN);
    g_ostrm << MSG_ERR << mrReportTestTitle(&info) << MSG_END << mrReportTestResult(&info);
    EXPECT_EQ(output.text(), function + result + box(function + more) + box(result));
    g_ostrm.setOutLevel(MSG_WARN);
    g_ostrm << MSG_WARN << mrReportTestTitle(&info) << MSG_END;
    EXPECT_EQ(output.text(), function + result + box(function + more) + box(result) + function);
}

TEST_F(Report, TestIsALineOfTheSummary) {
    test.m_result = MR_DATA_FAIL;
    test.m_badSSX = true;
    info.m_bad87 = true;
    EXPECT_EQ(
        written<mrUStream>(mrReportTestResult(nullptr)),
        "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,Result,ExeName\n");
    EXPECT_EQ(written<mrUStream>(mrReportTestTitle(&test)), "zylsFind_8u,Timing,");
    EXPECT_EQ(written<mrUStream>(mrReportTestResult(&test)),
              "-,-,-,?,TimsFind,0,p_chfind_ia,DATAFAIL,metrig\n");
    EXPECT_EQ(written<mrUStream>(mrReportTestTitle(&info)), "__mrCpu,Information,");
    EXPECT_EQ(written<mrUStream>(mrReportTestResult(&info)), "-,?,-,-,__mrCpuTest,0,mr,OK,metrig\n");
}

TEST_F(Report, EndCountsResults) {
    EXPECT_NE(written<mrUStream>(mrReportEnd(tests)).find("\n...Undefined    ,0\n"), std::string::npos);
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
    EXPECT_NE(output.text().find(row(" ...Undefined     : 2113")), std::string::npos);
}

}  // namespace
