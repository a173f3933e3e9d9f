#include "test/mrtestlist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "mr.h"
#include "support/captured_output.h"

namespace {

/// A test that answers a result and measures nothing.
class NamedTest : public mrTest {
  public:
    NamedTest(const char* name, int answer, std::string& log)
        : mrTest(static_cast<FuncOld>(nullptr), name, "perf/p_named.cpp", "Suite"),
          m_answer(answer),
          m_log(log) {}

    int run() override {
        EXPECT_EQ(mrTestList::m_pCurrentTest, this);
        m_log += str(m_name) + " ";
        m_result = m_answer == LeftOut ? MR_OK : m_answer;
        return m_answer == LeftOut ? MR_NOT_RUN : m_answer;
    }
    bool canStart() override {
        m_log += str(m_name) + " ";
        for (mrIterator<int>* parm : uses) {
            regCacheParm(*parm, nullptr, nullptr);
        }
        return true;
    }

    static constexpr int LeftOut = -1;  ///< by its ini file
    std::vector<mrIterator<int>*> uses;

  private:
    int m_answer;
    std::string& m_log;
};

class TestList : public testing::Test {
  protected:
    ~TestList() override { mrTestList::m_startFunc = ""; }

    NamedTest& add(const char* name, int answer = MR_OK) {
        m_tests.push_back(std::make_unique<NamedTest>(name, answer, m_log));
        m_list.append(m_tests.back().get());
        return *m_tests.back();
    }
    /// In the order of the list, each with its place in the order of adding.
    std::string names() {
        std::string all;
        for (const mrTest* test : m_list) {
            const auto at = std::find_if(m_tests.begin(), m_tests.end(),
                                         [test](const auto& added) { return added.get() == test; });
            all += str(test->m_name) + std::to_string(at - m_tests.begin()) + " ";
        }
        return all;
    }

