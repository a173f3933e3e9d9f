#pragma once

#include "session/mroption.h"

/// When a key is on the table of a run.
enum class mrOptionUse {
    Always,
    Hidden,      ///< always, but only -? shows it
    NameTables,  ///< if name tables are wanted, see qKeys
    Library,     ///< if a library is bound
};

/// One key as it is registered. Info and apply are null for a key that is used up before the option pass.
struct mrOptionRow {
    char m_key;
    mrOption::Info m_info;
    mrOption::Apply m_apply;
    mrOptionUse m_use;
    const char* m_help;
    const char* m_descr;
};

constexpr int MR_OPTION_COUNT = 40;

/// All keys in the order of the help.
extern const mrOptionRow mrOptionTable[MR_OPTION_COUNT];
