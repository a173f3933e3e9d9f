#include "session_fixture.h"
#include "test/mrmemory.h"

namespace {

const std::string NoMethod = " Method = Auto\n Accuracy = 5\n";
const std::string NoLayout = " AlignVectorsBy = element\n VectorAlign = 0\n MutualVectorShift = 512\n";

struct DataRow {
    const char* line;
    std::string text;      ///< what the reading prints
    std::string settings;  ///< what it leaves behind
};

class CommonData : public SessionTest {
  protected:
    void TearDown() override {
        g_pParmList = nullptr;
        initTimingMethod = nullptr;
        mrSetAlignByByte(true);
        mrSetVectorAlign(0);
        mrSetAlignSrc(true);
        mrSetVectorShift(512);
        SessionTest::TearDown();
    }

    /// Parses `line` and reads the common data with `answers` typed in; what the reading printed. What was
    /// asked for is in `console`.
    std::string read(const std::string& line, const std::string& answers = "") {
        parse(line);
        writeFile("answers", answers);
        EXPECT_NE(std::freopen(path("answers").c_str(), "r", stdin), nullptr);
        testing::internal::CaptureStdout();
        const std::string text = printed([&] { session->readCommonData(); });
        console = testing::internal::GetCapturedStdout();
        EXPECT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
        return text;
    }

    static std::string title(const char* text) { return str(mrSession::getEnterTitle(text)); }

    static std::string timing() {
        int start = 0;
        int stop = 0;
        long long clocks = 0;
        std::ostringstream text;
        if (g_tool.getMethodLoop(start)) {
            text << "loop " << start;
        } else if (g_tool.getMethodStat(start, clocks)) {
            text << "stat " << start << " " << clocks;
        } else if (g_tool.getMethodBest(start, stop, clocks)) {
            text << "best " << start << " " << stop << " " << clocks;
        } else if (g_tool.getMethodAuto()) {
            text << "auto";
        }
        text << ", " << g_tool.m_reqAccuracy;
        return text.str();
    }

    static std::string layout() {
        std::ostringstream text;
        text << (mrGetAlignByByte() ? "byte " : "element ") << mrGetVectorAlign()
             << (mrGetAlignSrc() ? " first " : " all ") << mrGetVectorShift();
        return text.str();
    }

