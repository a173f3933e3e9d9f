#include "machine/mrleftstate.h"

#include <locale.h>
#include <x86intrin.h>

#include <cstdint>
#include <cstring>

#include "machine/mrsignal.h"

namespace {

struct LeftState {
    const char* name;
    bool found;
    bool told;
};

enum Kind { DirectionFlag, X87Registers, X87Control, ControlSSX, Handlers, SignalStack, SignalMask, Locale };

LeftState states[] = {{"direction flag", false, false},   {"x87 registers", false, false},
                      {"x87 control word", false, false}, {"MXCSR", false, false},
                      {"signal handlers", false, false},  {"signal stack", false, false},
                      {"signal mask", false, false},      {"locale", false, false}};

void note(Kind kind, bool changed) { states[kind].found = states[kind].found || changed; }

constexpr unsigned Control87 = 0xF3F;  // rounding, precision, masks
constexpr unsigned FlagsSSX = 0x3F;    // the rest of MXCSR is control
constexpr unsigned Direction = 0x400;  // in the processor's flags
constexpr std::uint16_t AllEmpty = 0xFFFF;

/// What FNSTENV stores, in 32-bit protected mode and in 64 bits.
struct Environment87 {
    std::uint16_t control, unused0, status, unused1, tags, unused2;
    std::uint32_t pointers[4];
};

unsigned short control87() {
    unsigned short word = 0;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

/// Storing masks all exceptions, so the environment is loaded again either way.
bool emptyRegisters87() {
    Environment87 environment;
    asm volatile("fnstenv %0" : "=m"(environment));
    const bool changed = environment.tags != AllEmpty;
    environment.tags = AllEmpty;
    asm volatile("fldenv %0" : : "m"(environment));
    return changed;
}

/// The framework never sets one, so that numbers are written with a decimal point.
bool restoreLocale() {
    bool changed = uselocale(nullptr) != LC_GLOBAL_LOCALE;
    if (changed) {
        uselocale(LC_GLOBAL_LOCALE);
    }
    if (std::strcmp(setlocale(LC_ALL, nullptr), "C") != 0) {
        setlocale(LC_ALL, "C");
        changed = true;
    }
    return changed;
}

}  // namespace

mrControlWords::mrControlWords() : m_x87(control87()), m_ssx(_mm_getcsr()) {}

void mrControlWords::restore() const {
    const bool changed87 = ((control87() ^ m_x87) & Control87) != 0;
    if (changed87) {
        // What is pending would fire with the masks that come back.
        asm volatile("fnclex\n\tfldcw %0" : : "m"(m_x87));
    }
    note(X87Control, changed87);
    const unsigned ssx = _mm_getcsr();
    const bool changedSSX = ((ssx ^ m_ssx) & ~FlagsSSX) != 0;
    if (changedSSX) {
        _mm_setcsr((m_ssx & ~FlagsSSX) | (ssx & FlagsSSX));
    }
    note(ControlSSX, changedSSX);
}

void mrRestoreAfterCall() {
    note(DirectionFlag, (__readeflags() & Direction) != 0);
    asm volatile("cld");
    note(X87Registers, emptyRegisters87());
    note(Locale, restoreLocale());
}

void mrRestoreSignals() {
    note(Handlers, tsSignal::restoreHandlers());
    note(SignalStack, tsSignal::restoreStack());
    note(SignalMask, tsSignal::restoreMask());
}

void mrForgetLeftState() {
    for (LeftState& state : states) {
        state.found = state.told = false;
    }
}

mrString mrLeftStateToTell() {
    mrString names;
    for (LeftState& state : states) {
        if (state.found && !state.told) {
            names << (names.empty() ? "" : ", ") << state.name;
            state.told = true;
        }
    }
    return names;
}
