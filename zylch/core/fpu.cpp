#include "zylcore.h"

namespace {

constexpr unsigned SsxFlags = 0x3F;
/// The bits above these are reserved: LDMXCSR faults if one of them is set.
constexpr unsigned SsxBits = 0xFFFF;

unsigned merged(unsigned old, unsigned value, unsigned mask) { return (old & ~mask) | (value & mask); }

unsigned x87Control() {
    unsigned short word = 0;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

unsigned x87Status() {
    unsigned short word = 0;
    asm volatile("fnstsw %0" : "=m"(word));
    return word;
}

void clearX87Flags() { asm volatile("fnclex"); }

/// FLDCW is a waiting instruction and would fire what is pending, hence the flags go first.
void setX87Control(unsigned value, unsigned mask) {
    const auto word = static_cast<unsigned short>(merged(x87Control(), value, mask));
    asm volatile("fnclex\n\tfldcw %0" : : "m"(word));
}

unsigned ssxWord() {
    unsigned word = 0;
    asm volatile("stmxcsr %0" : "=m"(word));
    return word;
}

void setSsx(unsigned value, unsigned mask) {
    const unsigned word = merged(ssxWord(), value, mask & SsxBits);
    asm volatile("ldmxcsr %0" : : "m"(word));
}

}  // namespace

unsigned zylFpuSsx4TS(int op, unsigned value, unsigned mask) {
    switch (op) {
        case 1:
            setX87Control(value, mask);
            return 0;
        case 2:
            return x87Control();
        case 3:
            return x87Status();
        case 4:
            clearX87Flags();
            return 0;
        case 5:
            setSsx(value, mask);
            return 0;
        case 6:
            return ssxWord();
        case 7:
            setSsx(0, SsxFlags);
            return 0;
        default:
            return 0;
    }
}
