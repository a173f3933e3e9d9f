#pragma once

/// A history on a terminal and as a document.

#include <string>

#include "history/overview.h"

namespace lab {

/// A line a function, or with `points` a line a point, lines ended. Whatever names hold, nothing in it steers
/// a terminal but the colours.
std::string historyTable(const Overview& overview, bool points, bool colours);

/// The figures of all measurements, those of a point together, in the order of builds: a line each. Of the
/// choice `since` leaves out builds before it, or earlier days. std::runtime_error if none is left.
std::string figuresTable(const History& history, const Choice& choice);

/// What became of the points in the shown range, in one sentence.
std::string historySentence(const Overview& overview);

/// One JSON document (`schema` "metrig-lab.history"), line ended, in UTF-8: bytes that are no UTF-8 are
/// replaced.
std::string historyJson(const Overview& overview);

}  // namespace lab
