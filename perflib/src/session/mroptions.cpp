// The option table and the option pass, which reads and applies the keys of the command line.

#include <cstdio>
#include <memory>

#include "machine/mrcpufeatures.h"
#include "session/mr.h"
#include "session/mroptiontable.h"
#include "session/optionwords.h"
#include "stream/mristream.h"
#include "stream/mrjournal.h"
#include "stream/mroutputfile.h"

namespace {

bool isUsed(mrOptionUse use, bool libraryBound) {
    switch (use) {
        case mrOptionUse::NameTables:
            return qKeys;
        case mrOptionUse::Library:
            return libraryBound;
        default:
            return true;
    }
}

int exitLevel(const mrCommandList& keys) {
    if (keys.isKey('?') || keys.isKey('h')) {
        return MR_EXIT_HELP;
    }
    if (keys.isKey('e')) {
        return MR_EXIT_LIST;
    }
    return keys.isKey('v') ? MR_EXIT_VERSION : MR_EXIT_NONE;
}

/// The argument of the last such key, or the empty text.
mrString lastArg(const mrCommandList& keys, char key) {
    mrString arg;
    keys.getArg(key, arg);
    return arg;
}

bool fatal(const char* what) {
    g_ostrm << "FATAL FAIL: can't open " << what << " for writing\n";
    return false;
}

}  // namespace

void mrSession::initSession() {
    m_conditions = std::make_unique<mrConditions>();
    m_askMode = 0;
    m_batMode = false;
    m_quickMode = false;
    m_enumMode = MR_LIST_NOTHING;
    m_levelMode = MSG_ERR;
    const bool libraryBound = zyl_Init() != MR_NOT_BOUND;
    for (const mrOptionRow& row : mrOptionTable) {
        if (isUsed(row.m_use, libraryBound)) {
            initOption(row.m_key, row.m_help, row.m_info, row.m_apply, row.descr(),
                       row.m_use == mrOptionUse::Hidden);
        }
    }
}

void mrSession::initOption(char key, mrString help, mrOption::Info info, mrOption::Apply apply,
                           mrString descr, bool hidden) {
    m_options.append(new mrOption{key, hidden, help, info, apply, descr});
}

mrOption* mrSession::getOption(char key) {
    for (mrOption* option : m_options) {
        if (option->m_key == key) {
            return option;
        }
    }
    return nullptr;
}

void mrSession::applyOption(char key, mrString arg) {
    m_cmdText << "-" << key << arg << ": ";
    const mrOption* option = getOption(key);
    // Keys without operations are used up before; one that is met here came by a file and is not followed.
    if (option == nullptr || option->m_info == nullptr) {
        m_cmdText << "ignored: incorrect option key\n";
        g_journal.complain(mrString("-") + mrText(key) + arg + ": ignored: incorrect option key");
        return;
    }
    const mrString info = option->m_info(arg);
    m_cmdText << info << "\n";
    if (info.beginsWith("ignored")) {
        g_journal.complain(mrString("-") + mrText(key) + arg + ": " + info);
    }
    option->m_apply(arg, this);
}

bool mrSession::parseCommandLine(int argc, char** argv) {
    m_exePath = argc > 0 ? argv[0] : nullptr;
    m_askMode = 0;
    m_batMode = false;
    m_quickMode = false;
    m_enumMode = MR_LIST_NOTHING;
    m_nameMode = MR_NAMES_NONE;
    m_nameExit = false;
    m_unopened = 0;
    m_keyFiles.clear();
    m_iniName = "";
    readCommandLine(argc, argv);
    m_exitLevel = exitLevel(*pCmdList);
    setPaths();
    g_ostrm.setOutLevel(MSG_ERR | MSG_WARN | MSG_PERF);
    expandFileKeys();
    // Kept in pieces: one text that grows by each of very many keys would take its time by the square.
    mrStringList report;
    for (const mrCommandKey& key : *pCmdList) {
        report.append(m_cmdText);
        m_cmdText = "";
        applyOption(key.m_key, key.m_arg);
    }
    keepFilesApart();
    report.append(m_cmdText);
    m_cmdText = "";
    for (const mrString& piece : report) {
        g_ostrm << piece;
    }
    if (m_unopened != 0) {
        return fatal("output file");
    }
    // An ini file that can't be read has been told by its stream.
    if (!m_iniName.empty() && !openIniFile()) {
        return fatal("ini-file");
    }
    updateOptions();
    return true;
}

