#include "stream/mroutputfile.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "stream/mrjournal.h"
#include "stream/mrostream.h"

namespace {

void reportTaken(const mrString& name, const char* by) {
    g_ostrm << MSG_ERR << "-- Can't write file " << name << ": " << by << "\n" << MSG_END;
}

/// Devices, pipes and terminals hold nothing, and any number may write to them.
bool isRegular(FILE* file) {
    struct stat status = {};
    return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

constinit mrOutputFile* mrOutputFile::s_newest = nullptr;

mrOutputFile::mrOutputFile(mrString name, bool append)
    : o_stream(name, IO_WRITE | IO_APPEND | IO_NOPATH, true),
      m_older(s_newest),
      m_append(append || g_journal.resumes()) {
    if (isOpen() && isRegular(m_file) && !claim()) {
        closeFile();
    }
    if (isOpen()) {
        g_journal.watch(fileno(m_file));
    }
    s_newest = this;
}

mrOutputFile::~mrOutputFile() {
    close();
    mrOutputFile** link = &s_newest;
    while (*link != this) {
        link = &(*link)->m_older;
    }
    *link = m_older;
}

/// Of two keys with one file neither gets it. The lock falls with the process, however that ends; a file
/// system without locks is no reason not to write.
bool mrOutputFile::claim() {
    if (isWritten(m_name)) {
        return false;
    }
    if (flock(fileno(m_file), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        reportTaken(m_name, "another run writes it");
        return false;
    }
    return true;
}

bool mrOutputFile::isWritten(const mrString& name) {
    for (mrOutputFile* output = s_newest; output != nullptr; output = output->m_older) {
        if (output->isFile(name)) {
            output->m_isGivenUp = true;
            reportTwoKeys(name);
            return true;
        }
    }
    return false;
}

void mrOutputFile::reportTwoKeys(const mrString& name) { reportTaken(name, "two keys name it"); }

bool mrOutputFile::isFile(const mrString& name) const {
    struct stat own = {};
    struct stat other = {};
    return isOpen() && fstat(fileno(m_file), &own) == 0 && S_ISREG(own.st_mode) &&
           stat(name.c_str(), &other) == 0 && own.st_dev == other.st_dev && own.st_ino == other.st_ino;
}

/// As a run that was killed leaves it, or a disk that was full.
bool mrOutputFile::endsWithinLine() const {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(m_name.c_str(), "r"), std::fclose);
    if (file == nullptr || std::fseek(file.get(), -1, SEEK_END) != 0) {
        return false;
    }
    const int last = std::fgetc(file.get());
    return last != '\n' && last != EOF;
}

long long mrOutputFile::size() const {
    struct stat status = {};
    return isOpen() && fstat(fileno(m_file), &status) == 0 && S_ISREG(status.st_mode)
               ? static_cast<long long>(status.st_size)
               : -1;
}

void mrOutputFile::cut(long long size) {
    if (size >= 0 && size < this->size() && ftruncate(fileno(m_file), static_cast<off_t>(size)) != 0) {
        reportUnwritten();
    }
}

void mrOutputFile::cutHalfLine() {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(m_name.c_str(), "r"), std::fclose);
    long long lines = size();
    if (file == nullptr || lines < 0) {
        return;
    }
    while (lines > 0 && std::fseek(file.get(), static_cast<long>(lines - 1), SEEK_SET) == 0 &&
           std::fgetc(file.get()) != '\n') {
        --lines;
    }
    cut(lines);
}

void mrOutputFile::startEmpty() {
    if (ftruncate(fileno(m_file), 0) != 0) {
        reportUnwritten();
    }
}

void mrOutputFile::prepare(std::string& text) {
    if (m_isGivenUp) {
        text.clear();
    } else if (!m_begun && isRegular(m_file)) {
        if (!m_append) {
            startEmpty();
        } else if (endsWithinLine()) {
            text.insert(0, 1, '\n');
        }
    }
    m_begun = true;
}
