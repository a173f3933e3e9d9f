// What -h, -?, -v and -e print in place of a run.

#include "report/mrreport.h"
#include "session/mr.h"
#include "stream/mrcstream.h"

#ifndef METRIG_BUILD_DATE
#define METRIG_BUILD_DATE __DATE__
#endif

namespace {

void headLine(const char* title, bool hide) { g_ostrm << title << (hide ? "" : " with hidden keys") << "\n"; }

void describe(const mrOption& option) {
    g_ostrm << "\n" << option.m_help;
    if (option.m_hidden) {
        g_ostrm << "This is hidden key used by developers only\n";
    }
    g_ostrm << option.m_descr;
}

mrString keyText(char key, const char* state) {
    mrString text = "Key -";
    return text << key << state;
}

}  // namespace

bool mrSession::hintOutput() {
    if (!s_version && s_hintArg == MR_HINT_NONE) {
        return false;
    }
    g_ostrm << "\nZorva(R) Zylkit. Metrig " << MR_version << ", " METRIG_BUILD_DATE "\n";
    if (s_hintArg != MR_HINT_NONE) {
        hint(s_hintArg, s_hintHide);
    }
    return true;
}

void mrSession::hint(char arg, bool hide) {
    if (arg == MR_HINT_QUICK) {
        hint_quick(hide);
    } else if (arg == (hide ? 'h' : '?')) {
        hint_full(hide);
    } else {
        hint_descr(arg);
    }
}

void mrSession::hint_quick(bool hide) {
    headLine("QUICK HELP", hide);
    for (const mrOption* option : m_options) {
        if (!hide || !option->m_hidden) {
            g_ostrm << option->m_help;
        }
    }
}

void mrSession::hint_full(bool hide) {
    headLine("EXTENDED HELP", hide);
    for (const mrOption* option : m_options) {
        if ((!hide || !option->m_hidden) && !option->m_help.empty()) {
            describe(*option);
        }
    }
}

void mrSession::hint_descr(char key) {
    g_ostrm << "EXTENDED KEY HELP\n";
    const mrOption* option = getOption(key);
    if (option == nullptr) {
        g_ostrm << keyText(key, " is not valid\n") << "\nUse -h option to type full key list\n";
        return;
    }
    g_ostrm << (option->m_help.empty() ? keyText(key, " is deprecated\n") : option->m_help)
            << (option->m_descr.empty() ? "No extended description for this key\n" : option->m_descr);
}

bool mrSession::enumOutput() {
    if (m_enumMode > MR_LIST_FUNCTIONS) {
        return false;
    }
    listTests(m_enumMode);
    return true;
}

void mrSession::listTests(int mode) {
    const mrReportTitle title(*pTestList);
    g_ostrm << title;
    g_cstrm << title;
    const mrReportList list(*pTestList, *m_conditions, mode);
    g_ostrm << list;
    g_cstrm << list;
}
