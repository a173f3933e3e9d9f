#include "test/mrcacheiterator.h"

#include <gtest/gtest.h>

#include <climits>

#include "session/mrbinding.h"
#include "support/captured_output.h"
#include "test/mrmemory.h"

namespace {

TEST(CacheIterator, ChangesNumbers) {
    static constexpr struct {
        int value;
        int actual;
        int limit;
        bool approach;
        int result;  ///< 0: refused
    } rows[] = {
        {32, 999, 1000, true, 64},
        {32, 1000, 1000, true, 16},
        {1, 1000, 100, true, 0},
        {INT_MAX, 1, 2, true, 0},
        // Jumps end just below the limit, wherever they begin.
        {32, 100, 1000, false, 256},
        {32, 500, 1000, false, 32},
        {32, 1000, 1000, false, 16},
        {32, 8001, 1000, false, 2},
        {7, 100000, 1000, false, 0},
        {7, 1, INT_MAX, false, 0},
        {7, INT_MAX, 1, false, 0},
        {7, 0, 1000, false, 0},
        {7, 1000, 0, false, 0},
    };
    for (const auto& row : rows) {
        int value = row.value;
        const bool changed = mrCacheIteratorInt::updateValue(value, row.actual, row.limit, row.approach);
        EXPECT_EQ(changed ? value : 0, row.result)
            << row.value << " by " << row.actual << " to " << row.limit;
    }
}

TEST(CacheIterator, ChangesSizes) {
    static constexpr struct {
        ZyliSize value;
        int actual;
        int limit;
        bool approach;
        bool changes;
        ZyliSize result;
    } rows[] = {
        {{8, 4}, 10, 100, true, true, {8, 8}},    {{8, 8}, 10, 100, true, true, {16, 8}},
        {{8, 4}, 100, 10, true, true, {4, 4}},    {{1, 1}, 100, 10, true, false, {1, 0}},
        {{8, 8}, 10, 100, false, true, {32, 16}}, {{8, 8}, 200, 100, false, true, {4, 4}},
        {{8, 8}, 100, 100, false, true, {8, 4}},  {{8, 8}, 0, 100, false, false, {8, 8}},
    };
    for (const auto& row : rows) {
        ZyliSize value = row.value;
        EXPECT_EQ(mrCacheIteratorSize::updateValue(value, row.actual, row.limit, row.approach), row.changes);
        EXPECT_EQ(value.width, row.result.width) << row.actual << " to " << row.limit;
        EXPECT_EQ(value.height, row.result.height) << row.actual << " to " << row.limit;
    }
}

class SizedObject : public mrObject {
  public:
    int objectSize() const override { return m_size; }

    int m_size = 0;
};

/// A cache of 1000000 bytes; one block of test data.
class CacheWalk : public testing::Test {
  protected:
    CacheWalk() {
        mrFreeAll();
        zyl_GetMaxCacheSizeB = [](int* bytes) {
            *bytes = 1000000;
            return 0;
        };
        size.add(1000);
    }
    ~CacheWalk() override {
        zyl_GetMaxCacheSizeB = nullptr;
        mrFree(block);
    }

    bool fits(mrCacheIterator& iterator, int objectBytes, int totalBytes) {
        object.m_size = objectBytes;
        mrFree(block);
        block = mrMalloc(totalBytes, 0, 0, nullptr);
        return iterator.validateSize();
    }
    /// Builds the data anew, `scale` bytes for each unit of the size, until they fit; the number of tries, or
    /// 0.
    int triesToFit(mrCacheIterator& iterator, int scale) {
        for (int tries = 1;; ++tries) {
            if (fits(iterator, 0, size.value() * scale)) {
                return tries;
            }
            if (!iterator.repeatValue()) {
                return 0;
            }
        }
    }