/// False if the file that is to be written can't be had.
bool mrSession::openIniFile() {
    if (m_iniWrite && g_journal.isProbe()) {
        return true;
    }
    const bool opened = g_istrm.setIniFile(m_iniName, m_iniWrite);
    if (!opened && !m_iniWrite) {
        g_journal.complain(mrString("-i: can't read file ") + m_iniName);
    }
    return opened || !m_iniWrite;
}

/// Fills the store from the arguments, else from the .cfg file, else from the built-in line.
void mrSession::readCommandLine(int argc, char** argv) {
    delete pCmdList;
    pCmdList = new mrCommandList;
    m_cmdText = "Command line options: ";
    mrString line;
    mrString name;
    if (argc > 1) {
        pCmdList->setArgs(argc - 1, argv + 1);
        m_cmdText << "\n";
    } else if (readCfgFile(line, name)) {
        pCmdList->setArgs(line.c_str());
        m_cmdText << "read from " << name << " file\n";
    } else if (pCmdLine != nullptr) {
        pCmdList->setArgs(pCmdLine->c_str());
        m_cmdText << "set by _FORCE_CMDLINE preprocessor definition\n";
    } else {
        m_cmdText = "";
    }
}

/// The first line of the .cfg file, which stands in the current directory or beside the executable.
bool mrSession::readCfgFile(mrString& line, mrString& name) {
    name = m_exePath.getFileTitle() + ".cfg";
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(name.c_str(), "r"), std::fclose);
    if (file == nullptr) {
        name = m_exePath.getFileDir() + name;
        file.reset(std::fopen(name.c_str(), "r"));
    }
    if (file == nullptr) {
        return false;
    }
    char text[1024] = "";
    line = std::fgets(text, sizeof text, file.get());
    return true;
}

/// These keys count wherever they stand, so they come before any key that names a file.
void mrSession::setPaths() {
    setInDir(lastArg(*pCmdList, 'p'));
    setOutDir(lastArg(*pCmdList, 'l'));
    setDefName(lastArg(*pCmdList, 'n'));
}

/// Puts the keys of each -@ file in place of that key. Inserted keys are not looked at again.
void mrSession::expandFileKeys() {
    for (auto key = pCmdList->begin(); key != pCmdList->end();) {
        if (key->m_key != '@') {
            ++key;
            continue;
        }
        const mrString name = key->m_arg;
        m_keyFiles.append(getInPath(name));
        key = pCmdList->erase(key);
        if (!pCmdList->insertFromFile(name, key)) {
            unopenedFile();
        }
    }
}

/// What a key reads, or writes when the outputs are complete, must be none of the outputs.
void mrSession::keepFilesApart() {
    m_keyFiles.append(m_iniName);
    for (const mrString& name : m_keyFiles) {
        if (mrOutputFile::isWritten(name)) {
            unopenedFile();
        } else if (!name.empty() && name == m_sglName) {
            mrOutputFile::reportTwoKeys(name);
            unopenedFile();
            m_sglName = "";
        }
    }
    if (mrOutputFile::isWritten(m_sglName)) {
        unopenedFile();
        m_sglName = "";
    }
}

void mrSession::setIniMode(mrString name, bool write) {
    m_iniName = name;
    m_iniWrite = write;
}

void mrSession::updateOptions() {
    mrOption* features = getOption('T');
    if (features != nullptr) {
        const mrString descr = features->m_descr;
        const int tab = descr.found("\t") ? descr.find("\t", 0) : descr.length();
        features->m_descr = descr.substr(0, tab) + mrCpuFeatures::optimizedList() + descr.substr(tab + 1);
    }
    if (m_batMode || g_journal.isProbe()) {
        m_askMode = 0;
    } else if (m_askMode == 0) {
        m_askMode = AskTiming | AskCommon;
    }
}

mrString mrSession::getExitInfo() {
    switch (m_exitLevel) {
        case MR_EXIT_LIST:
            return "ignored because of -e option";
        case MR_EXIT_HELP:
            return "ignored because of -h option";
        case MR_EXIT_VERSION:
            return "ignored because of -v option";
        default:
            return "ignored";
    }
}
