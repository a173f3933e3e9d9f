#include "text/mrlist.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string textOf(const mrList<int>& list) {
    std::string text;
    for (const int value : list) {
        text += std::to_string(value) + " ";
    }
    return text;
}

TEST(List, InsertsErasesAndCopies) {
    mrList<int> list;
    list.insert(list.begin(), 2);
    list.insert(list.begin(), 1);
    auto last = list.append(4);
    EXPECT_EQ(*list.insert(last, 3), 3);
    EXPECT_EQ(*list.erase(list.begin()), 2);
    EXPECT_EQ(list.erase(last), list.end());
    mrList<int> copy = list;
    copy.append(5);
    EXPECT_EQ(textOf(list) + textOf(copy), "2 3 2 3 5 ");
}

TEST(List, MergeKeepsItsOwnEqualsFirst) {
    mrList<int> list;
    for (const int batch : {20, 11, 12, 10, 31}) {
        mrList<int> other;
        other.append(batch);
        other.append(batch + 20);
        // Sorted by the tens; the ones tell equals apart.
        list.merge(other, [](int& a, int& b) { return a / 10 < b / 10; });
        EXPECT_TRUE(other.empty());
    }
    EXPECT_EQ(textOf(list), "11 12 10 20 31 32 30 31 40 51 ");
}

}  // namespace
