// How the names of files are formed. Relative directories are relative to the executable, so that a run finds
// its files wherever it is started.

#include "session/mr.h"

namespace {

bool isSeparator(char c) { return c == '/' || c == '\\'; }

/// Drive letters count too: names come from files that other systems share.
bool isAbsolute(const mrString& name) {
    return isSeparator(name[0]) || (name.length() > 1 && name[1] == ':');
}

mrString getDirPath(const mrString& name, const mrString& dir) {
    if (isAbsolute(name)) {
        return name;
    }
    if (dir.empty()) {
        return mrSession::m_exePath.getFileDir() + name;
    }
    return name.beginsWith(dir) ? name : dir + name;
}

}  // namespace

mrString mrSession::genDirName(mrString dir) {
    mrString exeDir = m_exePath.getFileDir();
    if (dir.empty()) {
        return exeDir;
    }
    const mrString closed = isSeparator(dir[dir.length() - 1]) ? dir : dir + "/";
    return isAbsolute(closed) ? closed : exeDir + closed;
}

mrString mrSession::genPathName(mrString dir, mrString name, mrString ext) {
    if (isAbsolute(name)) {
        return name;
    }
    const mrString full = name.empty() ? m_defName + ext : name;
    // A point in a directory of the name counts as well; such a name brings its own extension.
    return dir + (full.found(".") ? full : full + ext);
}

mrString mrSession::getInPath(mrString name) { return getDirPath(name, m_inDir); }

mrString mrSession::getOutPath(mrString name) { return getDirPath(name, m_outDir); }

void mrSession::setDefName(mrString name) { m_defName = name.empty() ? m_exePath.getFileTitle() : name; }

mrString mrSession::getExitInfo() {
    switch (m_exitLevel) {
        case 1:
            return "ignored because of -e option";
        case 2:
            return "ignored because of -h option";
        case 3:
            return "ignored because of -v option";
        default:
            return "ignored";
    }
}
