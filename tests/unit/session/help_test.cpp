#include <algorithm>
#include <regex>

#include "session_fixture.h"
#include "support/golden.h"

namespace {

class Help : public SessionTest {
  protected:
    /// All that a run with these keys prints, the build date shown as "<date>".
    std::string help(const std::string& line) {
        std::string text = parse(line);
        text += printed([&] { EXPECT_TRUE(session->hintOutput()); });
        return std::regex_replace(text, std::regex("Metrig 2.0, .{11}\n"), "Metrig 2.0, <date>\n");
    }
};

TEST_F(Help, ToTheLetter) {
    std::string text;
    for (const char* line : {"-h", "-?", "-??", "-he", "-h?", "-h -?z"}) {
        text += help(line);
    }
    expectGolden("unit/session/golden/help.txt", text);
}

TEST_F(Help, HidesTheKeysOfDevelopers) {
    const std::string text = help("-hh");
    EXPECT_NE(text.find("<date>\nEXTENDED HELP\n\n-B               = batch mode"), text.npos);
    EXPECT_EQ(text.find("-SU  "), text.npos);
    EXPECT_EQ(std::ranges::count(text, '\n'), 306);
}

}  // namespace
