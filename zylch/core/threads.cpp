#include "zylcore.h"

namespace {

constexpr int Threads = 1;

}  // namespace

int zylSetNumThreads(int number) {
    if (number < Threads) {
        return zylStsSizeErr;
    }
    return number == Threads ? zylStsNoErr : zylStsThreadsNote;
}

int zylGetNumThreads(int* number) {
    if (number == nullptr) {
        return zylStsNullPtrErr;
    }
    *number = Threads;
    return zylStsNoErr;
}
