#pragma once

/// Values of the states that keys set and that other floors read. The members that hold them are plain ints,
/// so that suites and bits need no conversion.

/// Bits of mrNameLines::m_nameMode: where -q writes the names of a test's parameters.
enum mrNameMode : int { MR_NAMES_NONE = 0, MR_NAMES_IN_TABLE = 1, MR_NAMES_IN_FILE = 2 };

/// Of mrTest::m_hot: -H adds the column, -HONLY measures hot functions only as well.
enum mrHotMode : int { MR_HOT_NONE = 0, MR_HOT_COLUMN = 1, MR_HOT_ONLY = 2 };

/// Of mrSession::m_exitLevel, in rising order: -e, -h or -?, -v.
enum mrExitLevel : int { MR_EXIT_NONE = 0, MR_EXIT_LIST = 1, MR_EXIT_HELP = 2, MR_EXIT_VERSION = 3 };

/// Of mrSession::m_enumMode, listTests and mrReportList: before the tests, the library's functions without a
/// test (-e-), none (-e) or all (-e+). Any mode above MR_LIST_FUNCTIONS lists nothing.
enum mrListMode : int {
    MR_LIST_UNTESTED = -1,
    MR_LIST_TESTS = 0,
    MR_LIST_FUNCTIONS = 1,
    MR_LIST_NOTHING = 100
};

/// Of mrConditions::m_logic: how the groups of -f, -t and -m are joined.
enum mrLogic : int { MR_LOGIC_AND = 0, MR_LOGIC_OR = 1 };

/// Of s_hintArg, where every other value is the first letter of a help key's argument.
constexpr char MR_HINT_NONE = '\0';
constexpr char MR_HINT_QUICK = '\1';
