// Loaded by LD_PRELOAD: a library that tells METRIG_CACHE_SIZE as the size of the largest cache.

#include <zylcore.h>

#include <cstdlib>

extern "C" int zylGetMaxCacheSizeB(int* size) {
    *size = std::atoi(std::getenv("METRIG_CACHE_SIZE"));
    return zylStsNoErr;
}
