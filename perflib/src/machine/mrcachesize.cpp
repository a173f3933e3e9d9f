#include "machine/mrcachesize.h"

#include <algorithm>

#include "machine/mrlibrary.h"
#include "zylcore.h"

int mrCacheLeaf::size() const {
    const auto factor = [](int value) { return static_cast<Zyl32u>(value); };
    return static_cast<int>(factor(ways()) * factor(partitions()) * factor(lineSize()) * factor(sets()));
}

int mrLibraryCacheSizeB() {
    // This one of the library's functions is there in every build, bound or not.
    const auto ask = zyl_GetMaxCacheSizeB != nullptr ? zyl_GetMaxCacheSizeB : zylGetMaxCacheSizeB;
    int size = 0;
    return ask(&size) == 0 ? size : 0;
}

int mrGetMaxCacheSizeB() {
    int largest = mrLibraryCacheSizeB();
    if (largest > 0) {
        return largest;
    }
    largest = 0;
    for (int index = 0; index < mrCacheLeaf::MaxCaches; ++index) {
        const mrCacheLeaf cache(index);
        if (cache.type() == mrCacheLeaf::None || cache.size() < 0) {
            break;
        }
        largest = std::max(largest, cache.size());
    }
    return largest;
}
