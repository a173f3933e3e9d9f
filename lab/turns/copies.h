#pragma once

/// Fresh copies of the files that are measured. The pages of a file stay the same for hours, and which they
/// are shows in the figures, so each process gets pages of its own.

#include <cstddef>
#include <string>
#include <vector>

#include "machine/random.h"

namespace lab {

/// The shared objects of the library `zylch`.
inline const std::vector<std::string> libraryObjects = {"libzylcore.so.10", "libzyls.so.10",
                                                        "libzylch.so.10"};

/// A file, and the name that its copy gets.
struct Original {
    std::string name;
    std::string path;
};

/// Folders in memory, where the system has room for files that can be mapped as programs there. They
/// vanish with the object, and what an object of a killed process left behind vanishes with the next one.
class LibraryCopies {
  public:
    /// The originals of one side or of two; the sides are copied in random order. std::runtime_error if a
    /// file can't be read or written.
    LibraryCopies(const std::vector<std::vector<Original>>& originals, Random& random);
    LibraryCopies(const LibraryCopies&) = delete;
    LibraryCopies& operator=(const LibraryCopies&) = delete;
    ~LibraryCopies();

    /// Of side 0 or 1; both are of one length.
    std::string folder(std::size_t side) const { return m_base + (side == 0 ? "/old" : "/new"); }

    /// Takes the files away before the object ends; who has them mapped keeps them.
    void remove();

  private:
    std::string m_base;
    int m_lock = -1;
};

}  // namespace lab
