#include <regex>

#include "session_fixture.h"

namespace {

class CommonData : public SessionTest {
  protected:
    /// Parses `line` and reads the common data with empty answers. Returns what the reading printed,
    /// "~" for the lines of the default method and layout; what was asked for is in `console`.
    std::string read(const std::string& line) {
        parse(line);
        writeFile("answers", "\n\n\n");
        EXPECT_NE(std::freopen(path("answers").c_str(), "r", stdin), nullptr);
        testing::internal::CaptureStdout();
        const std::string text = printed([&] { session->readCommonData(); });
        console = testing::internal::GetCapturedStdout();
        EXPECT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
        const std::regex defaults(
            " Method = Auto\n Accuracy = 5\n"
            "| AlignVectorsBy = element\n VectorAlign = 0\n MutualVectorShift = 512\n");
        return std::regex_replace(text, defaults, "~");
    }

    static std::string settings() {
        std::ostringstream text;
        text << g_tool.m_reqAccuracy << (mrGetAlignByByte() ? " byte " : " element ") << mrGetVectorAlign()
             << (mrGetAlignSrc() ? " first " : " all ") << mrGetVectorShift();
        return text.str();
    }

    std::string console;
};

struct DataRow {
    const char* line;
    const char* text;
    const char* settings;
};

const char* const Defaults = "0.05 element 0 first 512";

const DataRow dataRows[] = {
    {"-dMethod=fast", "-Invalid value of Method = fast\n~~", Defaults},
    {"-dMethod=man -dNumLoops=9 -dAccuracy=1", " Method = Manual\n NumLoops = 9\n~", Defaults},
    {"-dMethod=S -dTotalCpuClocks=7", " Method = Statistic\n NumCalls = 3\n TotalCpuClocks = 7\n~", Defaults},
    {"-dMethod=Iterative -dStartNumLoops=2 -dAccuracy=1",
     " Method = Iterative\n StartNumLoops = 2\n StopNumLoops = 2048\n MinCpuClocks = 10000\n Accuracy = 1\n~",
     "0.01 element 0 first 512"},
    {"-dAccuracy=50", " Method = Auto\n Accuracy = 50\n~", "0.5 element 0 first 512"},
    // Out of 1 to 50 any result is good.
    {"-dAccuracy=51", " Method = Auto\n Accuracy = 51\n~", "500 element 0 first 512"},
    {"-dAccuracy=", " Method = Auto\n Accuracy = 0\n~", "500 element 0 first 512"},
    {"-dAlignVectorsBy=b -dVectorAlign=1 -dMisalignFirstVectorOnly=yes",
     "~ AlignVectorsBy = byte\n VectorAlign = 1\n MisalignFirstVectorOnly = yes\n MutualVectorShift = 512\n",
     "0.05 byte 1 first 512"},
    {"-dVectorAlign=70 -dMutualVectorShift=100",
     "~ AlignVectorsBy = element\n VectorAlign = 6\n MisalignFirstVectorOnly = no\n MutualVectorShift = 64\n",
     "0.05 element 6 all 64"},
    {"-dVectorAlign=64 -dMutualVectorShift=-64",
     "~ AlignVectorsBy = element\n VectorAlign = 0\n MutualVectorShift = -64\n", "0.05 element 0 first -64"},
};

TEST_F(CommonData, ComesFromOptions) {
    for (const DataRow& row : dataRows) {
        EXPECT_EQ(read(std::string("-B ") + row.line), row.text);
        EXPECT_EQ(settings(), row.settings) << row.line;
    }
    initTimingMethod = [](mrTool& tool) { tool.setMethodStat(8, 900); };
    EXPECT_EQ(read("-B"), " Method = Statistic\n NumCalls = 8\n TotalCpuClocks = 900\n~");
    initTimingMethod = nullptr;
}

TEST_F(CommonData, IsAskedForByMode) {
    const std::string timing = "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n Accuracy, % [5] = ";
    const std::pair<const char*, std::string> rows[] = {
        {"-ATiming", timing},
        {"-AMisalign",
         "\n AlignVectorsBy {byte|element} [element] = \n VectorAlign by Element, 0..63 [0] = "
         "\n MutualVectorShift in Bytes, divisible by 64 [512] = "},
        // Without a key the timing method and the common parameters are asked; batch mode beats all.
        {"-v", timing},
        {"-B -AAll", ""},
    };
    for (const auto& [line, questions] : rows) {
        read(line);
        EXPECT_EQ(console, questions) << line;
    }
}

}  // namespace
