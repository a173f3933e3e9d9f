#include "text/mrlist.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Numbers = std::vector<int>;

mrList<int> listOf(const Numbers& values) {
    mrList<int> list;
    for (const int value : values) {
        list.append(value);
    }
    return list;
}

Numbers valuesOf(const mrList<int>& list) {
    Numbers values;
    for (const int value : list) {
        values.push_back(value);
    }
    EXPECT_EQ(static_cast<std::size_t>(list.size()), values.size());
    return values;
}

TEST(List, InsertsAndErasesAtEveryPlace) {
    mrList<int> list;
    EXPECT_EQ(list.begin(), list.end());
    list.insert(list.begin(), 2);
    list.insert(list.begin(), 1);
    auto last = list.append(4);
    EXPECT_EQ(*list.insert(last, 3), 3);
    EXPECT_EQ(valuesOf(list), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(*list.erase(list.begin()), 2);
    EXPECT_EQ(list.erase(last), list.end());
    EXPECT_EQ(valuesOf(list), (Numbers{2, 3}));
    EXPECT_EQ(*--list.end(), 3);
    list.clear();
    EXPECT_TRUE(list.empty());
    list.append(5);
    EXPECT_EQ(valuesOf(list), (Numbers{5}));
}

TEST(List, CopiesAreIndependent) {
    mrList<int> list = listOf({1, 2});
    mrList<int> copy = list;
    *copy.begin() = 9;
    copy.append(3);
    EXPECT_EQ(valuesOf(list), (Numbers{1, 2}));
    list = copy;
    copy.clear();
    const mrList<int>& same = list;
    list = same;
    EXPECT_EQ(valuesOf(list), (Numbers{9, 2, 3}));
}

TEST(List, MergeKeepsItsOwnEqualsFirst) {
    // Sorted by the tens; the ones tell equals apart.
    static constexpr auto less = [](int& a, int& b) { return a / 10 < b / 10; };
    const struct {
        Numbers list, other, merged;
    } rows[] = {
        {{10, 20}, {11, 12, 31}, {10, 11, 12, 20, 31}},
        {{20}, {11}, {11, 20}},
        {{20}, {}, {20}},
        {{}, {11, 21}, {11, 21}},
    };
    for (const auto& row : rows) {
        mrList<int> list = listOf(row.list);
        mrList<int> other = listOf(row.other);
        list.merge(other, less);
        EXPECT_EQ(valuesOf(list), row.merged);
        EXPECT_TRUE(other.empty());
        list.merge(list, less);
        EXPECT_EQ(valuesOf(list), row.merged);
    }
}

}  // namespace
