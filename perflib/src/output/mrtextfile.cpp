#include "output/mrtextfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "output/mrostream.h"

namespace {

constexpr std::size_t MaxSize = std::size_t{1} << 20;

bool isNullDevice(const struct stat& file) {
    struct stat null = {};
    return stat("/dev/null", &null) == 0 && S_ISCHR(null.st_mode) && file.st_rdev == null.st_rdev;
}

/// What keeps the file from being a text, by its kind; null for nothing. Most devices have no end.
const char* faultOfKind(int descriptor) {
    struct stat file = {};
    if (fstat(descriptor, &file) != 0) {
        return "it can't be read";
    }
    if (S_ISDIR(file.st_mode)) {
        return "it is a directory";
    }
    const bool device = S_ISBLK(file.st_mode) || S_ISCHR(file.st_mode);
    return device && isatty(descriptor) == 0 && !isNullDevice(file) ? "it is a device" : nullptr;
}

/// Fills `text`; what keeps it from being a text, or null.
const char* readText(FILE* file, std::string& text) {
    char piece[4096];
    std::size_t count = 0;
    while ((count = std::fread(piece, 1, sizeof piece, file)) > 0) {
        if (std::memchr(piece, '\0', count) != nullptr) {
            return "it is no text";
        }
        text.append(piece, count);
        if (text.size() > MaxSize) {
            return "it is larger than 1 MiB";
        }
    }
    return std::ferror(file) != 0 ? "it can't be read" : nullptr;
}

void appendLines(std::string& text, mrStringList& lines) {
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        } else {
            text[end] = '\0';
        }
        lines.append(text.c_str() + start);
        start = end + 1;
    }
}

}  // namespace

bool mrReadTextFile(i_stream& file, mrString path, mrStringList& lines) {
    if (!file.isOpen()) {
        return false;
    }
    std::string text;
    const char* fault = faultOfKind(fileno(file.file()));
    if (fault == nullptr) {
        fault = readText(file.file(), text);
    }
    if (fault != nullptr) {
        g_ostrm << MSG_ERR << "-- Can't read file " << path << ": " << fault << "\n" << MSG_END;
        return false;
    }
    appendLines(text, lines);
    return true;
}
