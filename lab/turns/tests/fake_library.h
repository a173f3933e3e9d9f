#pragma once

/// Folders that look like libraries, whose text tells fake_instrument what to do.

#include <elf.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "turns/copies.h"

namespace lab {

/// A folder that is gone with the object.
class TestFolder {
  public:
    TestFolder() { mkdtemp(m_path.data()); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() { std::filesystem::remove_all(m_path); }

    std::string path(const std::string& name) const { return m_path + "/" + name; }

    /// A library in it, by default all objects of `zylch`; returns its path.
    std::string library(const std::string& name, const std::string& script, unsigned char bits = ELFCLASS64,
                        const std::vector<std::string>& objects = libraryObjects) const {
        Elf64_Ehdr header{};
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = bits;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_machine = EM_X86_64;
        std::filesystem::create_directory(path(name));
        for (const std::string& object : objects) {
            std::ofstream file(path(name) + "/" + object, std::ios::binary);
            file.write(reinterpret_cast<const char*>(&header), sizeof header)
                << script << "\nfile " << object << "\n";  // no two of them are alike
        }
        return path(name);
    }

  private:
    std::string m_path = testing::TempDir() + "lab_XXXXXX";
};

}  // namespace lab
