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
    const mrList<int> copy = list;
    EXPECT_EQ(*list.erase(list.begin()), 12);
    EXPECT_EQ(list.erase(--list.end()), list.end());
    EXPECT_EQ(textOf(list), "12 10 20 31 32 30 31 40 ");
    EXPECT_EQ(textOf(copy), "11 12 10 20 31 32 30 31 40 51 ");
}

}  // namespace
