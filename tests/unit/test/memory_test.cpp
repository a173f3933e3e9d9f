#include "test/mrmemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/captured_output.h"

namespace {

std::uintptr_t offsetOf(const void* block) { return reinterpret_cast<std::uintptr_t>(block) % 64; }

TEST(Memory, BlocksStandAtTheOffsetAskedFor) {
    static constexpr struct {
        int size, align, shift;
        unsigned offset;
    } rows[] = {
        {100, 3, 0, 3},     {100, 0, 0, 0},   {1, 63, 512, 63}, {5000, 130, 32704, 2},
        {100, 0, -4096, 0}, {100, 64, 64, 0}, {0, 0, 0, 0},     {64, 0, 100, 0},
    };
    for (const auto& row : rows) {
        void* block = mrMalloc(row.size, row.align, row.shift, nullptr);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(offsetOf(block), row.offset) << row.size << " " << row.align << " " << row.shift;
        std::memset(block, 0xA5, static_cast<std::size_t>(row.size));  // is all its own
        mrFree(block);
        EXPECT_FALSE(mrMallocInfo(block, nullptr, nullptr));
    }
    // A negative offset keeps the block's own memory, whatever its place.
    void* block = mrMalloc(100, -3, 0, nullptr);
    std::memset(block, 0xA5, 100);
    mrFree(block);
}

TEST(Memory, ListWalksAllBlocksInOrder) {
    mrObject owner;
    void* first = nullptr;
    EXPECT_EQ(mrMalloc(first, 10, 0, 0), first);
    void* second = mrMalloc(20, 0, 512, &owner);
    void* third = mrMalloc(30, 0, 1024, MEM_OBJECT_IS_BUFFER);
    int size = 0;
    mrObject* object = &owner;
    EXPECT_EQ(mrMallocFirst(&size, &object), first);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(mrMallocNext(&size, &object), second);
    EXPECT_EQ(size, 20);
    EXPECT_EQ(object, &owner);
    EXPECT_EQ(mrMallocNext(nullptr, &object), third);
    EXPECT_EQ(object, MEM_OBJECT_IS_BUFFER);
    EXPECT_EQ(mrMallocNext(&size, nullptr), nullptr);
    EXPECT_EQ(mrMallocNext(&size, nullptr), nullptr);
    mrFree(second);
    mrFree(&size);  // never allocated here
    EXPECT_EQ(mrMallocFirst(nullptr, nullptr), first);
    EXPECT_EQ(mrMallocNext(nullptr, nullptr), third);
    EXPECT_TRUE(mrMallocInfo(third, &size, &object));
    EXPECT_EQ(size, 30);
    mrFree(first);
    mrFree(third);
    EXPECT_EQ(mrMallocFirst(&size, &object), nullptr);
    mrFreeAll();
    EXPECT_EQ(mrMallocFirst(&size, &object), nullptr);
    EXPECT_FALSE(mrMallocInfo(first, &size, &object));
}

TEST(Memory, ReportsBlocksOnItsOwnLevel) {
    CapturedOutput output(MSG_MEM | MSG_ERR);
    void* block = mrMalloc(100, 3, 512, nullptr);
    const auto base = reinterpret_cast<std::uintptr_t>(block) - 512 - 3;
    const std::string items = "size:100  address:" + str(mrText(reinterpret_cast<void*>(base))) +
                              "  alignedPointer:" + str(mrText(block)) + "\n";
    mrFree(block);
    mrFree(nullptr);
    mrFree(block);
    EXPECT_EQ(output.text(), " - mrMalloc: " + items + " - mrFree: " + items + " - mrFree: \n");
    mrFreeAll();
    mrFree(block);
    EXPECT_EQ(mrMalloc(-1, 0, 0, nullptr), nullptr);
    EXPECT_EQ(output.text(), " - mrMalloc: " + items + " - mrFree: " + items + " - mrFree: \n" +
                                 "-- Memory fault: can't allocate -1 bytes\n");
}

TEST(Memory, SettingsFollowTheBoundary) {
    EXPECT_EQ(mrSetVectorAlign(70), 1);
    EXPECT_EQ(mrGetVectorAlign(), 6);
    EXPECT_EQ(mrSetVectorAlign(-70), -1);
    EXPECT_EQ(mrGetVectorAlign(), -6);
    mrSetAlignMax(4096);
    EXPECT_EQ(mrSetVectorAlign(70), 0);
    void* block = mrMalloc(10, 70, 0, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 4096, 70u);
    mrFree(block);
    mrSetAlignMax(MR_ALIGN_DEF);
    mrSetVectorAlign(0);
}

}  // namespace
