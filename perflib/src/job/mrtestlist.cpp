#include "job/mrtestlist.h"

#include <algorithm>
#include <vector>

#include "job/mrconditions.h"
#include "job/mroutputs.h"
#include "machine/mrstop.h"

namespace {

mrParameter* standsFor(const mrTest& test, mrParameter* parm) {
    return test.m_pCacheIter != nullptr && parm == test.m_pCacheIter.get() ? test.m_pCacheIter->cacheParm()
                                                                           : parm;
}

/// Marks the candidates among a test's parameters; true if all were marked already.
bool markUsed(const mrTest& test, mrList<mrParameter*>& candidates) {
    bool allMarked = true;
    for (mrParameter* candidate : candidates) {
        if (candidate->active()) {
            continue;
        }
        allMarked = false;
        for (mrParameter* parm : test.m_parms) {
            if (standsFor(test, parm) == candidate) {
                candidate->setActive(true);
                break;
            }
        }
    }
    return allMarked;
}

}  // namespace

bool mrTestList::aless(mrTest*& a, mrTest*& b) {
    return a != nullptr && b != nullptr && a->compareFunc(b) < 0;
}

void mrTestList::sortFunc() {
    std::vector<mrTest*> tests(begin(), end());
    std::stable_sort(tests.begin(), tests.end(), [](mrTest* a, mrTest* b) { return aless(a, b); });
    std::copy(tests.begin(), tests.end(), begin());
}

void mrTestList::startWithCpuTest() {
    const iterator first = begin();
    for (iterator test = begin(); test != end();) {
        if (test != first && (*test)->m_name[0] == '_') {
            insert(first, *test);
            test = erase(test);
        } else {
            ++test;
        }
    }
}

void mrTestList::plus(int result) {
    ++m_runCount;
    ++m_counts[result];
    if (mrIsNote(result) && result != MR_NOTE) {
        ++m_counts[MR_NOTE];
    } else if (mrIsFail(result) && result != MR_FAIL) {
        ++m_counts[MR_FAIL];
    }
}

bool mrTestList::runTests(mrConditions& conditions) {
    for (mrTest* test : *this) {
        if (mrStop::asked()) {
            g_ostrm << MSG_ERR << "-- Run is stopped by a signal\n" << MSG_END;
            break;
        }
        if (!test->tobeRun(conditions) || !test->m_name.found(m_startFunc)) {
            continue;
        }
        // The first test of that name ends the search: all that follow run, whatever they are called.
        m_startFunc = "";
        m_pCurrentTest = test;
        const mrJournal::Test* earlier = g_journal.nextEarlier();
        const int result = earlier != nullptr ? takeOver(*test, *earlier) : runAnew(*test);
        if (result != MR_NOT_RUN || test->m_result != MR_OK) {
            plus(result);
        }
        m_pCurrentTest = nullptr;
        if (earlier == nullptr && result == MR_EXCEPTION && !mrStop::asked()) {
            g_journal.leaveProcess();
        }
    }
    return m_counts[MR_FAIL] > 0;
}

int mrTestList::runAnew(mrTest& test) {
    if (g_journal.kept()) {
        g_journal.beginTest(test.m_name, std::time(nullptr), mrOutputSizes());
    }
    const int result = test.run();
    if (result == MR_NOT_RUN && test.m_result == MR_OK) {
        g_journal.endTest(mrJournal::LeftOut, "left-out");
    }
    return result;
}

/// The result that an earlier process got, or that the loss of it is.
int mrTestList::takeOver(mrTest& test, const mrJournal::Test& earlier) {
    if (earlier.result == mrJournal::NoResult) {
        mrCutOutputsToLost(earlier.sizes);
        return test.endLost(earlier.lostBy, earlier.start);
    }
    test.m_result = earlier.result == mrJournal::LeftOut ? MR_OK : earlier.result;
    return earlier.result == mrJournal::LeftOut ? MR_NOT_RUN : earlier.result;
}

void mrTestList::selectCommonParms(mrConditions& conditions, mrList<mrParameter*>& parms) {
    for (mrParameter* parm : parms) {
        parm->setActive(false);
    }
    for (mrTest* test : *this) {
        if (!test->tobeRun(conditions)) {
            continue;
        }
        test->startAndStop();
        const bool allMarked = markUsed(*test, parms);
        test->m_pCacheIter.reset();
        test->m_parms.clear();
        if (allMarked) {
            break;
        }
    }
    for (auto parm = parms.begin(); parm != parms.end();) {
        if ((*parm)->active()) {
            ++parm;
        } else {
            parm = parms.erase(parm);
        }
    }
}
