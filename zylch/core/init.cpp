#include "dispatch.h"
#include "zylcore.h"

// Both start as constants, never through an initialiser that runs: callers may come before this library's own
// initialisers would.
int zylCodePath = zylPathPlain;

namespace {

constexpr Zyl64u Sse2 = 0x4;
constexpr Zyl64u Avx2 = 0x8000;

Zyl64u g_enabled = 0;

Zyl64u processorFeatures() {
    Zyl64u mask = 0;
    zylGetCpuFeatures(&mask, nullptr);
    return mask;
}

int pathFor(Zyl64u mask) {
    if ((mask & Sse2) == 0) {
        return zylPathPlain;
    }
    return (mask & Avx2) != 0 ? zylPathAvx2 : zylPathSse2;
}

void putInForce(Zyl64u mask) {
    g_enabled = mask;
    zylCodePath = pathFor(mask);
}

}  // namespace

int zylInit() {
    putInForce(processorFeatures());
    return zylStsNoErr;
}

int zylSetCpuFeatures(Zyl64u mask) {
    if (mask == 0 || (mask & ~processorFeatures()) != 0) {
        return zylStsNotSupportedErr;
    }
    putInForce(mask);
    return zylStsNoErr;
}

Zyl64u zylGetEnabledCpuFeatures() { return g_enabled; }
