// Compiles the kernel text that ZYL_KERNELS names three times, as zylch::plain, zylch::sse2 and zylch::avx2.
// A template could not do it: the processor features of a function cannot depend on a template argument.
// Without a guard on purpose; a source includes this once.
//
// A kernel text begins its functions with ZYL_KERNEL, or with ZYL_HELPER where they are part of one, and
// finds `Block` and all of scan.inc.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "block.h"
#include "paths.h"

#define ZYL_KERNEL
#define ZYL_HELPER [[gnu::always_inline]] inline
namespace zylch::plain {
namespace {
#include "scan.inc"
#include ZYL_KERNELS
}  // namespace
}  // namespace zylch::plain
#undef ZYL_KERNEL
#undef ZYL_HELPER

#define ZYL_KERNEL [[gnu::target("sse2")]]
#define ZYL_HELPER [[gnu::target("sse2"), gnu::always_inline]] inline
namespace zylch::sse2 {
namespace {
#include "scan.inc"
#include ZYL_KERNELS
}  // namespace
}  // namespace zylch::sse2
#undef ZYL_KERNEL
#undef ZYL_HELPER

#define ZYL_KERNEL [[gnu::target("avx2")]]
#define ZYL_HELPER [[gnu::target("avx2"), gnu::always_inline]] inline
namespace zylch::avx2 {
namespace {
#include "scan.inc"
#include ZYL_KERNELS
}  // namespace
}  // namespace zylch::avx2
#undef ZYL_KERNEL
#undef ZYL_HELPER
#undef ZYL_KERNELS
