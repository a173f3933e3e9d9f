#pragma once

#include "text/mrobject.h"

/// Test data blocks: the speed of a function depends on the alignment of its data, so all of them are
/// allocated here, at a chosen distance from an alignment boundary, and every block is on one process-wide
/// list.

constexpr int MR_ALIGN_DEF = 64;

extern int MR_ALIGN_MAX;  ///< the boundary in force, a power of two

/// A block of `size` bytes behind a boundary, `align % MR_ALIGN_MAX` bytes off it and shifted by `shift`,
/// which should be a multiple of the boundary. Null, with a message, if there is no memory or `size` is
/// negative. `object` is the owner that the list names; null stands for nobody.
void* mrMalloc(int size, int align, int shift, mrObject* object);
/// The same with no owner; the pointer also goes to `out`.
/// For suites with buffers that are no vectors.
void* mrMalloc(void*& out, int size, int align, int shift);
/// Gives a block back; pointers that are not on the list are left alone.
void mrFree(void* block);

/// Blocks that could not be had since the start for want of memory.
int mrRefusedBlocks();
/// For one that is larger than any block can be, and was not asked for.
void mrCountRefusedBlock();

/// Fills the arguments that are not null; false if `block` is not on the list.
/// For suites that are handed a block.
bool mrMallocInfo(void* block, int* size, mrObject** object);
/// The walk over all blocks, oldest first; one walk at a time. Null at the end. A block that was delivered
/// may be freed before the next one is asked for.
void* mrMallocFirst(int* size, mrObject** object);
void* mrMallocNext(int* size, mrObject** object);
/// Calls `visit(void* block, int size, mrObject* owner)` for each block.
template <class Visit>
void mrForEachBlock(Visit visit) {
    int size = 0;
    mrObject* owner = nullptr;
    for (void* block = mrMallocFirst(&size, &owner); block != nullptr; block = mrMallocNext(&size, &owner)) {
        visit(block, size, owner);
    }
}

/// Save, or put back, the contents of all blocks that have an owner; the number of blocks for which that
/// worked.
int mrReserveAllCopies();
int mrRestoreAllCopies();

/// Drops the list at the end of the process; the memory itself goes with the process.
void mrFreeAll();

/// For suites whose data need another boundary, a power of two.
void mrSetAlignMax(int align);
/// Bytes added to the shift from block to block.
int mrGetVectorShift();
/// That of the block of this number in a combination, held within an int.
int mrGetVectorShift(int number);
void mrSetVectorShift(int shift);
/// Misalignment, held below MR_ALIGN_MAX; the setter returns how many boundaries it took off.
int mrGetVectorAlign();
int mrSetVectorAlign(int align);
/// Only the first block of a combination is misaligned.
bool mrGetAlignSrc();
void mrSetAlignSrc(bool on);
/// The misalignment counts bytes, not elements.
bool mrGetAlignByByte();
void mrSetAlignByByte(bool on);
