#include "parameter/mrmemory.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "stream/mrostream.h"

namespace {

struct Address {
    void* m_base = nullptr;     ///< the aligned base
    void* m_aligned = nullptr;  ///< what the caller got
    int m_size = 0;
    mrObject* m_object = nullptr;
};

struct AddressList : mrList<Address> {
    iterator m_current = end();  ///< what the walk delivers next

    iterator find(const void* block) {
        iterator at = begin();
        while (at != end() && at->m_aligned != block) {
            ++at;
        }
        return at;
    }
};

/// Below the base, room for the pointer that malloc gave.
constexpr int RawPointerDistance = 128;
constexpr int SpareBytes = 256;

AddressList* pAddressList = nullptr;
int refusedBlocks = 0;
int VectorShift = 512;
int VectorAlign = 0;
bool AlignSrc = true;
bool AlignByByte = true;

char* baseOf(char* raw) {
    const auto mask = static_cast<std::uintptr_t>(-static_cast<std::intptr_t>(MR_ALIGN_MAX));
    const auto address = reinterpret_cast<std::uintptr_t>(raw) + static_cast<std::uintptr_t>(MR_ALIGN_MAX) +
                         RawPointerDistance;
    return raw + ((address & mask) - reinterpret_cast<std::uintptr_t>(raw));
}

char* alignedBehind(char* base, int shift, int offset) {
    const auto address = reinterpret_cast<std::uintptr_t>(base) + static_cast<std::uintptr_t>(shift) +
                         static_cast<std::uintptr_t>(MR_ALIGN_MAX) - 1;
    const auto mask = static_cast<std::uintptr_t>(static_cast<std::intptr_t>(offset) - MR_ALIGN_MAX);
    return base + ((address & mask) - reinterpret_cast<std::uintptr_t>(base));
}

void report(const char* what, void* block) {
    g_ostrm << MSG_MEM << what;
    if (pAddressList != nullptr) {
        const auto found = pAddressList->find(block);
        if (found != pAddressList->end()) {
            g_ostrm << "size:" << mrText(found->m_size) << "  address:" << mrText(found->m_base)
                    << "  alignedPointer:" << mrText(found->m_aligned);
        }
    }
    g_ostrm << "\n" << MSG_END_FLUSH;
}

void* noMemory(int size) {
    g_ostrm << MSG_ERR << "-- Memory fault: can't allocate " << mrText(size) << " bytes\n" << MSG_END;
    return nullptr;
}

void describe(const Address& block, int* size, mrObject** object) {
    if (size != nullptr) {
        *size = block.m_size;
    }
    if (object != nullptr) {
        *object = block.m_object;
    }
}

}  // namespace

int MR_ALIGN_MAX = MR_ALIGN_DEF;

void* mrMalloc(int size, int align, int shift, mrObject* object) {
    // A shift below the base would leave the block's own memory.
    const int distance = shift > 0 ? shift : 0;
    const int offset = align % MR_ALIGN_MAX;
    if (size < 0) {
        return noMemory(size);
    }
    // in 64 bits: two large numbers would leave a small sum in 32
    const std::uint64_t room = static_cast<std::uint64_t>(size) + static_cast<std::uint64_t>(distance) +
                               2 * static_cast<std::uint64_t>(MR_ALIGN_MAX) + SpareBytes +
                               static_cast<std::uint64_t>(offset > 0 ? offset : 0);
    auto* raw = room > SIZE_MAX ? nullptr : static_cast<char*>(std::malloc(static_cast<std::size_t>(room)));
    if (raw == nullptr) {
        mrCountRefusedBlock();
        return noMemory(size);
    }
    char* base = baseOf(raw);
    std::memcpy(base - RawPointerDistance, &raw, sizeof raw);
    void* block = alignedBehind(base, distance, offset);
    if (pAddressList == nullptr) {
        pAddressList = new AddressList;
    }
    pAddressList->append({base, block, size, object});
    report(" - mrMalloc: ", block);
    return block;
}

void* mrMalloc(void*& out, int size, int align, int shift) {
    out = mrMalloc(size, align, shift, nullptr);
    return out;
}

int mrRefusedBlocks() { return refusedBlocks; }

void mrCountRefusedBlock() { ++refusedBlocks; }

void mrFree(void* block) {
    if (pAddressList == nullptr) {
        return;
    }
    if (block != nullptr) {
        report(" - mrFree: ", block);
    }
    const auto found = pAddressList->find(block);
    if (found == pAddressList->end()) {
        return;
    }
    void* raw = nullptr;
    std::memcpy(&raw, static_cast<char*>(found->m_base) - RawPointerDistance, sizeof raw);
    pAddressList->erase(found);
    std::free(raw);
}

bool mrMallocInfo(void* block, int* size, mrObject** object) {
    if (pAddressList == nullptr) {
        return false;
    }
    const auto found = pAddressList->find(block);
    if (found == pAddressList->end()) {
        return false;
    }
    describe(*found, size, object);
    return true;
}

void* mrMallocFirst(int* size, mrObject** object) {
    if (pAddressList == nullptr) {
        return nullptr;
    }
    pAddressList->m_current = pAddressList->begin();
    return mrMallocNext(size, object);
}

void* mrMallocNext(int* size, mrObject** object) {
    if (pAddressList == nullptr || pAddressList->m_current == pAddressList->end()) {
        return nullptr;
    }
    const Address& block = *pAddressList->m_current;
    ++pAddressList->m_current;
    describe(block, size, object);
    return block.m_aligned;
}

namespace {

template <class Operation>
int countOverOwnedBlocks(Operation operation) {
    int count = 0;
    mrForEachBlock(
        [&](void*, int, mrObject* owner) { count += owner != nullptr && operation(owner) ? 1 : 0; });
    return count;
}

}  // namespace

int mrReserveAllCopies() {
    return countOverOwnedBlocks([](mrObject* owner) { return owner->reserveCopy(); });
}

int mrRestoreAllCopies() {
    return countOverOwnedBlocks([](mrObject* owner) { return owner->setReservedCopy(); });
}

void mrFreeAll() {
    delete pAddressList;
    pAddressList = nullptr;
}

void mrSetAlignMax(int align) { MR_ALIGN_MAX = align; }

int mrGetVectorShift() { return VectorShift; }

int mrGetVectorShift(int number) {
    const long long shift = static_cast<long long>(VectorShift) * number;
    return static_cast<int>(std::clamp<long long>(shift, INT_MIN, INT_MAX));
}

void mrSetVectorShift(int shift) { VectorShift = shift; }

int mrGetVectorAlign() { return VectorAlign; }

int mrSetVectorAlign(int align) {
    VectorAlign = align % MR_ALIGN_MAX;
    return align / MR_ALIGN_MAX;
}

bool mrGetAlignSrc() { return AlignSrc; }

void mrSetAlignSrc(bool on) { AlignSrc = on; }

bool mrGetAlignByByte() { return AlignByByte; }

void mrSetAlignByByte(bool on) { AlignByByte = on; }
