#include "machine/mrreserve.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "machine/mrsignal.h"

namespace {

/// One for each function that uses up all memory. More than malloc takes from the system at a time; never
/// written, so that they cost addresses alone.
constexpr std::size_t BlockSize = 2 * 1024 * 1024;
void* blocks[4];

void giveUpBlock() {
    if (!tsSignal::isLeavable()) {
        for (void*& block : blocks) {
            if (block != nullptr) {
                std::free(block);
                block = nullptr;
                return;
            }
        }
    }
    throw std::bad_alloc();
}

}  // namespace

void mrKeepReserve() {
    for (void*& block : blocks) {
        block = std::malloc(BlockSize);
    }
    std::set_new_handler(giveUpBlock);
}
