#include "test/mrtestlist.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

#include "mr.h"
#include "support/captured_output.h"

namespace {

std::string s_log;

/// A test that answers a result and measures nothing.
struct NamedTest : mrTest {
    static constexpr int LeftOut = -1;  ///< by its ini file

    NamedTest(const char* name, int theAnswer)
        : mrTest(static_cast<FuncOld>(nullptr), name, "perf/p_named.cpp", "Suite"), answer(theAnswer) {}
    int run() override {
        EXPECT_EQ(mrTestList::m_pCurrentTest, this);
        s_log += str(m_name) + " ";
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
    ~TestList() override {
        mrTestList::m_startFunc = "";
        s_log = "";
    }

    NamedTest& add(const char* name, int answer = MR_OK) {
        m_list.append(&m_tests.emplace_back(name, answer));
        return m_tests.back();
    }
    /// In the order of the list, each with its answer.
    std::string names() {
        std::string all;
        for (mrTest* test : m_list) {
            all += str(test->m_name) + std::to_string(static_cast<NamedTest*>(test)->answer) + " ";
        }
        return all;
    }
    /// The tests that a run goes through.
    std::string ran(mrConditions& conditions) {
        m_list.runTests(conditions);
        return std::exchange(s_log, "");
    }

    std::deque<NamedTest> m_tests;
    mrTestList m_list;
    mrConditions m_all;
};

TEST_F(TestList, CountsResultsByKind) {
    for (int result = 0; result < MR_RESULT_COUNT; ++result) {
        mrTestList list;
        list.plus(result);
        EXPECT_EQ(list.m_counts[result], 1);
        EXPECT_EQ(list.m_counts[MR_NOTE], result >= 2 && result <= 6) << result;
        EXPECT_EQ(list.m_counts[MR_FAIL], result >= 7) << result;
    }
    EXPECT_FALSE(m_list.runTests(m_all));
    add("a", MR_BAD_STATUS);
    add("b", NamedTest::LeftOut);
    add("c", MR_NOT_RUN);
    EXPECT_EQ(ran(m_all), "a b c ");
    EXPECT_EQ(m_list.m_runCount, 2);
    EXPECT_EQ(m_list.m_counts[MR_NOT_RUN], 1);
    EXPECT_EQ(mrTestList::m_pCurrentTest, nullptr);
    add("d", MR_EXCEPTION);
    EXPECT_TRUE(m_list.runTests(m_all));
}

TEST_F(TestList, RunsWhatIsSelected) {
    for (const char* name : {"Hash", "aFind", "Trim", "Find"}) {
        add(name);
    }
    mrTestList::m_startFunc = "Find";
    EXPECT_EQ(ran(m_all), "aFind Trim Find ");
    mrTestList::m_startFunc = "Other";
    EXPECT_EQ(ran(m_all), "");
    static mrConditions& conditions = *new mrConditions;  // what stands in it lives on as well
    conditions.append(mrMakeCondition(RunCondition::FunctionName, "-aFind"));
    mrTestList::m_startFunc = "Find";
    EXPECT_EQ(ran(conditions), "Find ") << "a test that is left out is no beginning";
    mrStringList hot;
    hot.append("Trim");
    mrStringList* before = g_pHotList;
    g_pHotList = &hot;
    mrTest::m_hot = 1;
    EXPECT_EQ(ran(m_all), "Hash aFind Trim Find ");
    mrTest::m_hot = 2;
    EXPECT_EQ(ran(m_all), "Trim ");
    g_pHotList = nullptr;
    EXPECT_EQ(ran(m_all), "");
    g_pHotList = before;
    mrTest::m_hot = 0;
}

TEST_F(TestList, SortsStablyAndStartsWithTheMachine) {
    m_list.sortFunc();
    m_list.startWithCpuTest();
    int place = 0;
    for (const char* name : {"b", "c", "a", "b", "_z", "b", "C", "__y"}) {
        add(name, place++);
    }
    m_list.sortFunc();
    EXPECT_EQ(names(), "C6 __y7 _z4 a2 b0 b3 b5 c1 ");
    m_list.startWithCpuTest();
    EXPECT_EQ(names(), "__y7 _z4 C6 a2 b0 b3 b5 c1 ");
    mrTest* none = nullptr;
    mrTest* some = &m_tests[0];
    EXPECT_FALSE(mrTestList::aless(none, some) || mrTestList::aless(some, none));
}

TEST_F(TestList, CommonParametersAreThoseThatASelectedTestUses) {
    mrIterator<int> length(0, "Length", "");
    mrIterator<int> shift(0, "Shift", "");
    mrIterator<int> unused(0, "Unused", "");
    const auto common = [&](mrConditions& conditions) {
        mrList<mrParameter*> candidates;
        for (mrIterator<int>* parm : {&length, &shift, &unused}) {
            candidates.append(parm);
        }
        m_list.selectCommonParms(conditions, candidates);
        std::string text;
        for (const mrParameter* parm : candidates) {
            text += str(parm->name()) + (parm->active() ? " " : "? ");
        }
        for (const auto& test : m_tests) {
            EXPECT_TRUE(test.m_parms.empty() && test.m_pCacheIter == nullptr);
        }
        return text + "by " + std::exchange(s_log, "");
    };
    add("a").uses = {&length};
    add("b").uses = {&shift, &length};
    EXPECT_EQ(common(m_all), "Length Shift by a b ");
    mrTest::m_cache = true;  // the iterator of the cache stands for the one inside it
    EXPECT_EQ(common(m_all), "Length Shift by a b ");
    mrTest::m_cache = false;
    static mrConditions& conditions = *new mrConditions;  // what stands in it lives on as well
    conditions.append(mrMakeCondition(RunCondition::FunctionName, "=a"));
    EXPECT_EQ(common(conditions), "Length by a ");
    add("c").uses = {&unused};
    add("d");
    add("e");
    EXPECT_EQ(common(m_all), "Length Shift Unused by a b c d ")
        << "the test after the last mark is asked too";
}

}  // namespace
