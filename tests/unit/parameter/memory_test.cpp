#include "parameter/mrmemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(Memory, BlocksStandAtTheOffsetAskedFor) {
    static constexpr std::tuple<int, int, int, unsigned> rows[] = {
        {100, 3, 0, 3},     {1, 63, 512, 63},  {5000, 130, 32704, 2},
        {100, 0, -4096, 0}, {100, 64, 100, 0}, {0, 0, 0, 0},
    };
    for (const auto& [size, align, shift, offset] : rows) {
        void* block = mrMalloc(size, align, shift, nullptr);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, offset) << align;
        std::memset(block, 0xA5, static_cast<std::size_t>(size));  // is all its own
        mrFree(block);
        EXPECT_FALSE(mrMallocInfo(block, nullptr, nullptr));
    }
}

TEST(Memory, ListWalksAllBlocksInOrder) {
    mrObject owner;
    void* first = mrMalloc(10, 0, 0, nullptr);
    void* second = mrMalloc(20, 0, 512, &owner);

    int size = 0;
    mrObject* object = nullptr;
    mrFree(&size);  // never allocated here
    EXPECT_EQ(mrMallocFirst(nullptr, nullptr), first);
    mrFree(first);  // what was delivered may go
    EXPECT_EQ(mrMallocNext(&size, &object), second);
    EXPECT_EQ(size, 20);
    EXPECT_EQ(object, &owner);
    EXPECT_EQ(mrMallocNext(nullptr, nullptr), nullptr);
    EXPECT_EQ(mrMallocFirst(nullptr, nullptr), second);
    mrFree(second);
}

}  // namespace
