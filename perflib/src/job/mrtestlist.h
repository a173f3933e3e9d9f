#pragma once

#include "job/mrtest.h"
#include "stream/mrjournal.h"

/// All registered tests. Sorts them, runs those that the conditions select and counts the results by kind.
/// The tests themselves are not owned.
class mrTestList : public mrList<mrTest*> {
  public:
    /// Stable, by compareFunc.
    void sortFunc();
    /// Moves tests whose name begins with "_" to the front: the description of the machine heads every
    /// listing.
    void startWithCpuTest();
    /// True if any fail was counted.
    bool runTests(mrConditions& conditions);
    void plus(int result);
    /// Removes from `parms` what no selected test uses, and marks the others active.
    void selectCommonParms(mrConditions& conditions, mrList<mrParameter*>& parms);

    static bool aless(mrTest*& a, mrTest*& b);

    mrDate m_date;
    int m_runCount = 0;
    /// One counter for each result; those of MR_NOTE and MR_FAIL count all notes, and all fails, besides
    /// their own.
    int m_counts[MR_RESULT_COUNT] = {};

    static mrTest* m_pCurrentTest;  ///< null between tests
    static mrString m_startFunc;    ///< the name to begin at; empty: the first

  private:
    static int runAnew(mrTest& test);
    static int takeOver(mrTest& test, const mrJournal::Test& earlier);
};
