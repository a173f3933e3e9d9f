#include "parameter/mrcacheiterator.h"

#include <gtest/gtest.h>

#include <climits>

#include "machine/mrlibrary.h"
#include "parameter/mrmemory.h"
#include "support/captured_output.h"

namespace {

/// Rows: the value, bytes it takes, bytes it should take, whether that is approached in steps, and the new
/// value, 0 if refused. Jumps end just below the limit, wherever they begin.
TEST(CacheIterator, ChangesNumbers) {
    static constexpr std::tuple<int, int, int, bool, int> rows[] = {
        {32, 999, 1000, true, 64},   {32, 1000, 1000, true, 16},  {1, 1000, 100, true, 0},
        {INT_MAX, 1, 2, true, 0},    {32, 100, 1000, false, 256}, {32, 500, 1000, false, 32},
        {32, 1000, 1000, false, 16}, {32, 8001, 1000, false, 2},  {7, 1, INT_MAX, false, 0},
        {7, INT_MAX, 1, false, 0},   {7, 0, 1000, false, 0},      {7, 1000, 0, false, 0},
    };
    for (const auto& [before, actual, limit, approach, after] : rows) {
        int value = before;
        const bool changed = mrCacheIteratorInt::updateValue(value, actual, limit, approach);
        EXPECT_EQ(changed ? value : 0, after) << before << " by " << actual << " to " << limit;
    }
}

/// Data of a test in a cache of 1000000 bytes: one object, and one block for all of it.
class CacheWalk : public testing::Test, public mrObject {
  protected:
    CacheWalk() {
        mrFreeAll();
        zyl_GetMaxCacheSizeB = [](int* bytes) {
            *bytes = 1000000;
            return 0;
        };
        size.add(1000);
    }
    ~CacheWalk() override { zyl_GetMaxCacheSizeB = nullptr; }
    int objectSize() const override { return objectBytes; }
    bool fits(mrCacheIterator& iterator, int object, int total) {
        objectBytes = object;
        void* const block = mrMalloc(total, 0, 0, nullptr);
        const bool fit = iterator.validateSize();
        mrFree(block);
        return fit;
    }

    int objectBytes = 0;
    mrIterator<int> size{0, "Size", "Enter size"};
};

TEST_F(CacheWalk, ComparesTheDataWithTheCache) {
    mrCacheIteratorInt iterator(size, this, nullptr);
    CapturedOutput output(MSG_ERR);
    iterator.nextValue();
    EXPECT_FALSE(fits(iterator, 99999, 900000));
    EXPECT_FALSE(fits(iterator, 100000, 900001));
    // Where the tries were not shown, the end of a failed state shows them.
    iterator.outputInfo();
    EXPECT_TRUE(fits(iterator, 100000, 900000));
    iterator.nextValue();
    EXPECT_TRUE(fits(iterator, 1050000, 9000000));
    EXPECT_FALSE(fits(iterator, 1049999, 9000000));
    EXPECT_EQ(output.text(),
              "      inCache try: cacheParm=1000 objectSize=99999 < 100000\n"
              "      inCache try: cacheParm=1000 totalSize=900001 > 900000\n");
}

TEST_F(CacheWalk, GivesUp) {
    static std::string asked;
    // A test's own rule that never helps is asked for a jump, and then for steps.
    mrCacheIteratorInt iterator(size, this, [](mrParameter*, int, int, bool approach) {
        asked += approach ? "s" : "j";
        return true;
    });
    iterator.nextValue();
    while (!fits(iterator, 5, 5) && iterator.repeatValue()) {
    }
    EXPECT_EQ(asked, "jssssssssss");
    // Both limits missed: from then on a hundredth of the cache will do.
    iterator.firstValue();
    EXPECT_FALSE(fits(iterator, 50000, 900001));
    EXPECT_TRUE(fits(iterator, 50000, 900000));
    EXPECT_FALSE(fits(iterator, 5000, 900001));
    EXPECT_FALSE(iterator.repeatValue());
    // So it is, at once, for too small after too large at the third try.
    iterator.firstValue();
    EXPECT_FALSE(fits(iterator, 50000, 60000));
    EXPECT_TRUE(iterator.repeatValue());
    EXPECT_FALSE(fits(iterator, 200000, 900001));
    EXPECT_TRUE(iterator.repeatValue());
    EXPECT_TRUE(fits(iterator, 50000, 60000));
}

}  // namespace
