#include <regex>

#include "session_fixture.h"
#include "system/mrcpufeatures.h"

namespace {

class Help : public SessionTest {
  protected:
    /// All that a run with these keys prints, the build date shown as "<date>" and the end as "<end>".
    std::string help(const std::string& line) {
        std::string text = parse(line);
        text += printed([&] { EXPECT_TRUE(session->hintOutput()); });
        return std::regex_replace(text, std::regex("Metrig 2.0, .{11}\n"), "Metrig 2.0, <date>\n") + "<end>";
    }
};

TEST_F(Help, ShortHelpToTheLetter) {
    std::ifstream file(METRIG_SOURCE_DIR "/tests/unit/session/golden/help_short.txt");
    const std::string golden{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(help("-h"), golden + "<end>");
}

TEST_F(Help, HoldsWhatWasAskedFor) {
    const std::string hiddenNote = "This is hidden key used by developers only\n";
    const std::string ofKey = "<date>\nEXTENDED KEY HELP\n";
    const std::string features = str(mrCpuFeatures::optimizedList());
    const struct {
        const char* line;
        int times;
        std::string part;
    } rows[] = {
        {"-?", 1, "<date>\nQUICK HELP with hidden keys\n-B  "},
        {"-?", 1, "<num-threads> )\n-SU  "},
        {"-?", 1, "supported by test)\n-s[-]"},
        {"-?", 4 + 46, "\n"},  // four before the help
        {"-hh", 1, "<date>\nEXTENDED HELP\n\n-B               = batch mode (no console input)\nIf both -B"},
        {"-hh", 37, "\n\n-"},
        {"-hh", 0, hiddenNote},
        {"-??", 1, "<date>\nEXTENDED HELP with hidden keys\n\n"},
        {"-??", 39, "\n\n-"},
        {"-??", 1, " data set & use\n" + hiddenNote + "This option should"},
        {"-??", 2, hiddenNote},
        {"-he", 1,
         ofKey + "-e               = enumerate tests and exit\nNo extended description for this key\n<end>"},
        {"-h?", 1,
         ofKey + "Key -? is deprecated\n-?               = type short help with hidden keys and exit\n"},
        {"-h?", 1, "If several -? keys present in command line then only the last key is valid\n<end>"},
        {"-h -?z", 1, ofKey + "Key -z is not valid\n\nUse -h option to type full key list\n<end>"},
        {"-hT", 1, "enter following {cpu-features}:\n" + features + "If several -T keys"},
    };
    for (const auto& row : rows) {
        const std::string text = help(row.line);
        int times = 0;
        for (std::size_t at = 0; (at = text.find(row.part, at)) != std::string::npos; ++at) {
            ++times;
        }
        EXPECT_EQ(times, row.times) << row.line << ": " << row.part;
    }
}

TEST_F(Help, EnumerationModes) {
    for (const auto& [line, mode] : {std::pair("-e", 0), {"-e+", 1}, {"-e-", -1}, {"-e- -e", 0}}) {
        parse(line);
        EXPECT_TRUE(session->enumOutput());
        EXPECT_EQ(session->m_listed, mode) << line;
    }
}

}  // namespace
