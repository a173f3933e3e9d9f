/// Insertion and removal against the string type of the standard library, in buffers that are an exact fit.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "zylch.h"

namespace {

constexpr char kGuard = '~';

/// `text` in a buffer for `capacity` bytes, a guard byte behind it.
std::vector<Zyl8u> bufferOf(const std::string& text, std::size_t capacity) {
    std::vector<Zyl8u> buffer(text.begin(), text.end());
    buffer.resize(capacity, '.');
    buffer.push_back(kGuard);
    return buffer;
}

/// Insertion of `ins` at `start`, in place and not.
void checkInsert(const std::string& text, const std::string& ins, int start) {
    const std::string expected = std::string(text).insert(static_cast<std::size_t>(start), ins);
    const std::vector<Zyl8u> src = bufferOf(text, text.size());
    const std::vector<Zyl8u> what = bufferOf(ins, ins.size());
    const int lenIns = static_cast<int>(ins.size());
    std::vector<Zyl8u> dst = bufferOf("", expected.size());
    std::vector<Zyl8u> data = bufferOf(text, expected.size());
    int len = static_cast<int>(text.size());
    EXPECT_EQ(zylsInsert_8u(src.data(), len, what.data(), lenIns, dst.data(), start), 0);
    EXPECT_EQ(zylsInsert_8u_I(what.data(), lenIns, data.data(), &len, start), 0);
    EXPECT_EQ(len, static_cast<int>(expected.size()));
    EXPECT_EQ(dst, bufferOf(expected, expected.size()));
    EXPECT_EQ(data, bufferOf(expected, expected.size()));
}

void checkRemove(const std::string& text, int start, int count) {
    const std::string expected =
        std::string(text).erase(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
    std::vector<Zyl8u> data = bufferOf(text, text.size());
    std::vector<Zyl8u> dst = bufferOf("", expected.size());
    int len = static_cast<int>(text.size());
    EXPECT_EQ(zylsRemove_8u(data.data(), len, dst.data(), start, count), 0);
    EXPECT_EQ(zylsRemove_8u_I(data.data(), &len, start, count), 0);
    EXPECT_EQ(len, static_cast<int>(expected.size()));
    EXPECT_EQ(dst, bufferOf(expected, expected.size()));
    EXPECT_EQ(std::string(data.begin(), data.begin() + len), expected);
    EXPECT_EQ(data.back(), kGuard);
}

TEST(Edit, EveryPlace) {
    const std::string texts[] = {"", "a", "abcdefgh", std::string(20, 'x') + "0123456789"};
    for (const std::string& text : texts) {
        for (int start = 0; start <= static_cast<int>(text.size()); ++start) {
            for (const std::string& ins : texts)
                checkInsert(text, ins, start);
            for (int count = 0; count <= static_cast<int>(text.size()) - start; ++count)
                checkRemove(text, start, count);
        }
    }
}

TEST(Edit, PlacesOutsideTheTextAreRefusedAndChangeNothing) {
    std::vector<Zyl8u> data = bufferOf("abc", 3);
    const Zyl8u ins[] = {'x'};
    int len = 3;
    const struct {
        int start;
        int count;
    } outside[] = {{4, 0}, {0, 4}, {3, 1}, {1, INT_MAX}, {INT_MAX, INT_MAX}};
    for (const auto& row : outside) {
        EXPECT_EQ(zylsRemove_8u_I(data.data(), &len, row.start, row.count), zylStsSizeErr) << row.start;
        EXPECT_EQ(zylsRemove_8u(data.data(), 3, data.data(), row.start, row.count), zylStsSizeErr)
            << row.start;
    }
    EXPECT_EQ(zylsInsert_8u_I(ins, 1, data.data(), &len, 4), zylStsSizeErr);
    EXPECT_EQ(zylsInsert_8u_I(ins, INT_MAX, data.data(), &len, 0), zylStsSizeErr);
    EXPECT_EQ(zylsInsert_8u(data.data(), 3, ins, INT_MAX, data.data(), 0), zylStsSizeErr);
    EXPECT_EQ(len, 3);
    EXPECT_EQ(data, bufferOf("abc", 3));
}

}  // namespace
