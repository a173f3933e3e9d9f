#include "test/mrmemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(Memory, BlocksStandAtTheOffsetAskedFor) {
    static constexpr struct {
        int size, align, shift;
        unsigned offset;
    } rows[] = {
        {100, 3, 0, 3},     {1, 63, 512, 63},  {5000, 130, 32704, 2},
        {100, 0, -4096, 0}, {100, 64, 100, 0}, {0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        void* block = mrMalloc(row.size, row.align, row.shift, nullptr);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, row.offset) << row.align << " " << row.shift;
        std::memset(block, 0xA5, static_cast<std::size_t>(row.size));  // is all its own
        mrFree(block);
        EXPECT_FALSE(mrMallocInfo(block, nullptr, nullptr));
    }
}

TEST(Memory, ListWalksAllBlocksInOrder) {
    mrObject owner;
    void* first = mrMalloc(10, 0, 0, nullptr);
    void* second = mrMalloc(20, 0, 512, &owner);
    void* third = mrMalloc(30, 0, 1024, MEM_OBJECT_IS_BUFFER);
    int size = 0;
    mrObject* object = &owner;
    EXPECT_EQ(mrMallocFirst(&size, &object), first);
    EXPECT_EQ(mrMallocNext(&size, &object), second);
    EXPECT_EQ(size, 20);
    EXPECT_EQ(object, &owner);
    mrFree(second);
    mrFree(&size);  // never allocated here
    EXPECT_EQ(mrMallocFirst(nullptr, nullptr), first);
    EXPECT_EQ(mrMallocNext(&size, &object), third);
    EXPECT_EQ(object, MEM_OBJECT_IS_BUFFER);
    EXPECT_EQ(mrMallocNext(&size, nullptr), nullptr);
    mrFree(first);
    mrFree(third);
}

}  // namespace
