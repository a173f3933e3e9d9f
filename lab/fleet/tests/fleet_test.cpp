/// The file of kinds, what follows from it, and the road without Slurm.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>

#include "fleet/fleetfile.h"
#include "fleet/slurm.h"
#include "turns/tests/fake_library.h"

namespace lab {
namespace {

FleetFile fleetOf(const TestFolder& folder, const std::string& text) {
    std::ofstream(folder.path("fleet.toml")) << text;
    return readFleetFile(folder.path("fleet.toml"));
}

TEST(FleetFiles, KindsHaveWhatIsSaidForAll) {
    const TestFolder folder;
    const FleetFile fleet = fleetOf(folder, R"(
folder = "/shared"
partition = "perf"
[[kind]]
name = "a"
constraint = "avx2&big"
keys = ["-TAVX2"]
core = 3
[[kind]]
name = "b"
node = "n7"
sessions = 5
partition = "old"
)");
    ASSERT_EQ(fleet.kinds.size(), 2);
    EXPECT_EQ(fleet.sessions(), 7);
    EXPECT_EQ(fleet.kinds[0].core, 3);
    EXPECT_EQ(fleet.kinds[0].keys, std::vector<std::string>{"-TAVX2"});
    EXPECT_EQ(fleet.kinds[0].wishes.partition, "perf");
    EXPECT_EQ(fleet.kinds[1].wishes.partition, "old");
}

TEST(FleetFiles, RefuseInWords) {
    const std::pair<const char*, const char*> rows[] = {
        {"folder = \"/s\"\n", "lists no [[kind]]"},
        {"folder = \"s\"\n[[kind]]\nname = \"a\"", "absolute"},
        {"folder = \"/s\"\nfolder = \"/t\"", "toml:2: "},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nnod = \"n1\"", "toml:4: \"nod\" is no key here"},
        {"folder = \"/s\"\n[[kind]]\nname = \"../a\"", "toml:2: a kind has a \"name\""},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\n[[kind]]\nname = \"a\"", "toml:4: a second kind a"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nsessions = 0", "whole number from 1"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nsessions = \"2\"", "whole number from 1"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nkeys = \"-f\"", "list of texts"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nconstraint = \"x\\n#SBATCH\"", "blank, a quote or worse"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nnode = \"n\"\nconstraint = \"x\"", "not both"},
        {"folder = \"/s\"\n[[kind]]\nname = \"a\"\nhost = \"-oProxyCommand=x\"", "is no host"},
    };
    const TestFolder folder;
    for (const auto& [text, words] : rows) {
        try {
            fleetOf(folder, text);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& reason) {
            EXPECT_NE(std::string(reason.what()).find(words), std::string::npos) << reason.what();
        }
    }
    EXPECT_THROW(readFleetFile(folder.path("none.toml")), std::runtime_error);
}

TEST(Kinds, ThatNobodyHasAreNamed) {
    const std::vector<Node> nodes = nodesIn("n1|avx2,big|all*\nn1|avx2,big|perf\nn2|(null)|all*\n");
    const struct {
        const char* node;
        const char* constraint;
        const char* partition;
        bool has;
    } rows[] = {
        {"n1", "", "", true},         {"n9", "", "", false},
        {"n2", "", "perf", false},    {"", "avx2", "", true},
        {"", "avx512", "", false},    {"", "avx2&small", "", false},
        {"", "small|big", "", true},  {"", "avx512|avx2&small", "", false},
        {"", "avx2", "all", true},    {"", "", "none", false},
        {"", "[avx512*2]", "", true},
    };
    for (const auto& row : rows) {
        Kind kind;
        kind.name = "k";
        kind.node = row.node;
        kind.constraint = row.constraint;
        kind.wishes.partition = row.partition;
        EXPECT_EQ(kindsOfNobody({kind}, nodes).empty(), row.has)
            << row.node << " " << row.constraint << " " << row.partition;
    }
}

struct Outcome {
    int status = -1;
    std::string output;
};

Outcome shell(const std::string& command) {
    Outcome outcome;
    std::FILE* pipe = popen(("exec 2>&1; " + command).c_str(), "r");
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        outcome.output.push_back(static_cast<char>(c));
    }
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

/// Hosts are folders of this machine: what would be ssh runs the command here, with the host in its words.
class Hosts : public testing::Test {
  protected:
    Hosts() {
        m_folder.library("old one", "");
        m_folder.library("new", "slow F2 1.5");
        std::ofstream(m_folder.path("ssh")) << "#!/bin/bash\n[ \"$1\" != gone ] || exit 255\n"
                                               "exec bash -c \"$2\"\n";
        std::filesystem::permissions(m_folder.path("ssh"), std::filesystem::perms(0755));
        std::ofstream(m_folder.path("reperf.txt")) << "text";
        std::ofstream(m_folder.path("fleet.toml"))
            << "folder = \"" << m_folder.path("far") << "\"\nsessions = 1\nfiles = [\"reperf.txt\"]\n"
            << "[ssh]\ncommand = [\"" << m_folder.path("ssh") << "\"]\n"
            << "[[kind]]\nname = \"a\"\nhost = \"here\"\nkeys = [\"-f it's\"]\n"
            << "[[kind]]\nname = \"b\"\nhost = \"gone\"\n";
    }

    Outcome fleet(const std::string& more) {
        return shell("cd " + m_folder.path("") + "; " LAB_PROGRAM " fleet fleet.toml --road ssh -o out.db " +
                     more +
                     " -- compare 'old one' new --instrument " LAB_FAKE_INSTRUMENT
                     " --no-wait --epochs=3 --pairs=12:24 -- '-fF one'");
    }

    TestFolder m_folder;
};

TEST_F(Hosts, MeasureOneAfterTheOther) {
    const Outcome dry = fleet("--dry-run");
    EXPECT_NE(dry.output.find("-- '-fF one' '-f it'\\''s'"), std::string::npos) << dry.output;
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("far")));

    const Outcome outcome = fleet("");
    EXPECT_EQ(outcome.status, 1) << outcome.output;
    EXPECT_NE(outcome.output.find("b: left out: gone"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("1 of 2 sessions are missing"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("F2        slower +50.0"), std::string::npos) << outcome.output;

    const Outcome again = shell("cd " + m_folder.path("") +
                                "; cp out.db before.db; " LAB_PROGRAM
                                " merge before.db far/*/a.1.db; " LAB_PROGRAM " show out.db --kind a");
    EXPECT_NE(again.output.find("0 new sessions, 0 new visits"), std::string::npos) << again.output;
    EXPECT_EQ(again.status, 1) << again.output;
    EXPECT_EQ(fleet("--label x").status, 1);
    EXPECT_NE(shell("cd " + m_folder.path("") + "; " LAB_PROGRAM " show out.db").output.find("a: 2 sessions"),
              std::string::npos)
        << "another label is another run";
}

TEST_F(Hosts, OptionsThatASessionHasFromTheFleetAreRefused) {
    const Outcome outcome = shell("cd " + m_folder.path("") +
                                  "; " LAB_PROGRAM " fleet fleet.toml -- compare 'old one' new --core 1");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.output.find("--core"), std::string::npos) << outcome.output;
}

}  // namespace
}  // namespace lab
