#include "stream/mrinifile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "support/captured_output.h"
#include "support/temp_folder.h"

namespace {

using namespace std::string_literals;

TEST(IniFile, Reads) {
    // Content, section, key, value.
    const std::tuple<std::string, const char*, const char*, const char*> rows[] = {
        {"  [ s ]\n\n\t\n  x = 1 // note\n", "s", " x\t", "1"},
        {"[s]\nx=a=b", "s", "x", "a=b"},
        {"[s]\nalone\n", "s", "alone", "~~~"},
        {"x=1\n[s]\n", "s", "x", "absent"},
        {"[a]\nx=1\n[b]\nx=2\n[a]\ny=3\n", "a", "y", "3"},
        {"[a]\nx=1\ny=b[c]\nx=2\n", "c", "x", "2"},
        {"[s]\r\nx=1\r\n", "s", "x", "1\r"},
        // a NUL ends the line, and a long one goes on after the piece that was read
        {"\0[r]\n[s]\0\na\0"s + std::string(509, 'b') + "x=1", "s", "x", "1"},
        {"//" + std::string(1 << 21, '/') + "\n[s]\nx=1", "s", "x", "1"},
    };
    const TempFolder folder;
    for (const auto& [content, section, key, value] : rows) {
        mrIniFile ini;
        EXPECT_TRUE(ini.open(folder.file("a.ini", content), false));
        EXPECT_EQ(str(ini.read(section, key, "absent")), value) << content;
        ini.write("s", "new", "1", "");
        ini.close();
        EXPECT_EQ(folder.content("a.ini"), content) << "opened to be read alone";
    }
}

TEST(IniFile, WritesWhatChanged) {
    using Change = void (*)(mrIniFile & ini);
    static constexpr std::tuple<const char*, Change, const char*> rows[] = {
        {"[s]\nk=v // c\n", [](mrIniFile& ini) { ini.write("s", "k", "w", "new"); }, "\n[s]\nk=w\n"},
        {"", [](mrIniFile& ini) { ini.write("s", " n ", "v", "c"); }, "\n[s]\nn=v\t// c\n"},
        {"[s]\na\nb = 1\n[t]\n", [](mrIniFile&) {}, "\n[s]\na\nb=1\n\n[t]\n"},
        {"[s]\na=1\n", [](mrIniFile& ini) { ini.write("s", "a"); }, "\n[s]\na\n"},
        {"[s]\na=1\n[t]\nb=2\n", [](mrIniFile& ini) { ini.eraseSection("s"); }, "\n[t]\nb=2\n"},
        {"[s]\na=1\nb=2\n", [](mrIniFile& ini) { ini.deleteKey("s", "a"); }, "\n[s]\nb=2\n"},
    };
    const TempFolder folder;
    for (const auto& [before, change, after] : rows) {
        mrIniFile ini;
        EXPECT_TRUE(ini.open(folder.file("a.ini", before), true));
        change(ini);
        ini.deleteKey("s", "absent");
        ini.close();
        EXPECT_EQ(folder.content("a.ini"), after) << before;
    }
}

TEST(IniFile, IsNeverHalfWritten) {
    const TempFolder folder;
    const mrString name = folder.file("a.ini", "[s]\nk=v\n");
    chmod(name.c_str(), 0640);
    std::filesystem::create_symlink("a.ini", folder.path("link.ini"));
    CapturedOutput output(MSG_ERR);
    mrIniFile ini;
    EXPECT_TRUE(ini.open(folder.path("link.ini").c_str(), true));
    ini.close();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.ini")));
    EXPECT_EQ(std::filesystem::status(name.c_str()).permissions(), std::filesystem::perms{0640});
    EXPECT_TRUE(ini.open(name, true));
    ini.write("s", "n", std::string(5000, 'x').c_str(), "");
    // A full disk: files stop growing.
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{4096, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    ini.close();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(output.text(), "-- Can't write file " + str(name) + ": File too large\n");
    EXPECT_EQ(folder.content("a.ini"), "\n[s]\nk=v\n");
    EXPECT_EQ(folder.count(), 2);
    std::filesystem::create_hard_link(name.c_str(), folder.path("other.ini"));
    EXPECT_TRUE(ini.open(name, true));
    ini.write("s", "k", "w", "");
    ini.close();
    EXPECT_EQ(folder.content("other.ini"), "\n[s]\nk=w\n") << "written in place";
}

}  // namespace
