#pragma once

#include "session/mr.h"

/// The three pieces as one text.
mrString mrPhrase(const char* before, mrString text, const char* after = "");
/// `text`, unless an exit key of at least this level makes the key useless.
mrString mrUnlessExit(int level, mrString text);

/// The number that a key takes from its argument; 0 if there is none.
int mrNumber(mrString arg);
/// `before`, the argument and `after`, or, for a number below 1, that the number of `what` is wrong.
mrString mrNumberInfo(mrString arg, const char* before, const char* after, const char* what);
