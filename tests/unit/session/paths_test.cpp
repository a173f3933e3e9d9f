#include <gtest/gtest.h>

#include "session/mr.h"
#include "support/captured_output.h"

namespace {

TEST(Paths, AreMadeOfFolderAndName) {
    mrSession::m_defName = "metrig";
    mrSession::m_outDir = "other/";
    using Path = mrString (*)(const char* where, const char* name);
    const Path directory = [](const char* exe, const char* dir) {
        mrSession::m_exePath = exe;
        return mrSession::genDirName(dir);
    };
    const Path ofKey = [](const char* dir, const char* name) {
        return mrSession::genPathName(dir, name, extCsv);
    };
    const Path ofTest = [](const char* dir, const char* name) {
        mrSession::m_exePath = "/opt/metrig";
        mrSession::m_inDir = dir;
        return mrSession::getInPath(name);
    };
    const std::tuple<Path, const char*, const char*, const char*> rows[] = {
        {directory, "/opt/bin/metrig", "out", "/opt/bin/out/"},
        {directory, "/opt/bin/metrig", "/var/out", "/var/out/"},
        {directory, "metrig", "c:out", "c:out/"},
        {directory, "metrig", "out", "out/"},
        {ofKey, "dir/", "table.dat", "dir/table.dat"},
        {ofKey, "dir/", "", "dir/metrig.csv"},
        {ofKey, "dir/", "v1.2/table", "dir/v1.2/table"},
        {ofTest, "in/", "data", "in/data"},
        {ofTest, "in/", "in/data", "in/data"},
        {ofTest, "", "data", "/opt/data"},
    };
    for (const auto& [path, where, name, full] : rows) {
        EXPECT_EQ(str(path(where, name)), full) << where << " " << name;
    }
}

}  // namespace
