// The blocks that hold the data of a test.

#include <algorithm>
#include <climits>

#include "job/mrtest.h"
#include "parameter/mrmemory.h"

namespace {

constexpr int ShiftWrap = 32768;

}  // namespace

void* mrTest::allocate(int size, int align, mrObject* object) {
    int offset = align;
    if (align < 0) {
        offset = mrGetAlignSrc() && m_vectorNum != 0 ? 0 : -(mrGetVectorAlign() * align);
    }
    void* block = mrMalloc(size, offset, m_vectorShift, object != nullptr ? object : MEM_OBJECT_IS_BUFFER);
    if (block == nullptr) {
        return nullptr;
    }
    ++m_vectorNum;
    const long long next = static_cast<long long>(m_vectorShift) + mrGetVectorShift();
    m_vectorShift = next >= ShiftWrap ? 0 : static_cast<int>(std::max<long long>(next, INT_MIN));
    return block;
}

void mrTest::deallocate(void* block) { mrFree(block); }

int mrTest::reserveAllVectors() { return mrReserveAllCopies(); }

int mrTest::resetAllVectors() { return mrRestoreAllCopies(); }
