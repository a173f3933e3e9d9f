#pragma once

#include "text/mrstring.h"

/// Gives the file `name` the content `text`: writes it beside the old file and moves it over that, so that a
/// run that dies leaves the old content or the new one. A symbolic link is followed; owner and mode stay.
/// Where that can't be done, in a folder that is closed to the user or on a device, and where the file has
/// more than one hard link, it is written in place. False, with a message on g_ostrm, if the content could
/// not be written.
bool mrReplaceFile(mrString name, const mrString& text);