    std::string console;
};

TEST_F(CommonData, TimingMethod) {
    const DataRow rows[] = {
        {"", NoMethod, "auto, 0.05"},
        {"-dMethod=a -dNumLoops=9", NoMethod, "auto, 0.05"},
        {"-dMethod=", NoMethod, "auto, 0.05"},
        {"-dMethod=fast", "-Invalid value of Method = fast\n" + NoMethod, "auto, 0.05"},
        {"-dMethod=Manual", " Method = Manual\n NumLoops = 10\n", "loop 10, 0.05"},
        {"-dMethod=man -dNumLoops=100 -dAccuracy=1", " Method = Manual\n NumLoops = 100\n", "loop 100, 0.05"},
        {"-dMethod=Statistic -dTotalCpuClocks=77",
         " Method = Statistic\n NumCalls = 3\n TotalCpuClocks = 77\n", "stat 3 77, 0.05"},
        {"-dMethod=Iterative -dStartNumLoops=2 -dAccuracy=10",
         " Method = Iterative\n StartNumLoops = 2\n StopNumLoops = 2048\n MinCpuClocks = 10000\n Accuracy = "
         "10\n",
         "best 2 2048 10000, 0.1"},
        {"-dAccuracy=abc", " Method = Auto\n-Invalid value of Accuracy = abc\n Accuracy = 5\n", "auto, 0.05"},
        {"-dAccuracy=1", " Method = Auto\n Accuracy = 1\n", "auto, 0.01"},
        {"-dAccuracy=50", " Method = Auto\n Accuracy = 50\n", "auto, 0.5"},
        // Out of 1 to 50 any result is good.
        {"-dAccuracy=51", " Method = Auto\n Accuracy = 51\n", "auto, 500"},
        {"-dAccuracy=0", " Method = Auto\n Accuracy = 0\n", "auto, 500"},
        {"-dAccuracy=-3", " Method = Auto\n Accuracy = -3\n", "auto, 500"},
        {"-dAccuracy=", " Method = Auto\n Accuracy = 0\n", "auto, 500"},
    };
    for (const DataRow& row : rows) {
        resetSettings();
        EXPECT_EQ(read(std::string("-B ") + row.line), row.text + NoLayout);
        EXPECT_EQ(timing(), row.settings) << row.line;
    }
    resetSettings();
    initTimingMethod = [](mrTool& tool) { tool.setMethodStat(8, 900); };
    EXPECT_EQ(read("-B"), " Method = Statistic\n NumCalls = 8\n TotalCpuClocks = 900\n" + NoLayout);
}

TEST_F(CommonData, LayoutOfVectors) {
    const std::string element = " AlignVectorsBy = element\n";
    const std::string shift = " MutualVectorShift = 512\n";
    const DataRow rows[] = {
        {"", NoLayout, "element 0 first 512"},
        {"-dAlignVectorsBy=byte", " AlignVectorsBy = byte\n VectorAlign = 0\n" + shift, "byte 0 first 512"},
        {"-dVectorAlign=70", element + " VectorAlign = 6\n MisalignFirstVectorOnly = no\n" + shift,
         "element 6 all 512"},
        {"-dVectorAlign=1 -dMisalignFirstVectorOnly=yes",
         element + " VectorAlign = 1\n MisalignFirstVectorOnly = yes\n" + shift, "element 1 first 512"},
        {"-dVectorAlign=64 -dMutualVectorShift=100", element + " VectorAlign = 0\n MutualVectorShift = 64\n",
         "element 0 first 64"},
        {"-dMutualVectorShift=-64", element + " VectorAlign = 0\n MutualVectorShift = -64\n",
         "element 0 first -64"},
        {"-dVectorAlign= -dMutualVectorShift=",
         element +
             "-Invalid value of VectorAlign = \n VectorAlign = 0\n-Invalid value of MutualVectorShift = \n" +
             shift,
         "element 0 first 512"},
    };
    for (const DataRow& row : rows) {
        resetSettings();
        mrSetAlignSrc(true);
        EXPECT_EQ(read(std::string("-B ") + row.line), NoMethod + row.text);
        EXPECT_EQ(layout(), row.settings) << row.line;
    }
}

TEST_F(CommonData, QuestionsByAskMode) {
    const std::string timingTitle = title("Specify timing method, please");
    const std::string layoutTitle = title("Specify vectors alignment, please");
    const std::string endTitle = title("End of common specifications");
    const std::string method = "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = ";
    const std::string manual = timingTitle + " Method = Manual\n NumLoops = 12\n" + NoLayout + endTitle;
    EXPECT_EQ(read("-ATiming", "M\n12\n"), manual);
    EXPECT_EQ(console, method + "\n NumLoops [10] = ");
    EXPECT_EQ(read("-AMisalign", "b\n3\n\n\n"),
              NoMethod + layoutTitle +
                  " AlignVectorsBy = byte\n VectorAlign = 3\n MisalignFirstVectorOnly = no\n"
                  " MutualVectorShift = 512\n" +
                  endTitle);
    EXPECT_EQ(
        console,
        "\n AlignVectorsBy {byte|element} [element] = \n VectorAlign by Byte, 0..63 [0] = "
        "\n MisalignFirstVectorOnly {yes|no} [no] = \n MutualVectorShift in Bytes, divisible by 64 [512] = ");
    // Without a key the timing method and the common parameters are asked; batch mode beats all.
    EXPECT_EQ(read("-v", "M\n12\n"), manual);
    EXPECT_EQ(read("-B -AAll", "M\n12\n"), NoMethod + NoLayout);
    EXPECT_EQ(console, "");
    read("-AT", "\n7\n");
    EXPECT_EQ(console, method + "\n Accuracy, % [5] = ");
    EXPECT_EQ(timing(), "auto, 0.07");
}

TEST_F(CommonData, CommonParametersAreReadOnce) {
    mrDefault<int> parm(7, "Common", "");
    mrList<mrParameter*> parms;
    parms.append(&parm);
    g_pParmList = &parms;
    EXPECT_EQ(read("-B -dCommon=9"), NoMethod + " Common = 9\n" + NoLayout);
    EXPECT_FALSE(parm.active());
    parm.setActive(true);
    EXPECT_EQ(read("-AP", "1\n"), NoMethod + title("Specify common test parameters, please") +
                                      " Common = 9\n" + NoLayout + title("End of common specifications"));
}

TEST(EnterTitle, IsCentredInABox) {
    const std::string frame = " " + std::string(78, '*') + "\n";
    // The middle line is as wide as the frame, but for a text that does not fit.
    const std::pair<std::size_t, std::size_t> rows[] = {{0, 38}, {1, 37}, {29, 23},
                                                        {74, 1}, {76, 0}, {77, 0}};
    for (const auto& [length, blanks] : rows) {
        const std::string text(length, 'x');
        const std::string box = str(mrSession::getEnterTitle(text.c_str()));
        const std::string start = frame + " *" + std::string(blanks, ' ') + text;
        EXPECT_EQ(box.substr(0, start.size()), start);
        EXPECT_TRUE(box.ends_with("*\n" + frame));
        EXPECT_EQ(box.size() == 3 * frame.size(), length <= 76) << length;
    }
}

}  // namespace
