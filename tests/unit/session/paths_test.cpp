#include "session_fixture.h"

namespace {

std::string directory(const char* exe, const char* dir) {
    mrSession::m_exePath = exe;
    return str(mrSession::genDirName(dir));
}

std::string fileOfKey(const char* dir, const char* name) {
    mrSession::m_defName = "metrig";
    return str(mrSession::genPathName(dir, name, extCsv));
}

std::string fileOfTest(const char* dir, const char* name) {
    mrSession::m_exePath = "/opt/metrig";
    mrSession::m_inDir = dir;
    mrSession::m_outDir = "other/";
    return str(mrSession::getInPath(name));
}

TEST(Paths, AreMadeOfFolderAndName) {
    const struct {
        std::string (*path)(const char* where, const char* name);
        const char* where;
        const char* name;
        const char* full;
    } rows[] = {
        {directory, "/opt/bin/metrig", "", "/opt/bin/"},
        {directory, "/opt/bin/metrig", "out", "/opt/bin/out/"},
        {directory, "/opt/bin/metrig", "./out/", "/opt/bin/./out/"},
        {directory, "/opt/bin/metrig", "/var/out", "/var/out/"},
        {directory, "/opt/bin/metrig", "c:out", "c:out/"},
        {directory, "/opt/bin/metrig", "c", "/opt/bin/c/"},
        {directory, "metrig", "out", "out/"},
        {fileOfKey, "dir/", "table", "dir/table.csv"},
        {fileOfKey, "dir/", "table.dat", "dir/table.dat"},
        {fileOfKey, "dir/", "/tmp/t", "/tmp/t"},
        {fileOfKey, "dir/", "", "dir/metrig.csv"},
        {fileOfKey, "dir/", "v1.2/table", "dir/v1.2/table"},
        {fileOfTest, "in/", "data", "in/data"},
        {fileOfTest, "in/", "in/data", "in/data"},
        {fileOfTest, "", "data", "/opt/data"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.path(row.where, row.name), row.full) << row.where << " " << row.name;
    }
}

}  // namespace
