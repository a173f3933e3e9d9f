#include "output/mrreplacefile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "output/mrostream.h"
#include "output/mrstream.h"

namespace {

bool writeTo(o_stream& file, const mrString& text) {
    if (!file.isOpen()) {
        return false;
    }
    file << text;
    file.flush();
    return std::ferror(file.file()) == 0;
}

/// Closed by the time it comes back.
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

/// A file on its way to take the place of another; removed unless it gets there.
class FileBeside {
  public:
    explicit FileBeside(const mrString& target)
        : m_target(target), m_name(target + ".tmp" + mrText(static_cast<int>(getpid()))) {}
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    ~FileBeside() {
        if (m_made) {
            std::remove(m_name.c_str());
        }
    }

    /// False if the folder does not take it, or not with the target's owner.
    bool make(const struct stat& like) {
        m_made = o_stream(m_name, IO_WRITE | IO_NOPATH, false).isOpen();
        return m_made && takeOwnerAndMode(m_name, like);
    }
    bool write(const mrString& text) {
        o_stream file(m_name, IO_WRITE | IO_NOPATH, true);
        return writeTo(file, text);
    }
    bool moveOver() {
        m_made = std::rename(m_name.c_str(), m_target.c_str()) != 0;
        return !m_made;
    }

  private:
    mrString m_target;
    mrString m_name;
    bool m_made = false;
};

bool replace(const mrString& name, const mrString& text) {
    const mrString target = linkTarget(name);
    struct stat old = {};
    if (stat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) {
        return writeInPlace(name, text);
    }
    FileBeside beside(target);
    if (!beside.make(old)) {
        return writeInPlace(name, text);
    }
    return beside.write(text) && beside.moveOver();
}

}  // namespace

bool mrReplaceFile(mrString name, const mrString& text) {
    // Moving over a file asks for no right on the file itself. Opening it to append does, and leaves it as it
    // is.
    if (!o_stream(name, IO_WRITE | IO_APPEND | IO_NOPATH, true).isOpen()) {
        return false;
    }
    if (!replace(name, text)) {
        g_ostrm << MSG_ERR << "-- Can't write file " << name << "\n" << MSG_END;
        return false;
    }
    return true;
}
