#include <algorithm>

#include "session_fixture.h"
#include "system/mrcpufeatures.h"

namespace {

class Help : public SessionTest {
  protected:
    /// All that a run with these keys prints up to the end of the help, the build date shown as "<date>".
    std::string help(const std::string& line) {
        std::string text = parse(line);
        text += printed([&] { ended = session->hintOutput(); });
        const std::string banner = "Metrig 2.0, ";
        const std::size_t date = text.find(banner);
        return date == std::string::npos ? text : text.replace(date + banner.size(), DateLength, "<date>");
    }

    /// The help alone, behind the banner.
    std::string helpBody(const std::string& line) {
        const std::string text = help(line);
        const std::string banner = "<date>\n";
        return text.substr(text.find(banner) + banner.size());
    }

    static std::string golden(const char* name) {
        std::ifstream file(std::string(METRIG_SOURCE_DIR "/tests/unit/session/golden/") + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static constexpr std::size_t DateLength = 11;
    bool ended = false;
};

int count(const std::string& text, const std::string& part) {
    int number = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
        ++number;
    }
    return number;
}

TEST_F(Help, ShortHelpToTheLetter) {
    EXPECT_EQ(help("-h"), golden("help_short.txt"));
    EXPECT_TRUE(ended);
}

TEST_F(Help, ShortHelpWithoutLibraryLacksItsKeys) {
    zyl_Init = [] { return MR_NOT_BOUND; };
    const std::string text = help("-h");
    EXPECT_EQ(count(text, "\n-T["), 0);
    EXPECT_EQ(count(text, "\n-N["), 0);
    const std::string all = golden("help_short.txt");
    EXPECT_EQ(std::ranges::count(text, '\n'), std::ranges::count(all, '\n') - 2);
}

TEST_F(Help, HiddenKeysStandBetweenNAndS) {
    const std::string text = helpBody("-?");
    EXPECT_TRUE(text.starts_with("QUICK HELP with hidden keys\n-B  "));
    EXPECT_NE(text.find("<num-threads> )\n-SU  "), std::string::npos);
    EXPECT_NE(text.find("supported by test)\n-s[-]"), std::string::npos);
    EXPECT_EQ(std::ranges::count(text, '\n'), 1 + 45);
}

TEST_F(Help, ExtendedHelpHoldsEveryShortText) {
    const std::string hiddenNote = "This is hidden key used by developers only\n";
    const std::string text = helpBody("-hh");
    EXPECT_TRUE(
        text.starts_with("EXTENDED HELP\n\n-B               = batch mode (no console input)\n"
                         "If both -B and -A key present in command line then -B key is performed\n\n-A<"));
    EXPECT_EQ(count(text, "\n\n"), 37);
    EXPECT_EQ(count(text, hiddenNote), 0);
    EXPECT_EQ(count(text, "\n-??"), 0);
    const std::string all = helpBody("-??");
    EXPECT_TRUE(all.starts_with("EXTENDED HELP with hidden keys\n\n"));
    EXPECT_EQ(count(all, "\n\n"), 39);
    EXPECT_EQ(count(all, " data set & use\n" + hiddenNote + "This option should"), 1);
    EXPECT_EQ(count(all, hiddenNote), 2);
}

struct KeyRow {
    const char* line;
    const char* text;  ///< behind "EXTENDED KEY HELP\n"
};

TEST_F(Help, OfOneKey) {
    const KeyRow rows[] = {
        {"-hB",
         "-B               = batch mode (no console input)\n"
         "If both -B and -A key present in command line then -B key is performed\n"},
        {"-he", "-e               = enumerate tests and exit\nNo extended description for this key\n"},
        {"-h?",
         "Key -? is deprecated\n"
         "-?               = type short help with hidden keys and exit\n"
         "-??              = type extended help with hidden keys and exit\n"
         "-?<key>          = type extended help for the key and exit\n"
         "If several -? keys present in command line then only the last key is valid\n"},
        {"-hz", "Key -z is not valid\n\nUse -h option to type full key list\n"},
        {"-h-", "Key -- is not valid\n\nUse -h option to type full key list\n"},
        {"-h -?z", "Key -z is not valid\n\nUse -h option to type full key list\n"},
    };
    for (const KeyRow& row : rows) {
        EXPECT_EQ(helpBody(row.line), std::string("EXTENDED KEY HELP\n") + row.text) << row.line;
    }
}

TEST_F(Help, ListOfFeaturesStandsInPlaceOfTheTab) {
    const std::string text = helpBody("-hT");
    EXPECT_EQ(count(text, "\t"), 0);
    const std::string before = "enter following {cpu-features}:\n";
    const std::string after = "If several -T keys";
    const std::size_t start = text.find(before) + before.size();
    EXPECT_EQ(text.substr(start, text.find(after) - start), str(mrCpuFeatures::optimizedList()));
}

TEST_F(Help, VersionIsTheBannerAlone) {
    EXPECT_EQ(help("-v"),
              "Command line options: \n-v: type the version number of the Metrig and exit\n"
              "\nZorva(R) Zylkit. Metrig 2.0, <date>\n");
    EXPECT_TRUE(ended);
    resetSettings();
    EXPECT_EQ(help("-B"), "Command line options: \n-B: batch mode\n");
    EXPECT_FALSE(ended);
}

TEST_F(Help, EnumerationModes) {
    const std::pair<const char*, int> rows[] = {
        {"-e", 0}, {"-e+", 1}, {"-e-", -1}, {"-e- -e", 0}, {"-B", TestSession::NotListed}};
    for (const auto& [line, mode] : rows) {
        parse(line);
        EXPECT_EQ(session->enumOutput(), mode != TestSession::NotListed) << line;
        EXPECT_EQ(session->m_listed, mode) << line;
    }
}

TEST_F(Help, ListOfTestsHoldsWhatTheConditionsSelect) {
    mrCpuTicker::m_freqMHz = 1000;  // else the title takes seconds to measure it
    mrTest ab(nullptr, nullptr, "ab", "/src/p_one", "TimsZoo");
    mrTest ax(nullptr, nullptr, "ax", "/src/p_two", "TimsZoo");
    mrTest b(nullptr, nullptr, "b", "/src/p_two", "TimsPond");
    mrTestList tests;
    for (mrTest* test : {&ab, &ax, &b}) {
        tests.append(test);
    }
    pTestList = &tests;
    MemoryFile table;
    const std::pair<const char*, const char*> rows[] = {
        {"-f=ab -mtwo", ""}, {"-f=ab -mtwo -kor", "ab ax b "}, {"-fa -tZoo", "ab ax "}, {"-f", "ab ax b "}};
    for (const auto& [line, names] : rows) {
        parse(line);
        g_cstrm.append(table.stream());
        const std::string text = printed([&] { session->mrSession::listTests(0); });
        g_cstrm.clear();
        std::string listed;
        for (const char* name : {"ab", "ax", "b"}) {
            listed += count(text, std::string("\t") + name + "\t") == 1 ? std::string(name) + " " : "";
        }
        EXPECT_EQ(listed, names) << line;
    }
    EXPECT_EQ(count(table.text(), "Function,Test,Source"), 4);
    pTestList = nullptr;
    mrCpuTicker::m_freqMHz = 0;
}

}  // namespace
