#pragma once

#include "text/mrstring.h"

class mrSession;

/// One key of the command line.
struct mrOption {
    /// Says in words what the key will do with this argument.
    using Info = mrString (*)(mrString arg);
    /// Does it.
    using Apply = void (*)(mrString arg, mrSession* session);

    char m_key;
    bool m_hidden;    ///< shown only by -?
    mrString m_help;  ///< short text, one or more lines
    Info m_info;      ///< null, as m_apply, for keys that are used up before the option pass
    Apply m_apply;
    mrString m_descr;  ///< long text
};
