#include "machine/wholefile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace lab {

namespace {

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// The rights that a file made by open() would get.
mode_t usualRights() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

void writeWhole(const std::string& path, std::string_view bytes) {
    namespace fs = std::filesystem;
    std::error_code none;
    const bool isThere = fs::exists(path, none);
    if (isThere && !fs::is_regular_file(path, none)) {
        throw std::runtime_error(path + ": is no file that could be replaced");
    }
    // a link stays one
    const std::string target = isThere ? fs::canonical(path).string() : path;
    std::string beside = target + ".XXXXXX";
    const int file = mkstemp(beside.data());
    const auto fail = [&](int error) {
        throw std::runtime_error(path + ": can't be written: " + std::strerror(error));
    };
    if (file < 0) {
        fail(errno);
    }
    bool good = writeAll(file, bytes) && fchmod(file, usualRights()) == 0 && fsync(file) == 0;
    int error = errno;
    if (close(file) != 0 && good) {
        good = false;
        error = errno;
    }
    if (good && std::rename(beside.c_str(), target.c_str()) != 0) {
        good = false;
        error = errno;
    }
    if (!good) {
        unlink(beside.c_str());
        fail(error);
    }
}

}  // namespace lab
