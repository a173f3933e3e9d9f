#include "turns/copies.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace lab {

namespace {

namespace fs = std::filesystem;

const std::string namesBegin = "metrig-lab-";

constexpr std::uint64_t PageSize = 4096;
constexpr std::uint64_t FillerPages = 64;
/// Left free beside what is copied.
constexpr std::uint64_t RoomKept = 16 << 20;

bool fits(const std::string& folder) {
    struct statvfs system {};
    return statvfs(folder.c_str(), &system) == 0 && (system.f_flag & ST_NOEXEC) == 0 &&
           system.f_bavail * system.f_frsize > RoomKept && access(folder.c_str(), W_OK) == 0;
}

/// In memory where that can be.
std::string homeOfCopies() {
    if (fits("/dev/shm")) {
        return "/dev/shm";
    }
    std::error_code failed;
    return fs::temp_directory_path(failed).string();
}

/// The lock on a folder lasts as long as the process that made it.
bool isAbandoned(const fs::path& folder) {
    const int number = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (number < 0) {
        return false;
    }
    const bool free = flock(number, LOCK_EX | LOCK_NB) == 0;
    close(number);
    return free;
}

void removeAbandoned(const std::string& home) {
    std::error_code failed;
    for (const auto& entry : fs::directory_iterator(home, failed)) {
        if (entry.path().filename().string().starts_with(namesBegin) && isAbandoned(entry.path())) {
            fs::remove_all(entry.path(), failed);
        }
    }
}

void copy(const std::string& from, const std::string& to) {
    std::ifstream source(from, std::ios::binary);
    std::ofstream target(to, std::ios::binary);
    // at least a byte, or the stream counts as failed
    if (!source || !(target << source.rdbuf()) || !target.flush()) {
        throw std::runtime_error("can't copy " + from + " to " + to);
    }
    target.close();
    fs::permissions(to, fs::perms::owner_all);  // programs are among them
}

void writeFiller(const std::string& path, std::uint64_t pages) {
    std::ofstream(path, std::ios::binary) << std::string(pages * PageSize, '\0');
}

}  // namespace

LibraryCopies::LibraryCopies(const std::vector<std::vector<Original>>& originals, Random& random) {
    const std::string home = homeOfCopies();
    removeAbandoned(home);
    m_base = home + "/" + namesBegin + "XXXXXX";
    if (mkdtemp(m_base.data()) == nullptr) {
        throw std::runtime_error(home + ": " + std::generic_category().message(errno));
    }
    m_lock = open(m_base.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    flock(m_lock, LOCK_EX);
    try {
        for (const std::size_t side : random.order(originals.size())) {
            fs::create_directory(folder(side));
            for (const auto& [name, path] : originals[side]) {
                writeFiller(folder(side) + "/filler-" + name, random.below(FillerPages));
                copy(path, folder(side) + "/" + name);
            }
        }
    } catch (...) {
        remove();
        throw;
    }
}

LibraryCopies::~LibraryCopies() { remove(); }

void LibraryCopies::remove() {
    if (!m_base.empty()) {
        std::error_code failed;
        fs::remove_all(m_base, failed);
        m_base.clear();
        close(m_lock);
    }
}

}  // namespace lab
