/// metrig-lab history as a nightly job runs it.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "turns/tests/fake_library.h"

namespace lab {
namespace {

class Nights : public testing::Test {
  protected:
    Nights() {
        m_folder.library("a", "");
        m_folder.library("b", "slow F2 1.5");
        m_folder.library("c", "slow F2 1.5\nslow F3 1.001");
    }

    /// What the program says, and its status at the end.
    std::string lab(const std::string& arguments) {
        std::string output;
        const std::string command = "exec 2>&1; cd " + m_folder.path("") + "; " LAB_PROGRAM " " + arguments;
        std::FILE* pipe = popen(command.c_str(), "r");
        for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
            output.push_back(static_cast<char>(c));
        }
        return output + "status " + std::to_string(WEXITSTATUS(pclose(pipe)));
    }

    void compare(const std::string& older, const std::string& newer) {
        lab("compare " + older + " " + newer + " -o " + older + newer +
            ".db --instrument " LAB_FAKE_INSTRUMENT " --no-wait --epochs 3");
    }

    TestFolder m_folder;
};

TEST_F(Nights, TellAChangeThatLasts) {
    compare("a", "b");
    compare("a", "c");
    const struct {
        const char* arguments;
        const char* words;
        const char* status;
    } rows[] = {
        {"history show h.db", "h.db: no such file", "status 2"},
        {"history add h.db nothing.db", "nothing.db", "status 2"},
        {"history add h.db ab.db --label ''", "control characters", "status 2"},
        {"history add h.db ab.db --day tomorrow", "no day", "status 2"},
        {"history add h.db ab.db --label two --old-label one --revision cafe12", "two against one",
         "status 0"},
        {"history add h.db ab.db", "there already", "status 0"},
        {"history add ab.db ab.db", "ab.db: no history", "status 2"},
        {"history show h.db --fail-on slower", "(+50.00% at two, not measured again yet)", "status 0"},
        {"history show h.db --good", "one\n", "status 0"},
        {"history add h.db ac.db --label three", "three against one", "status 0"},
        {"history show h.db --fail-on slower", "+50.00% at two", "status 1"},
        {"history show h.db --fail-on slower --function F1", "none", "status 0"},
        {"history show h.db --fail-on change --since cafe12", "0 became slower", "status 0"},
        {"history show h.db --since nobody", "nobody", "status 2"},
        {"history show h.db --good", "three\n", "status 0"},
        {"history show h.db --json", "\"schema\":\"metrig-lab.history\"", "status 0"},
        {"history page h.db -o h.db", "the history itself", "status 2"},
        {"history page h.db", "h.html", "status 0"},
    };
    for (const auto& row : rows) {
        const std::string said = lab(row.arguments);
        EXPECT_NE(said.find(row.words), std::string::npos) << row.arguments << "\n" << said;
        EXPECT_TRUE(said.ends_with(row.status)) << row.arguments << "\n" << said;
    }
    EXPECT_GT(std::filesystem::file_size(m_folder.path("h.html")), 100000U);
}

}  // namespace
}  // namespace lab
