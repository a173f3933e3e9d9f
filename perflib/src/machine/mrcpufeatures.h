#pragma once

#include "text/mrstring.h"

/// Labels of the library's feature masks: what -T takes and reports print.
class mrCpuFeatures {
  public:
    /// The mask of labels separated by commas, case-sensitive; unknown ones add nothing, so 0 means a wrong
    /// list.
    static unsigned long long cpuFeatures(mrString list);
    /// The first row with exactly this mask: its description, or its label. For suites that name a code path.
    static mrString cpuName(unsigned long long mask);
    static mrString cpuLabel(unsigned long long mask);
    /// One line per row, for the help of -T.
    static mrString optimizedList();

    struct Row {
        const char* label;
        unsigned long long mask;
        const char* name;
    };
    /// The line of a row, empty for a code path of technological interest alone: its name begins with
    /// "Techno".
    static mrString listLine(const Row& row);
    /// Rows 0 to 33 are instruction set features, the others code paths of the library.
    static constexpr int NumRows = 57;
    static constexpr int NumFeatures = 34;
    static const Row cpuFeatureArray[NumRows];
};

/// Counts the pieces of `text` between separators; fills `items` with them unless that is null. The piece
/// after the last separator counts too, so the empty text is one piece.
void split(mrString* items, const mrString& text, char separator, int& count);
