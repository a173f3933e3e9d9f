

#include <regex>

#include "session_fixture.h"

namespace {

class CommonData : public SessionTest {
  protected:
    /// Parses `line` and reads the common data with empty answers. Returns what the reading printed,
    /// "~" for the lines of the default method and layout; what was asked for is in `console`.
    std::string read(const std::string& line) {
        parse(line);
        EXPECT_NE(std::freopen(m_folder.file("answers", "\n\n\n").c_str(), "r", stdin), nullptr);
        testing::internal::CaptureStdout();
        const std::string text = printed([&] { session->readCommonData(); });
        console = testing::internal::GetCapturedStdout();
        EXPECT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
        const std::regex defaults(
            " Method = Auto\n Accuracy = 5\n"
            "| AlignVectorsBy = element\n VectorAlign = 0\n MutualVectorShift = 512\n");
        return std::regex_replace(text, defaults, "~");
    }

    std::string console;
};

const std::tuple<const char*, const char*, double, const char*> dataRows[] = {
    {"-dMethod=man -dNumLoops=9 -dAccuracy=1", " Method = Manual\n NumLoops = 9\n~", 0.05, "0 first 512"},

    {"-dMethod=Iterative -dStartNumLoops=2 -dAccuracy=1",
     " Method = Iterative\n StartNumLoops = 2\n StopNumLoops = 2048\n MinCpuClocks = 10000\n Accuracy = 1\n~",
     0.01, "0 first 512"},
    {"-dAccuracy=50", " Method = Auto\n Accuracy = 50\n~", 0.5, "0 first 512"},
    // Out of 1 to 50 any result is good.
    {"-dAccuracy=51", " Method = Auto\n Accuracy = 51\n~", 500, "0 first 512"},
    {"-dAccuracy=", " Method = Auto\n Accuracy = 0\n~", 500, "0 first 512"},
    {"-dAlignVectorsBy=b -dVectorAlign=1 -dMisalignFirstVectorOnly=yes -dMutualVectorShift=-64",
     "~ AlignVectorsBy = byte\n VectorAlign = 1\n MisalignFirstVectorOnly = yes\n MutualVectorShift = -64\n",
     0.05, "byte 1 first -64"},
    {"-dVectorAlign=70 -dMutualVectorShift=100",
     "~ AlignVectorsBy = element\n VectorAlign = 6\n MisalignFirstVectorOnly = no\n MutualVectorShift = 64\n",
     0.05, "6 all 64"},
};

TEST_F(CommonData, ComesFromOptions) {
    for (const auto& [line, text, accuracy, layout] : dataRows) {
        EXPECT_EQ(read(std::string("-B ") + line), text);
        EXPECT_EQ(g_tool.m_reqAccuracy, accuracy) << line;
        std::ostringstream set;
        set << (mrGetAlignByByte() ? "byte " : "") << mrGetVectorAlign()
            << (mrGetAlignSrc() ? " first " : " all ") << mrGetVectorShift();
        EXPECT_EQ(set.str(), layout) << line;
    }
    initTimingMethod = [](mrTool& tool) { tool.setMethodStat(8, 900); };
    EXPECT_EQ(read("-B"), " Method = Statistic\n NumCalls = 8\n TotalCpuClocks = 900\n~");
    initTimingMethod = nullptr;
}

TEST_F(CommonData, IsAskedForByMode) {
    read("-B -AAll");
    EXPECT_EQ(console, "");
    // Without a key the timing method and the common parameters are asked.
    read("-v");
    EXPECT_EQ(console, "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n Accuracy, % [5] = ");
}

}  // namespace
