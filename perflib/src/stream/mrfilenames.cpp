#include "stream/mrfilenames.h"

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
        return mrFileNames::m_exePath.getFileDir() + name;
    }
    return name.beginsWith(dir) ? name : dir + name;
}

}  // namespace

mrString mrFileNames::genDirName(mrString dir) {
    mrString exeDir = m_exePath.getFileDir();
    if (dir.empty()) {
        return exeDir;
    }
    const mrString closed = isSeparator(dir[dir.length() - 1]) ? dir : dir + "/";
    return isAbsolute(closed) ? closed : exeDir + closed;
}

mrString mrFileNames::genPathName(mrString dir, mrString name, mrString ext) {
    if (isAbsolute(name)) {
        return name;
    }
    const mrString full = name.empty() ? m_defName + ext : name;
    // A point in a directory of the name counts as well; such a name brings its own extension.
    return dir + (full.found(".") ? full : full + ext);
}

mrString mrFileNames::getInPath(mrString name) { return getDirPath(name, m_inDir); }

mrString mrFileNames::getOutPath(mrString name) { return getDirPath(name, m_outDir); }

void mrFileNames::setDefName(mrString name) { m_defName = name.empty() ? m_exePath.getFileTitle() : name; }
