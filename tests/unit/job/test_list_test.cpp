#include "job/mrtestlist.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

#include "session/mr.h"
#include "support/captured_output.h"

namespace {

std::string s_log;

constexpr int LeftOut = -1;  // by its ini file

/// A test that answers a result and measures nothing.
struct NamedTest : mrTest {
    NamedTest(const char* name, int theAnswer)
        : mrTest(static_cast<FuncOld>(nullptr), name, "perf/p_named.cpp", "Suite"), answer(theAnswer) {}
    int run() override {
        EXPECT_EQ(mrTestList::m_pCurrentTest, this);
        s_log += str(m_name) + (answer > 0 ? std::to_string(answer) : "") + " ";
        m_result = answer == LeftOut ? MR_OK : answer;
        return answer == LeftOut ? MR_NOT_RUN : answer;
    }
    bool canStart() override {
        s_log += str(m_name) + " ";
        for (mrIterator<int>* parm : uses) {
            regCacheParm(*parm, nullptr, nullptr);
        }
        return true;
    }

    int answer;
    std::vector<mrIterator<int>*> uses;
};

class TestList : public testing::Test {
  protected:
    NamedTest& add(const char* name, int answer = MR_NOT_RUN) {
        m_list.append(&m_tests.emplace_back(name, answer));
        return m_tests.back();
    }
    /// The tests that a run goes through, each with its answer.
    std::string ran() {
        m_list.runTests(m_conditions);
        return std::exchange(s_log, "");
    }
    void select(const char* pattern) {
        static auto& all = *new std::vector<RunCondition*>;  // they are never deleted
        m_conditions.append(all.emplace_back(mrMakeCondition(RunCondition::FunctionName, pattern)));
    }

    std::deque<NamedTest> m_tests;
    mrTestList m_list;
    mrConditions m_conditions;
};

TEST_F(TestList, CountsWhatHasRun) {
    add("a", MR_BAD_STATUS);
    add("b", LeftOut);
    add("c", MR_NOT_RUN);
    EXPECT_FALSE(m_list.runTests(m_conditions));
    EXPECT_EQ(m_list.m_runCount, 2);
    EXPECT_EQ(m_list.m_counts[MR_NOT_RUN], 1);
    EXPECT_EQ(mrTestList::m_pCurrentTest, nullptr);
    add("d", MR_EXCEPTION);
    EXPECT_TRUE(m_list.runTests(m_conditions));
    s_log = "";
}

TEST_F(TestList, RunsWhatIsSelected) {
    for (const char* name : {"Hash", "aFind", "Trim", "Find"}) {
        add(name);
    }
    mrTestList::m_startFunc = "Find";
    EXPECT_EQ(ran(), "aFind Trim Find ");
    mrStringList hot;
    hot.append("Trim");
    mrStringList* const before = std::exchange(g_pHotList, &hot);
    mrTest::m_hot = MR_HOT_COLUMN;
    EXPECT_EQ(ran(), "Hash aFind Trim Find ");
    mrTest::m_hot = MR_HOT_ONLY;
    EXPECT_EQ(ran(), "Trim ");
    g_pHotList = before;
    mrTest::m_hot = MR_HOT_NONE;
    select("-aFind");
    mrTestList::m_startFunc = "Find";
    EXPECT_EQ(ran(), "Find ") << "a test that is left out is no beginning";
}

TEST_F(TestList, SortsStablyAndStartsWithTheMachine) {
    int place = 0;
    for (const char* name : {"b", "c", "a", "b", "_z", "b", "C", "__y"}) {
        add(name, place++);
    }
    m_list.sortFunc();
    EXPECT_EQ(ran(), "C6 __y7 _z4 a2 b b3 b5 c1 ");
    m_list.startWithCpuTest();
    EXPECT_EQ(ran(), "__y7 _z4 C6 a2 b b3 b5 c1 ");
}

TEST_F(TestList, CommonParametersAreThoseThatASelectedTestUses) {
    mrIterator<int> length(0, "Length", "");
    mrIterator<int> shift(0, "Shift", "");
    mrIterator<int> unused(0, "Unused", "");
    const auto common = [&] {
        mrList<mrParameter*> candidates;
        for (mrIterator<int>* parm : {&length, &shift, &unused}) {
            candidates.append(parm);
        }
        m_list.selectCommonParms(m_conditions, candidates);
        std::string text;
        for (const mrParameter* parm : candidates) {
            text += str(parm->name()) + (parm->active() ? " " : "? ");
        }

        return text + "by " + std::exchange(s_log, "");
    };
    add("a").uses = {&length};
    add("b").uses = {&shift, &length};
    mrTest::m_cache = true;  // the iterator of the cache stands for the one inside it
    EXPECT_EQ(common(), "Length Shift by a b ");
    mrTest::m_cache = false;
    add("c").uses = {&unused};
    add("d");
    add("e");
    EXPECT_EQ(common(), "Length Shift Unused by a b c d ") << "the test after the last mark is asked too";
    select("=a");
    EXPECT_EQ(common(), "Length by a ");
}

}  // namespace
