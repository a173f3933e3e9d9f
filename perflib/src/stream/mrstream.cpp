#include "stream/mrstream.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "stream/mrfilenames.h"
#include "stream/mrjournal.h"
#include "stream/mrostream.h"

namespace {

constexpr std::size_t WriteSize = 4096;
constexpr std::size_t MaxPending = std::size_t{1} << 20;

mrString openPath(const mrString& name, int mode) {
    if ((mode & IO_NOPATH) != 0) {
        return name;
    }
    if ((mode & IO_READ) != 0) {
        return mrFileNames::getInPath(name);
    }
    return (mode & IO_WRITE) != 0 ? mrFileNames::getOutPath(name) : name;
}

mrString openMode(int mode) {
    mrString text;
    if ((mode & IO_READ) != 0) {
        text << "r";
    } else if ((mode & IO_WRITE) != 0) {
        text << ((mode & IO_APPEND) != 0 ? "a" : "w");
    }
    return (mode & IO_BINARY) != 0 ? text + "b" : text;
}

const char* purpose(int mode) {
    if ((mode & IO_READ) != 0) {
        return " to read";
    }
    return (mode & IO_WRITE) != 0 ? " to write" : "";
}

/// Other errors of a file that is brought to the disk say that it has none: a pipe, a terminal.
bool isLoss(int error) { return error == EIO || error == ENOSPC || error == EDQUOT; }

/// The colon stands at the end of the line with no reason behind it: listings have always read so.
void reportFailure(const mrString& path, int mode) {
    g_ostrm << MSG_ERR;
    if (path.empty()) {
        g_ostrm << "-- Can't open file. Wrong filename (NULL) ";
    } else {
        g_ostrm << "-- Can't open file " << path;
    }
    g_ostrm << purpose(mode) << ": "
            << "\n"
            << MSG_END;
}

}  // namespace

io_stream::io_stream(mrString name, int mode, bool verbose) : m_file(nullptr) {
    const mrString path = name.empty() ? name : openPath(name, mode);
    m_name = path;
    if (!path.empty()) {
        m_file = std::fopen(path.c_str(), openMode(mode).c_str());
    }
    if (m_file == nullptr && verbose) {
        reportFailure(path, mode);
    }
}

io_stream::~io_stream() { closeFile(); }

bool io_stream::closeFile() {
    const bool isStandard = m_file == stdin || m_file == stdout;
    const bool closed = m_file == nullptr || isStandard || std::fclose(m_file) == 0;
    m_file = nullptr;
    return closed;
}

/// Nothing of a named file is left to the buffer of the C library, which drops what it can't write.
o_stream::o_stream(mrString name, int mode, bool verbose) : io_stream(name, mode, verbose), m_isNamed(true) {
    if (isOpen()) {
        std::setvbuf(m_file, nullptr, _IONBF, 0);
    }
}

void o_stream::reportUnwritten() {
    const char* reason = std::strerror(errno);
    if (!m_unwritten) {
        m_unwritten = true;
        g_ostrm << MSG_ERR << "-- Can't write file " << m_name << ": " << reason << "\n" << MSG_END;
    }
}

void o_stream::write(const mrString& text) {
    if (g_journal.silent()) {
        return;
    }
    if (m_isNamed && isOpen()) {
        m_pending += text.c_str();
        // a process that is killed must not take lines with it
        if (m_pending.size() >= WriteSize || (g_journal.kept() && m_pending.ends_with('\n'))) {
            send();
        }
    } else if (std::fputs(text.c_str(), isOpen() ? file() : stdout) == EOF) {
        reportUnwritten();
    }
}

void o_stream::send() {
    if (m_pending.empty()) {
        return;
    }
    prepare(m_pending);
    m_pending.erase(0, std::fwrite(m_pending.data(), 1, m_pending.size(), m_file));
    if (!m_pending.empty()) {
        reportUnwritten();
        limitPending();
    }
}

/// Drops whole lines: the first one may stand in the file in part, and the last one goes on.
void o_stream::limitPending() {
    const std::size_t first = m_pending.find('\n');
    if (m_pending.size() > MaxPending && first != std::string::npos) {
        m_pending.erase(first, m_pending.rfind('\n') - first);
    }
}

void o_stream::flush() {
    if (m_file == nullptr) {
        return;
    }
    send();
    if (std::fflush(m_file) != 0) {
        reportUnwritten();
    }
}

void o_stream::sync() {
    flush();
    if (m_file != nullptr && fdatasync(fileno(m_file)) != 0 && isLoss(errno)) {
        reportUnwritten();
    }
}

void o_stream::close() {
    flush();
    if (!closeFile()) {
        reportUnwritten();
    }
}

o_stream& operator<<(o_stream& stream, mrString text) {
    stream.write(text);
    return stream;
}

bool i_stream::getline(mrString& line) {
    line = "";
    if (m_file == nullptr) {
        return false;
    }
    // a std::string, since an mrString grows to the exact need and a long line would be copied piece by piece
    std::string text;
    char piece[512];
    while (std::fgets(piece, sizeof piece, m_file) != nullptr) {
        text += piece;
        if (text.ends_with('\n')) {
            text.pop_back();
            line = text.c_str();
            return true;
        }
        if (std::strlen(piece) < sizeof piece - 1) {
            break;
        }
    }
    line = text.c_str();
    return !line.empty() || std::feof(m_file) == 0;
}

bool i_stream::atEnd() {
    if (m_file == nullptr) {
        return true;
    }
    const int next = std::fgetc(m_file);
    return next == EOF || std::ungetc(next, m_file) == EOF;
}