    std::string m_log;
    std::vector<std::unique_ptr<NamedTest>> m_tests;
    mrTestList m_list;
    mrConditions m_all;
};

TEST_F(TestList, CountsResultsByKind) {
    static constexpr struct {
        int result;
        int notes, fails;  // of one result
    } rows[] = {{0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 1, 0}, {4, 1, 0},  {5, 1, 0},
                {6, 1, 0}, {7, 0, 1}, {8, 0, 1}, {9, 0, 1}, {10, 0, 1}, {11, 0, 1}};
    for (const auto& row : rows) {
        mrTestList list;
        list.plus(row.result);
        EXPECT_EQ(list.m_runCount, 1);
        EXPECT_EQ(list.m_counts[row.result], 1);
        EXPECT_EQ(list.m_counts[MR_NOTE], row.notes) << row.result;
        EXPECT_EQ(list.m_counts[MR_FAIL], row.fails) << row.result;
    }
}

TEST_F(TestList, RunsAndCounts) {
    EXPECT_FALSE(m_list.runTests(m_all));
    EXPECT_EQ(m_list.m_runCount, 0);
    add("a", MR_BAD_STATUS);
    add("b", NamedTest::LeftOut);
    add("c", MR_NOT_RUN);
    EXPECT_FALSE(m_list.runTests(m_all));
    EXPECT_EQ(m_log, "a b c ");
    EXPECT_EQ(m_list.m_runCount, 2);
    EXPECT_EQ(m_list.m_counts[MR_NOT_RUN], 1);
    EXPECT_EQ(m_list.m_counts[MR_OK], 0);
    EXPECT_EQ(mrTestList::m_pCurrentTest, nullptr);
    add("d", MR_EXCEPTION);
    EXPECT_TRUE(m_list.runTests(m_all));
}

TEST_F(TestList, BeginsWithTheTestAskedFor) {
    for (const char* name : {"Hash", "aFind", "Trim", "Find"}) {
        add(name);
    }
    mrTestList::m_startFunc = "Find";
    m_list.runTests(m_all);
    EXPECT_EQ(m_log, "aFind Trim Find ");
    m_log = "";
    mrTestList::m_startFunc = "Other";
    m_list.runTests(m_all);
    EXPECT_EQ(m_log, "");
    EXPECT_EQ(m_list.m_runCount, 3);
    // A test that the conditions leave out is no beginning.
    mrTestList::m_startFunc = "Find";
    mrConditions conditions;
    conditions.append(mrMakeCondition(RunCondition::FunctionName, "-aFind"));
    m_list.runTests(conditions);
    EXPECT_EQ(m_log, "Find ");
}

TEST_F(TestList, HotTestsAlone) {
    mrStringList hot;
    hot.append("b");
    mrStringList* before = g_pHotList;
    add("a");
    add("b");
    mrTest::m_hot = 2;
    g_pHotList = &hot;
    m_list.runTests(m_all);
    mrTest::m_hot = 1;
    m_list.runTests(m_all);
    g_pHotList = nullptr;
    mrTest::m_hot = 2;
    m_list.runTests(m_all);
    EXPECT_EQ(m_log, "b a b ");
    mrTest::m_hot = 0;
    g_pHotList = before;
}

TEST_F(TestList, SortsStably) {
    for (const char* name : {"b", "c", "a", "b", "_z", "b", "C"}) {
        add(name);
    }
    m_list.sortFunc();
    EXPECT_EQ(names(), "C6 _z4 a2 b0 b3 b5 c1 ");
    mrTest* none = nullptr;
    mrTest* some = m_tests[0].get();
    EXPECT_FALSE(mrTestList::aless(none, some));
    EXPECT_FALSE(mrTestList::aless(some, none));
}

TEST_F(TestList, DescriptionsOfTheMachineComeFirst) {
    m_list.startWithCpuTest();
    for (const char* name : {"a", "_x", "b", "__y", "c"}) {
        add(name);
    }
    m_list.startWithCpuTest();
    EXPECT_EQ(names(), "_x1 __y3 a0 b2 c4 ");
}

class CommonParms : public TestList {
  protected:
    /// Names and marks of the candidates that are left, and the tests that were asked.
    std::string left(mrConditions& conditions) {
        mrList<mrParameter*> candidates;
        for (mrIterator<int>* parm : {&m_length, &m_shift, &m_unused}) {
            parm->setActive(true);
            candidates.append(parm);
        }
        m_log = "";
        m_list.selectCommonParms(conditions, candidates);
        std::string text;
        for (const mrParameter* parm : candidates) {
            text += str(parm->name()) + (parm->active() ? " " : "? ");
        }
        for (const auto& test : m_tests) {
            EXPECT_TRUE(test->m_parms.empty());
            EXPECT_EQ(test->m_pCacheIter, nullptr);
        }
        return text + "of " + m_log;
    }

    mrIterator<int> m_length{0, "Length", ""};
    mrIterator<int> m_shift{0, "Shift", ""};
    mrIterator<int> m_unused{0, "Unused", ""};
};

TEST_F(CommonParms, AreThoseThatASelectedTestUses) {
    add("a").uses = {&m_length};
    add("b").uses = {&m_shift, &m_length};
    add("c");
    EXPECT_EQ(left(m_all), "Length Shift of a b c ");
    mrTest::m_cache = true;  // the iterator of the cache stands for the one inside it
    EXPECT_EQ(left(m_all), "Length Shift of a b c ");
    mrTest::m_cache = false;
    mrConditions conditions;
    conditions.append(mrMakeCondition(RunCondition::FunctionName, "=a"));
    EXPECT_EQ(left(conditions), "Length of a ");
    // With all candidates marked the walk ends with the next test.
    add("d").uses = {&m_unused};
    add("e");
    add("f");
    EXPECT_EQ(left(m_all), "Length Shift Unused of a b c d e ");
}

}  // namespace
