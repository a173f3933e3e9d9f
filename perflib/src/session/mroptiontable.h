#pragma once

#include <span>

#include "session/mroption.h"

/// When a key is on the table of a run.
enum class mrOptionUse {
    Always,
    Hidden,      ///< always, but only -? shows it
    NameTables,  ///< if name tables are wanted, see qKeys
    Library,     ///< if a library is bound
};

/// The file that a key takes if its argument is empty.
struct mrDefaultFile {
    const char* m_ext = nullptr;  ///< null for a key without
    char m_dirKey = '\0';         ///< the key that names its folder
};

/// One key as it is registered. Info and apply are null for a key that is used up before the option pass.
struct mrOptionRow {
    char m_key;
    mrOption::Info m_info;
    mrOption::Apply m_apply;
    mrOptionUse m_use;
    const char* m_help;
    const char* m_descr;
    mrDefaultFile m_file = {};
    const char* m_descrEnd = "";

    /// The long text, with what it says of the default file.
    mrString descr() const;
};

/// All keys in the order of the help.
extern const std::span<const mrOptionRow> mrOptionTable;
