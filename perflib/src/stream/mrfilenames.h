#pragma once

#include "text/mrstring.h"

/// How the names of files are formed. Directories end in a separator; relative ones are relative to the
/// executable, so that a run finds its files wherever it is started.
class mrFileNames {
  public:
    static mrString genDirName(mrString dir);
    static mrString genPathName(mrString dir, mrString name, mrString ext);
    static mrString genInPath(mrString name, mrString ext) { return genPathName(m_inDir, name, ext); }
    static mrString genOutPath(mrString name, mrString ext) { return genPathName(m_outDir, name, ext); }
    /// The path of a file that a test opens.
    static mrString getInPath(mrString name);
    static mrString getOutPath(mrString name);
    static void setInDir(mrString dir) { m_inDir = genDirName(dir); }
    static void setOutDir(mrString dir) { m_outDir = genDirName(dir); }
    static void setDefName(mrString name);

    static mrString m_exePath;  ///< argv[0] as passed
    static mrString m_inDir;
    static mrString m_outDir;
    static mrString m_defName;
};

// Extensions of the files that keys name.
constexpr const char* extIni = ".ini";
constexpr const char* extOut = ".txt";
constexpr const char* extCsv = ".csv";
constexpr const char* extName = "_name.csv";
constexpr const char* extSum = "_sum.csv";
constexpr const char* extSgl = ".end";
