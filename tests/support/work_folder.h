#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// The whole file, bytes as they are; empty if it can't be read.
inline std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A folder of its own among the system's temporary ones, gone with the object.
class WorkFolder {
  public:
    WorkFolder() {
        m_path = (std::filesystem::temp_directory_path() / "metrig_test_XXXXXX").string();
        if (mkdtemp(m_path.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    /// Of a file in it; of the folder, with the "/" after it, when the name is empty.
    std::string path(const std::string& name = "") const { return m_path + "/" + name; }
    /// Writes a file; returns its path.
    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    std::string content(const std::string& name) const { return readFile(path(name)); }
    /// Files and folders directly in it.
    auto count() const { return std::distance(std::filesystem::directory_iterator(m_path), {}); }

  private:
    std::string m_path;
};
