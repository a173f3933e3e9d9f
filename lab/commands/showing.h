#pragma once

/// How a comparison is shown at its end, and what counts as failure.

#include "commands/commandline.h"
#include "show/report.h"
#include "show/table.h"

namespace lab {

struct Showing {
    TableStyle style;
    bool failOnUnsure = false;  ///< exit status 3 where nothing is slower but something is unsure
};

/// The options of it. `showing` is held until the command line is read.
void addShowing(CLI::App& command, Showing& showing);

/// The table on standard output, coloured where that is a terminal; the exit status.
int showReport(const Report& report, const Showing& showing);

/// The same of a kept comparison, or of a merged store: functions by kinds, or `kind` alone where one is
/// named.
int showStore(const std::string& path, const Showing& showing, const std::string& kind);

}  // namespace lab
