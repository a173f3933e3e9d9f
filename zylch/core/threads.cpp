#include "zylcore.h"

namespace {

constexpr int kThreads = 1;

}  // namespace

int zylSetNumThreads(int number) {
    if (number < kThreads) {
        return zylStsSizeErr;
    }
    return number == kThreads ? zylStsNoErr : zylStsThreadsNote;
}

int zylGetNumThreads(int* number) {
    if (number == nullptr) {
        return zylStsNullPtrErr;
    }
    *number = kThreads;
    return zylStsNoErr;
}
