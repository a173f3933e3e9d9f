#include "stream/mrreplacefile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "stream/mrostream.h"
#include "stream/mrstream.h"

namespace {

bool writeTo(o_stream& file, const mrString& text) {
    if (!file.isOpen()) {
        return false;
    }
    file << text;
    file.flush();
    return std::ferror(file.file()) == 0;
}

bool writeInPlace(const mrString& name, const mrString& text) {
    o_stream file(name, IO_WRITE | IO_NOPATH, true);
    return writeTo(file, text);
}

bool takeOwnerAndMode(const mrString& name, const struct stat& from) {
    constexpr mode_t permissions = 07777;
    return chown(name.c_str(), from.st_uid, from.st_gid) == 0 &&
           chmod(name.c_str(), from.st_mode & permissions) == 0;
}

/// The file that `name` leads to, behind all links.
mrString linkTarget(const mrString& name) {
    const std::unique_ptr<char, void (*)(void*)> path(realpath(name.c_str(), nullptr), std::free);
    return path != nullptr ? mrString(path.get()) : name;
}

/// A file on its way to take the place of `name`; removed unless it gets there.
class FileBeside {
  public:
    explicit FileBeside(const mrString& name)
        : m_name(name),
          m_target(linkTarget(name)),
          m_beside(m_target + ".tmp" + mrText(static_cast<int>(getpid()))) {}
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    ~FileBeside() {
        if (m_made) {
            std::remove(m_beside.c_str());
        }
    }

    /// False if what stands at `name` is no file or has other names too, which would keep the old content, or
    /// if its folder does not take another file of that owner.
    bool make() {
        struct stat old = {};
        if (stat(m_target.c_str(), &old) != 0 || !S_ISREG(old.st_mode) || old.st_nlink > 1) {
            return false;
        }
        m_made = o_stream(m_beside, IO_WRITE | IO_NOPATH, false).isOpen();
        return m_made && takeOwnerAndMode(m_beside, old);
    }
    /// A failure is told under the name that the user knows.
    bool write(const mrString& text) const {
        o_stream file(std::fopen(m_beside.c_str(), "w"), m_name.c_str());
        return writeTo(file, text);
    }
    bool moveOver() {
        m_made = std::rename(m_beside.c_str(), m_target.c_str()) != 0;
        if (m_made) {
            const char* reason = std::strerror(errno);
            g_ostrm << MSG_ERR << "-- Can't write file " << m_name << ": " << reason << "\n" << MSG_END;
        }
        return !m_made;
    }

  private:
    mrString m_name;
    mrString m_target;
    mrString m_beside;
    bool m_made = false;
};

}  // namespace

bool mrReplaceFile(mrString name, const mrString& text) {
    // Moving over a file asks for no right on the file itself. Opening it to append does, and leaves it as it
    // is.
    if (!o_stream(name, IO_WRITE | IO_APPEND | IO_NOPATH, true).isOpen()) {
        return false;
    }
    FileBeside beside(name);
    return beside.make() ? beside.write(text) && beside.moveOver() : writeInPlace(name, text);
}