    void* block = nullptr;
    mrIterator<int> size{0, "Size", "Enter size"};
    SizedObject object;
};

TEST_F(CacheWalk, ComparesTheDataWithTheCache) {
    static constexpr struct {
        int state;
        int objectBytes;  ///< 0: no object
        int totalBytes;
        const char* report;  ///< empty: fits
    } rows[] = {
        {0, 100000, 900000, ""},
        {0, 0, 100000, ""},
        {0, 99999, 900000, "      inCache try: cacheParm=1000 objectSize=99999 < 100000\n"},
        {0, 0, 99999, "      inCache try: cacheParm=1000 totalSize=99999 < 100000\n"},
        {0, 100000, 900001, "      inCache try: cacheParm=1000 totalSize=900001 > 900000\n"},
        {0, 99999, 900001, "      inCache try: cacheParm=1000 objectSize=99999 < 100000\n"},
        {1, 1050000, 1050000, ""},
        {1, 1049999, 9000000, "      outofCache try: cacheParm=1000 objectSize=1049999 < 1050000\n"},
    };
    for (const auto& row : rows) {
        mrCacheIteratorInt iterator(size, row.objectBytes != 0 ? &object : nullptr, nullptr);
        for (int state = 0; state <= row.state; ++state) {
            EXPECT_TRUE(iterator.nextValue());
        }
        CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
        g_ostrm.setOutLevel(MSG_ERR);
        mrCacheIterator& base = iterator;
        EXPECT_EQ(fits(base, row.objectBytes, row.totalBytes), *row.report == '\0') << row.report;
        EXPECT_EQ(output.text(), "");
        // Where the tries were not shown, the end of a failed state shows them.
        iterator.outputInfo();
        EXPECT_EQ(output.text(), row.report);
        g_ostrm.setOutLevel(MSG_ERR | MSG_WARN | MSG_PERF);
        iterator.outputInfo();
        EXPECT_EQ(output.text(), row.report);
    }
}

TEST_F(CacheWalk, FindsASizeForEachState) {
    mrCacheIteratorInt iterator(size, nullptr, nullptr);
    EXPECT_TRUE(iterator.nextValue());
    EXPECT_EQ(str(iterator.getComment()), "inCache");
    // A jump to just below the low limit, and a step over it.
    EXPECT_EQ(triesToFit(iterator, 1), 3);
    EXPECT_EQ(str(iterator.valueString()), "128000");
    EXPECT_TRUE(iterator.nextValue());
    EXPECT_EQ(str(iterator.getComment()), "outofCache");
    EXPECT_EQ(size.value(), 1000);
    EXPECT_EQ(triesToFit(iterator, 1), 3);
    EXPECT_EQ(size.value(), 2048000);
    EXPECT_FALSE(iterator.nextValue());
    EXPECT_EQ(str(iterator.name()), "cacheIterator");
    EXPECT_EQ(str(iterator.description()), "Size = 1000");
}

TEST_F(CacheWalk, GivesUp) {
    mrCacheIteratorInt iterator(size, nullptr, nullptr);
    EXPECT_TRUE(iterator.nextValue());
    // One unit is larger than the cache: the size can't go below 1 and stays.
    size.setValue(1);
    EXPECT_EQ(triesToFit(iterator, 2000000), 0);
    EXPECT_EQ(size.value(), 1);
    // A test's own rule that never helps is asked eleven times, for a jump and then for steps.
    static int jumps = 0;
    static int steps = 0;
    mrCacheIteratorInt checked(size, nullptr, [](mrParameter*, int actual, int limit, bool approach) {
        ++(approach ? steps : jumps);
        return actual == 5 && limit == 100000;
    });
    EXPECT_TRUE(checked.nextValue());
    size.setValue(1);
    EXPECT_EQ(triesToFit(checked, 5), 0);
    EXPECT_EQ(jumps, 1);
    EXPECT_EQ(steps, 10);
    // Nothing fits a cache of unknown size.
    zyl_GetMaxCacheSizeB = [](int*) { return -20; };
    EXPECT_EQ(triesToFit(iterator, 1000), 0);
}

TEST_F(CacheWalk, WidensTheRangeOnce) {
    const mrCacheCheck retry = [](mrParameter*, int, int, bool) { return true; };
    // Both limits missed: from then on a hundredth of the cache will do.
    mrCacheIteratorInt narrow(size, &object, retry);
    EXPECT_TRUE(narrow.nextValue());
    EXPECT_FALSE(fits(narrow, 50000, 900001));
    EXPECT_TRUE(fits(narrow, 50000, 900000));
    EXPECT_FALSE(fits(narrow, 5000, 900001));
    EXPECT_FALSE(narrow.repeatValue());
    // Too small behind too large, at the third try: the same, at once.
    mrCacheIteratorInt swinging(size, &object, retry);
    EXPECT_TRUE(swinging.nextValue());
    EXPECT_FALSE(fits(swinging, 200000, 900001));
    EXPECT_TRUE(swinging.repeatValue());
    EXPECT_FALSE(fits(swinging, 50000, 60000));
    EXPECT_FALSE(fits(swinging, 200000, 900001));
    EXPECT_TRUE(swinging.repeatValue());
    EXPECT_TRUE(fits(swinging, 50000, 60000));
    EXPECT_TRUE(swinging.firstValue());
    EXPECT_FALSE(fits(swinging, 50000, 60000));
}

}  // namespace
