// A suite of bodies of known length, linked as an instrument of its own: metrig-lab measures it as any other.

#include "chains.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "bench/chains";

using TimsChain = zyTest;

#define REGISTER(name, count, times)                              \
    ZY_ENTRY int tcall_##name() { return chain<count, times>(); } \
    ZY_REG(TimsChain, name)
FOR_EACH_CHAIN(REGISTER)

}  // namespace
