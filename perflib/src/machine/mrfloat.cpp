#include "machine/mrfloat.h"

#include <iterator>

#include "zylcore.h"

namespace {

/// Operations of zylFpuSsx4TS.
enum FloatOp : int {
    Set87 = 1,
    GetCW87 = 2,
    GetSW87 = 3,
    Clear87 = 4,
    SetSSX = 5,
    GetSSX = 6,
    DestroySSX = 7
};

constexpr unsigned Flags = 0x3F;
constexpr unsigned Masks87 = 0x3F;
constexpr unsigned Default87 = 0xF3F;
constexpr unsigned MasksSSX = 0x1F80;
constexpr unsigned DefaultSSX = 0xFFBF;
constexpr unsigned FlushToZeroSSX = 0x8000;
constexpr unsigned Inexact87 = 0x20;
constexpr unsigned InexactSSX = 0x1000;
constexpr unsigned SSEFeature = 0x2;

struct BitText {
    unsigned bits;
    const char* text;
};

constexpr BitText Rounding87[] = {{0xC00, "Zero "}, {0x800, "Up "}, {0x400, "Down "}, {0, "Near "}};
constexpr BitText Precision87[] = {{0, "24 "}, {0x200, "53 "}, {0x300, "64 "}};
constexpr BitText Control87[] = {{1, "Invalid "},  {2, "Denormal "},     {4, "Zerodivide "},
                                 {8, "Overflow "}, {0x10, "Underflow "}, {0x20, "Inexact "}};
constexpr BitText Status[] = {{1, "?Invalid "},  {2, "?Denormal "},     {4, "?Zerodivide "},
                              {8, "?Overflow "}, {0x10, "?Underflow "}, {0x20, "_Inexact "}};
constexpr BitText RoundingSSX[] = {{0x6000, "Zero "}, {0x4000, "Up "}, {0x2000, "Down "}, {0, "Near "}};
constexpr BitText ControlSSX[] = {{0x80, "Invalid "},   {0x100, "Denormal "},  {0x200, "Zerodivide "},
                                  {0x400, "Overflow "}, {0x800, "Underflow "}, {0x1000, "Inexact "}};
constexpr BitText FlushSSX[] = {{0x8000, "FlushToZero "}, {0, "NoFlushToZero "}};
constexpr const char* NoUnit = "cpu has not SSX extension";

/// The text of the row whose bits are exactly those of the word under the mask.
template <std::size_t N>
mrString fieldText(const BitText (&rows)[N], unsigned word, unsigned mask) {
    for (const BitText& row : rows) {
        if ((word & mask) == row.bits) {
            return row.text;
        }
    }
    return "";
}

/// The texts of all rows with a bit in the word.
template <std::size_t N>
mrString bitTexts(const BitText (&rows)[N], unsigned word) {
    mrString texts;
    for (const BitText& row : rows) {
        if ((word & row.bits) != 0) {
            texts << row.text;
        }
    }
    return texts;
}

mrString statusText(unsigned word) {
    const mrString texts = bitTexts(Status, word);
    return texts.empty() ? mrString("Ok") : texts;
}

bool hasSSX() {
    Zyl64u features = 0;
    zylGetCpuFeatures(&features, nullptr);
    return (features & SSEFeature) != 0;
}

}  // namespace

unsigned ts87Base::Precision = 0x200;
unsigned ts87Base::Exception = 0x3B;
unsigned ts87Base::Rounding = 0;
unsigned tsSSXBase::Exception = 0x1F80;
unsigned tsSSXBase::Rounding = 0;
unsigned tsSSXBase::FlushZero = FlushToZeroSSX;

int ts87Base::getCW() const { return static_cast<int>(zylFpuSsx4TS(GetCW87, 0, 0)); }

int ts87Base::getSW() const { return static_cast<int>(zylFpuSsx4TS(GetSW87, 0, 0)); }

void ts87Base::clear() { zylFpuSsx4TS(Clear87, 0, 0); }

