#pragma once

#include "text/mrstring.h"

enum class mrTextFile { Read, Missing, Refused };

/// Reads all lines of the file at `path`, as it stands, without their line ends; a line ends at a NUL, too.
/// Missing, told on g_ostrm if `verbose`, for a file that can't be opened; Refused, always told, for what has
/// no end or no lines: a directory, a pipe, a device other than a terminal or the empty one. `lines` is
/// filled by Read alone.
mrTextFile mrReadTextFile(mrString path, bool verbose, mrStringList& lines);
