#include <gtest/gtest.h>

#include "machine/mrhost.h"
#include "report/mrreport.h"
#include "session/mr.h"
#include "stream/mrcstream.h"
#include "stream/mrinventory.h"
#include "stream/mrreportformat.h"
#include "support/captured_output.h"
#include "support/golden.h"
#include "support/recorded_processor.h"

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

TEST(ReportFormat, PlacesItems) {
    const std::string wide(89, 'x');
    mrReportFormat format(3, {1, 11, mrReportFormat::RightEdge, 0, 0, 0});
    format.setBox(true);
    // A text too long for the line pushes the frame out; one too long for the right edge is dropped.
    EXPECT_EQ(str(format.getLine(wide.c_str())), "| " + wide + "\n");
    EXPECT_EQ(str(format.getLine("elevenchars", ":", wide.c_str())),
              "| elevenchars :" + std::string(63, ' ') + "|\n");
    EXPECT_EQ(str(mrReportFormat::getTimeStr(363661)), "101:01:01");
}

TEST(Report, TitleDescribesTheMachine) {
    const ProcessorRecord named{"GenuineZorva", "Zorva(R) CPU @ 2.40GHz", 1, 0x80000004, {}};
    const ProcessorRecord old{"GenuineZorva", "", 1, 0, {}};
    const int processors = mrGetNumOfProcessors();
    const std::string count = processors > 1 ? std::to_string(processors) + "x" : "";
    mrStringList* const librariesBefore = std::exchange(g_pLibInfoList, nullptr);
    EXPECT_TRUE(mrRegLibInfo("first, 1.0, Feb  5 2022"));
    EXPECT_FALSE(mrRegLibInfo("first, 1.0, Feb  5 2022"));
    static int cacheSize;
    zyl_GetMaxCacheSizeB = [](int* size) {
        *size = cacheSize;
        return 0;
    };
    const mrTestList tests;
    const auto title = [&](const ProcessorRecord& record, int mhz, int cacheBytes) {
        const RecordedProcessor processor(record);
        mrCpuTicker::m_freqMHz = mhz;
        cacheSize = cacheBytes;
        return written<mrUStream>(mrReportTitle(tests));
    };
    const std::string rest = "\nOS," + str(os.text()) + "\nComputer," + str(host.text()) +
                             "\nLibrary,first, 1.0, Feb  5 2022\nStart," +
                             str(mrDate::text(tests.m_date.startTime())) + "\n";
    EXPECT_EQ(title(named, 2400, 6 << 20),
              "CPU,Zorva(R) CPU @ 2.40GHz, " + count + "2.4 GHz, Max cache size 6144 K" + rest);
    EXPECT_EQ(title(old, 999, 0), "CPU,Unknown CPU, " + count + "999 MHz, " + rest);
    delete std::exchange(g_pLibInfoList, librariesBefore);
    zyl_GetMaxCacheSizeB = nullptr;
    mrCpuTicker::m_freqMHz = 0;
}

TEST(Report, ListsFunctionsAndTests) {
    mrStringList* const before = std::exchange(g_pLibFuncList, nullptr);
    mrTest find{nullptr, nullptr, "zylsFind_8u", "perf/p_chfind_ia", "TimsFind//ZY_REG"};
    mrTest hash{nullptr, nullptr, "zylsHash_8u32u", "perf/p_chhash_ia", "TimchHash//ZY_REG"};
    mrTestList tests;
    tests.append(&find);
    tests.append(&hash);
    // Tests that the conditions leave out are not listed, nor counted, but they are there.
    static RunCondition* const hashOnly = mrMakeCondition(RunCondition::FunctionName, "Hash");
    mrConditions conditions;
    conditions.append(hashOnly);
    const auto listing = [&](int mode) {
        CapturedOutput output(g_ostrm.msgLevel());
        g_ostrm << mrReportList(tests, conditions, mode);
        return output.text();
    };
    EXPECT_FALSE(mrRegLibFunc(""));
    // Service functions are left out.
    for (const char* name :
         {"zylInit", "zylsClose_8u", "zylAllocate", "zylsMalloc_8u", "zylFree", "zylPutVal",
          "zylRotateCenter", "zylResizeShift", "zylGetLibVersion", "zylsSetup", "zylDrawText_8u"}) {
        mrRegLibFunc(name);
    }
    std::string lists = listing(MR_LIST_FUNCTIONS);
    for (const char* name : {"zylsFind_8u", "zylsGet_8u", "zylsSet_8u", "zylsinit_8u"}) {
        mrRegLibFunc(name);
    }
    lists += "\n" + listing(MR_LIST_FUNCTIONS) + "\n" +
             written<mrCStream>(mrReportList(tests, conditions, MR_LIST_UNTESTED));
    expectGolden("unit/report/golden/lists.txt", lists);
    delete std::exchange(g_pLibFuncList, before);
}

/// Of each result twice as many as of the one before, so that no two sums are the same.
TEST(Report, EndCountsResults) {
    mrTestList tests;
    for (int result = MR_NOT_RUN; result < MR_RESULT_COUNT; ++result) {
        for (int i = 0; i < 1 << result; ++i) {
            tests.plus(result);
        }
    }
    EXPECT_EQ(tests.m_counts[MR_NOTE], 4 + 8 + 16 + 32 + 64);
    EXPECT_EQ(tests.m_counts[MR_FAIL], 128 + 256 + 512 + 1024 + 2048);
    const std::string table = written<mrCStream>(mrReportEnd(tests));
    expectGolden("unit/report/golden/end.txt", table);
    EXPECT_EQ(written<mrUStream>(mrReportEnd(tests)), table);
}

}  // namespace
