#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "text/mrstring.h"

/// A folder of its own for the files of a test, gone with the test.
class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "metrig_test_XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { std::filesystem::remove_all(m_path); }

    std::string path(const std::string& name = "") const { return m_path + "/" + name; }
    /// Writes a file; returns its path.
    mrString file(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name).c_str();
    }
    std::string content(const std::string& name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Files and folders directly in it.
    auto count() const { return std::distance(std::filesystem::directory_iterator(m_path), {}); }

  private:
    std::string m_path;
};
