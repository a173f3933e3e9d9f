#pragma once

#include "output/mrstream.h"

/// Reads a whole text file into `lines`, without their line ends. False, with `lines` as it was, for a stream
/// that is not open, and, with one message that names `path`, for what is no text of a user: a directory, a
/// device other than a terminal or the empty one, a NUL character, more than 1 MiB.
bool mrReadTextFile(i_stream& file, mrString path, mrStringList& lines);
