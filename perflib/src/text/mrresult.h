#pragma once

#include "text/mrstring.h"

/// Outcome of a measurement or a test, ordered by gravity: results only ever rise. A note keeps the
/// measurement, a fail (above MR_NOTE) ends the walk of its test and writes no table line.
enum mrResult : int {
    MR_NOT_RUN = 0,
    MR_OK = 1,
    MR_BAD_ACCURACY = 2,
    MR_BAD_STATUS = 3,
    MR_DATA_NOTE = 4,
    MR_LIB_NOTE = 5,
    MR_NOTE = 6,  ///< also the sum of the notes in the counters of the test list
    MR_ACCURACY_FAIL = 7,
    MR_DATA_FAIL = 8,
    MR_LIB_FAIL = 9,
    MR_EXCEPTION = 10,
    MR_FAIL = 11,  ///< also the sum of the fails
};

constexpr int MR_RESULT_COUNT = 12;

constexpr bool mrIsNote(int result) { return result >= MR_BAD_ACCURACY && result <= MR_NOTE; }
constexpr bool mrIsFail(int result) { return result > MR_NOTE; }

/// The sentence of a result, for messages: "wrong measure accuracy".
mrString mrResultString(int result);
/// The word of a result, for reports: "ACCURWRN".
mrString mrResultWord(int result);