void ts87Base::set(unsigned value, unsigned mask) {
    clear();
    zylFpuSsx4TS(Set87, value, mask);
}

void ts87Base::setDefault() { set(Precision | Exception | Rounding, Default87); }

void ts87Base::enableExceptions() { zylFpuSsx4TS(Set87, 0, Masks87); }

void ts87Base::disableExceptions() { zylFpuSsx4TS(Set87, Masks87, Masks87); }

void ts87Base::disableInexactException() {
    // It starts from the status word, not from the control word: so it has always been.
    zylFpuSsx4TS(Set87, (zylFpuSsx4TS(GetSW87, 0, 0) & Masks87) | Inexact87, Masks87);
}

mrString ts87Base::strCW(unsigned word) {
    return fieldText(Rounding87, word, 0xC00) + fieldText(Precision87, word, 0x300) +
           bitTexts(Control87, word);
}

mrString ts87Base::strSW(unsigned word) { return statusText(word); }

tsSSXBase::tsSSXBase() : m_present(hasSSX()) {}

unsigned tsSSXBase::get() const { return m_present ? zylFpuSsx4TS(GetSSX, 0, 0) : 0; }

void tsSSXBase::set(unsigned value, unsigned mask) {
    if (m_present) {
        zylFpuSsx4TS(SetSSX, value, mask);
    }
}

void tsSSXBase::clear() { set(0, Flags); }

void tsSSXBase::destroy() {
    if (m_present) {
        zylFpuSsx4TS(DestroySSX, 0, 0);
    }
}

void tsSSXBase::setDefault() { set(Exception | Rounding | FlushZero, DefaultSSX); }

void tsSSXBase::enableExceptions() { set(0, MasksSSX); }

void tsSSXBase::disableExceptions() { set(MasksSSX, MasksSSX); }

void tsSSXBase::disableInexactException() { set((get() & MasksSSX) | InexactSSX, MasksSSX); }

mrString tsSSXBase::strCW(unsigned word) const {
    return m_present ? fieldText(RoundingSSX, word, 0x6000) + bitTexts(ControlSSX, word) +
                           fieldText(FlushSSX, word, 0x8000)
                     : mrString(NoUnit);
}

mrString tsSSXBase::strExceptionState(unsigned word) const {
    return m_present ? statusText(word) : mrString(NoUnit);
}

mr87::mr87(const mr87& other) : mr87() { *this = other; }

mr87& mr87::operator=(const mr87& other) {
    m_cwAccum = other.m_cwAccum;
    m_swAccum = other.m_swAccum;
    return *this;
}

void mr87::init() {
    m_cwAccum = 0;
    m_swAccum = 0;
    m_base->setDefault();
}

void mr87::start() { m_base->clear(); }

void mr87::stop() {
    m_swAccum |= static_cast<unsigned>(m_base->getSW());
    m_cwAccum |= static_cast<unsigned>(m_base->getCW());
}

void mr87::clear() {
    m_cwAccum = 0;
    m_swAccum = 0;
    m_base->clear();
}

mrSSX::mrSSX(const mrSSX& other) : mrSSX() { *this = other; }

mrSSX& mrSSX::operator=(const mrSSX& other) {
    m_accum = other.m_accum;
    return *this;
}

void mrSSX::init() {
    m_accum = 0;
    m_base->destroy();
    m_base->setDefault();
}

void mrSSX::start() { m_base->destroy(); }

void mrSSX::stop() { m_accum |= m_base->get(); }

void mrSSX::clear() {
    m_accum = 0;
    m_base->destroy();
    m_base->clear();
}

void mrUnmaskFloatExceptions() {
    g_ctrl87.setExceptionValue(Inexact87);
    g_ssx.setExceptionValue(InexactSSX);
}

void mrFlushToZero() { zylFpuSsx4TS(SetSSX, FlushToZeroSSX, FlushToZeroSSX); }

void mrRestoreFloatState() {
    mrFlushToZero();
    zylFpuSsx4TS(Clear87, 0, 0);
}
