#include "stream/mrtextfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include "stream/mrostream.h"
#include "stream/mrstream.h"

namespace {

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

/// Opening a pipe would wait for a writer, so it is asked for by its name.
bool isPipe(const mrString& path) {
    struct stat file = {};
    return stat(path.c_str(), &file) == 0 && S_ISFIFO(file.st_mode);
}

mrTextFile refused(const mrString& path, const char* fault) {
    g_ostrm << MSG_ERR << "-- Can't read file " << path << ": " << fault << "\n" << MSG_END;
    return mrTextFile::Refused;
}

}  // namespace

mrTextFile mrReadTextFile(mrString path, bool verbose, mrStringList& lines) {
    if (isPipe(path)) {
        return refused(path, "it is a pipe");
    }
    i_stream file(path, IO_READ | IO_NOPATH, verbose);
    if (!file.isOpen()) {
        return mrTextFile::Missing;
    }
    if (const char* fault = faultOfKind(fileno(file.file()))) {
        return refused(path, fault);
    }
    mrStringList read;
    // getline reads empty lines for ever where reading fails
    for (mrString line; std::ferror(file.file()) == 0 && file.getline(line);) {
        read.append(line);
    }
    if (std::ferror(file.file()) != 0) {
        return refused(path, "it can't be read");
    }
    lines.swap(read);
    return mrTextFile::Read;
}
