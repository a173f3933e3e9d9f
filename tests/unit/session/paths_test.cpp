#include "session_fixture.h"

namespace {

struct DirRow {
    const char* exe;
    const char* dir;
    const char* full;
};

TEST(Paths, DirectoriesAreRelativeToTheExecutable) {
    const DirRow rows[] = {
        {"/opt/bin/metrig", "", "/opt/bin/"},
        {"/opt/bin/metrig", "out", "/opt/bin/out/"},
        {"/opt/bin/metrig", "out/", "/opt/bin/out/"},
        {"/opt/bin/metrig", "./out", "/opt/bin/./out/"},
        {"/opt/bin/metrig", "/var/out", "/var/out/"},
        {"/opt/bin/metrig", "\\out\\", "\\out\\"},
        {"/opt/bin/metrig", "c:out", "c:out/"},
        {"/opt/bin/metrig", "c", "/opt/bin/c/"},
        {"metrig", "", ""},
        {"metrig", "out", "out/"},
        {"", "out", "out/"},
    };
    for (const DirRow& row : rows) {
        mrSession::m_exePath = row.exe;
        EXPECT_EQ(str(mrSession::genDirName(row.dir)), row.full) << row.exe << " " << row.dir;
    }
}

TEST(Paths, NamesOfKeysGetDirectoryAndExtension) {
    mrSession::m_defName = "metrig";
    const DirRow rows[] = {
        {"dir/", "table", "dir/table.csv"},
        {"dir/", "table.dat", "dir/table.dat"},
        {"dir/", "/tmp/t", "/tmp/t"},
        {"dir/", "\\t", "\\t"},
        {"dir/", "c:t", "c:t"},
        {"dir/", "", "dir/metrig.csv"},
        {"dir/", "v1.2/table", "dir/v1.2/table"},
        {"", "t", "t.csv"},
    };
    for (const DirRow& row : rows) {
        EXPECT_EQ(str(mrSession::genPathName(row.exe, row.dir, extCsv)), row.full) << row.dir;
    }
}

TEST(Paths, FilesOfTestsAreLookedForInTheirFolders) {
    mrSession::m_exePath = "/opt/metrig";
    const DirRow rows[] = {
        {"in/", "data", "in/data"},  {"in/", "in/data", "in/data"}, {"in/", "/data", "/data"},
        {"in/", "c:data", "c:data"}, {"", "data", "/opt/data"},
    };
    for (const DirRow& row : rows) {
        mrSession::m_inDir = row.exe;
        mrSession::m_outDir = "other/";
        EXPECT_EQ(str(mrSession::getInPath(row.dir)), row.full);
        std::swap(mrSession::m_inDir, mrSession::m_outDir);
        EXPECT_EQ(str(mrSession::getOutPath(row.dir)), row.full);
    }
}

TEST(Paths, DefaultNameIsTheTitleOfTheExecutable) {
    mrSession::m_exePath = "/opt/metrig.exe";
    mrSession::setDefName("");
    EXPECT_EQ(str(mrSession::m_defName), "metrig");
    mrSession::setDefName("run");
    EXPECT_EQ(str(mrSession::m_defName), "run");
}

}  // namespace
