#include "session/options.h"
#include "session/optionwords.h"
#include "stream/mrcstream.h"

namespace {

/// Opens an output file; a failure ends the run, but only after all keys.
void addFile(mrFileList& stream, mrString path, bool append, mrSession* session) {
    if (!stream.addStream(path, append)) {
        session->unopenedFile();
    }
}

mrString outPathInfo(const char* text, mrString arg, const char* ext) {
    return mrPhrase(text, mrSession::genOutPath(arg, ext));
}

bool isGiven(char key) { return mrSession::pCmdList->isKey(key); }

bool asksNamesInTable(const mrString& arg) { return arg == "+"; }

mrString dirInfo(const char* text, mrString arg) {
    return arg.empty() ? mrString("ignored: empty directory name")
                       : mrPhrase(text, mrSession::genDirName(arg));
}

}  // namespace

mrString i_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_LIST, mrPhrase("read from ", mrSession::genInPath(arg, extIni)));
}

void i_apply(mrString arg, mrSession* session) {
    session->setIniMode(mrSession::genInPath(arg, extIni), false);
}

mrString I_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_LIST,
                        mrPhrase("write MR parameters to ", mrSession::genInPath(arg, extIni), " and exit"));
}

void I_apply(mrString arg, mrSession* session) {
    session->setIniMode(mrSession::genInPath(arg, extIni), true);
}

mrString o_info(mrString arg) { return outPathInfo("write console output to ", arg, extOut); }

void o_apply(mrString arg, mrSession* session) {
    addFile(g_ostrm, mrSession::genOutPath(arg, extOut), false, session);
}

mrString O_info(mrString arg) { return outPathInfo("add console output to ", arg, extOut); }

void O_apply(mrString arg, mrSession* session) {
    addFile(g_ostrm, mrSession::genOutPath(arg, extOut), true, session);
}

mrString r_info(mrString arg) { return outPathInfo("write performance result table to ", arg, extCsv); }

void r_apply(mrString arg, mrSession* session) {
    addFile(g_cstrm, mrSession::genOutPath(arg, extCsv), false, session);
}

mrString R_info(mrString arg) { return outPathInfo("add performance result table to ", arg, extCsv); }

void R_apply(mrString arg, mrSession* session) {
    addFile(g_cstrm, mrSession::genOutPath(arg, extCsv), true, session);
}

mrString q_info(mrString arg) {
    if (!asksNamesInTable(arg)) {
        return mrUnlessExit(MR_EXIT_LIST,
                            outPathInfo("write function parameter name lines to ", arg, extName));
    }
    return mrUnlessExit(MR_EXIT_LIST,
                        isGiven('r') || isGiven('R')
                            ? "add function parameter name lines to csv files defined by -r & -R keys"
                            : "ignored because -r or -R options are not present in command line");
}

void q_apply(mrString arg, mrSession* session) {
    if (asksNamesInTable(arg)) {
        mrSession::m_nameMode |= MR_NAMES_IN_TABLE;
        return;
    }
    mrSession::m_nameMode |= MR_NAMES_IN_FILE;
    addFile(g_qstrm, mrSession::genOutPath(arg, extName), false, session);
}

mrString Q_info(mrString) {
    return mrUnlessExit(MR_EXIT_LIST,
                        isGiven('q') ? "exit after function parameter name table creation and don't run tests"
                                     : "ignored because -q option is not present in command line");
}

void Q_apply(mrString, mrSession*) {
    if (isGiven('q')) {
        mrSession::m_nameExit = true;
    }
}

mrString u_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_LIST, outPathInfo("write summary table to ", arg, extSum));
}

void u_apply(mrString arg, mrSession* session) {
    addFile(g_ustrm, mrSession::genOutPath(arg, extSum), false, session);
}

mrString U_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_LIST, outPathInfo("add summary table to ", arg, extSum));
}

void U_apply(mrString arg, mrSession* session) {
    addFile(g_ustrm, mrSession::genOutPath(arg, extSum), true, session);
}

mrString g_info(mrString arg) { return outPathInfo("create file ", arg, extSgl) + " at the end of MR work"; }

void g_apply(mrString arg, mrSession* session) { session->setSglName(mrSession::genOutPath(arg, extSgl)); }

// The next three take effect before any key is applied, since they act on all keys with files:
// mrSession::setPaths.

mrString n_info(mrString arg) {
    return arg.empty() ? mrString("ignored: empty default name")
                       : mrPhrase("name ini-file and output files as ", arg, ".<proper-ext>");
}

void n_apply(mrString, mrSession*) {}

mrString p_info(mrString arg) { return dirInfo("open test data files & ini-file in ", arg); }

void p_apply(mrString, mrSession*) {}

mrString l_info(mrString arg) { return dirInfo("open output files in ", arg); }

void l_apply(mrString, mrSession*) {}
