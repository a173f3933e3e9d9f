// The data patterns.

#include <algorithm>
#include <bit>
#include <cmath>

#include "zycomponent.h"
#include "zyvector.h"

namespace {

constexpr double FloatDefault = 1.00001;
static_assert(std::bit_cast<std::uint64_t>(FloatDefault) == 0x3FF0000A7C5AC472);
constexpr double IntegerDefault = 2.0;
constexpr double HalfPi = 1.5707963267948966;
/// What a ramp is divided by in a vector without elements.
constexpr int RampLength = 256;

/// Fills `count` elements. `next` gives the components one after the other, told whether it is an imaginary
/// part.
template <class Next>
void fill(zyType type, void* data, int count, Next next) {
    zyWithComponent(type, [&]<class T>(T) {
        auto* at = static_cast<char*>(data);
        for (int i = 0; i < count; ++i) {
            zyStore<T>(at, next(false));
            at += sizeof(T);
            if ((type & zyTypeComplex) != 0) {
                zyStore<T>(at, next(true));
                at += sizeof(T);
            }
        }
    });
}

std::uint32_t congruential(std::uint32_t x) { return x * 69069u + 1013904243u; }

/// A generator of two parts: a subtract-with-borrow sequence, which goes on with the state that it is given,
/// and a linear congruential one that starts over with each generator.
class Random {
  public:
    explicit Random(std::uint32_t seed) : m_y{congruential(congruential(seed)), congruential(seed), seed} {}

    std::int32_t next() {
        std::uint32_t y = m_y[1] - m_y[0] - m_borrow;
        m_borrow = static_cast<std::int32_t>(y) < 0 ? 1 : 0;
        y -= 18 * m_borrow;
        m_y[0] = m_y[1];
        m_y[1] = m_y[2];
        m_y[2] = y;
        m_z = congruential(m_z);
        return static_cast<std::int32_t>(y + m_z);
    }
    /// The seed of a generator that goes on from here.
    std::uint32_t state() const { return m_y[2]; }

  private:
    std::uint32_t m_y[3];
    std::uint32_t m_borrow = 1;
    std::uint32_t m_z = 1131199209u;
};

/// Numbers between two limits, which are cut to the range of the vector's type. Goes on from the seed that
/// the generator before left, and leaves its own.
class RandomBetween {
  public:
    RandomBetween(const zyVector& vector, double lo, double hi)
        : m_bottom(std::max(lo, vector.minValue())), m_top(std::min(hi, vector.maxValue())) {}
    RandomBetween(const RandomBetween&) = delete;
    RandomBetween& operator=(const RandomBetween&) = delete;
    ~RandomBetween() { zyVector::m_seed = m_random.state(); }

    double next() { return m_random.next() * m_scale + m_mid; }

  private:
    double m_bottom;
    double m_top;
    double m_scale = (m_top - m_bottom) * 2.3283064365387e-10;  // by 2 to the power 32
    double m_mid = (m_bottom + m_top) * 0.5;
    Random m_random{zyVector::m_seed};
};

}  // namespace

double zyVector::defaultValue() const { return isFloat() ? FloatDefault : IntegerDefault; }

void zyVector::setConst() { setConst(defaultValue(), defaultValue()); }

void zyVector::setConst(double re, double im) {
    if (m_data != nullptr) {
        setDataConst(m_data, m_len, re, im);
    }
}

void zyVector::setConst_64s(long long re, long long im) {
    if (m_data != nullptr) {
        setDataConst_64s(m_data, m_len, re, im);
    }
}

void zyVector::setDataConst(void* data, int count, double re, double im) const {
    fill(m_type, data, count, [=](bool imaginary) { return imaginary ? im : re; });
}

void zyVector::setDataConst_64s(void* data, int count, long long re, long long im) const {
    fill(m_type, data, count, [=](bool imaginary) { return imaginary ? im : re; });
}

void zyVector::setMinValue() {
    if ((m_type & ~zyTypeComplex) == zy64s) {
        setConst_64s(INT64_MIN, INT64_MIN);
    } else {
        setConst(minValue(), minValue());
    }
}

void zyVector::setMaxValue() {
    if ((m_type & ~zyTypeComplex) == zy64s) {
        setConst_64s(INT64_MAX, INT64_MAX);
    } else {
        setConst(maxValue(), maxValue());
    }
}

void zyVector::setJaehne() { setJaehne(isFloat() ? 1.0 : (maxValue() - minValue()) * 0.5); }

void zyVector::setJaehne(double magn) {
    if (m_data != nullptr) {
        setVectorJaehne(m_data, m_len, magn);
    }
}

void zyVector::setVectorJaehne(void* data, int count, double magn) const {
    if (magn < 0) {
        return;
    }
    const double height = std::min(magn, (maxValue() - minValue()) * 0.5);
    const bool isUnsigned = (m_type & (zyTypeSigned | zyTypeFloat)) == 0;
    const double offset = isUnsigned ? (minValue() + maxValue()) * 0.5 : 0.0;
    const double rise = HalfPi / count;
    int i = 0;
    double value = 0.0;
    fill(m_type, data, count, [&](bool imaginary) {
        if (!imaginary) {
            value = height * std::sin(rise * i * i) + offset;
            ++i;
        }
        return value;
    });
}

void zyVector::setSequence(double a, double b) {
    if (m_len == 1) {
        setConst(a, 0);
    } else {
        setSequence(a, b, (b - a) / (m_len - 1), true);
    }
}

void zyVector::setSequence(double a, double b, double step, bool wrap) {
    if (m_data != nullptr) {
        setDataSequence(m_data, m_len, a, b, step, wrap);
    }
}

void zyVector::setDataSequence(void* data, int count, double a, double b, double step, bool wrap) const {
    const double start = std::max(a, minValue());
    const double limit = std::min(b, maxValue());
    double next = start;
    fill(m_type, data, count, [&](bool imaginary) {
        if (imaginary) {
            return 0.0;
        }
        const double value = next;
        next += step;
        if (next > limit) {
            next = wrap ? start : limit;
        }
        return value;
    });
}

void zyVector::setRandom() {
    if (isFloat()) {
        setRandom(-1.0, 1.0);
    } else {
        setRandom(minValue(), maxValue());
    }
}

void zyVector::setRandom(double lo, double hi) {
    if (m_data != nullptr) {
        setDataRandom(m_data, m_len, lo, hi);
    }
}

void zyVector::setRandom(double lo, double hi, unsigned int seed) {
    m_seed = seed;
    setRandom(lo, hi);
}

void zyVector::setDataRandom(void* data, int count, double lo, double hi) const {
    RandomBetween random(*this, lo, hi);
    fill(m_type, data, count, [&](bool) { return random.next(); });
}

void zyVector::setVector(SetMode mode, double a, double b) {
    switch (mode) {
        case SetDefault:
            return setConst();
        case SetZero:
            return setConst(0, 0);
        case SetOne:
            return setConst(1, 0);
        case SetMax:
            return setMaxValue();
        case SetMin:
            return setMinValue();
        case SetValue:
            return setConst(a, b);
        case SetRandomRange:
            return a == b ? setRandom() : setRandom(a, b);
        case SetRamp: {
            const double step = (b - a) / (m_len > 0 ? m_len : RampLength);
            return setSequence(a, b, isFloat() ? step : std::max(step, 1.0), true);
        }
    }
}

void zyVector::setIndex(int index, SetMode mode, double a, double b) {
    void* element = getPointerAt(index);
    if (element == nullptr) {
        return;
    }
    switch (mode) {
        case SetDefault:
            return setDataConst(element, 1, defaultValue(), defaultValue());
        case SetZero:
            return setDataConst(element, 1, 0, 0);
        case SetOne:
            return setDataConst(element, 1, 1, 0);
        case SetMax:
            return setDataConst(element, 1, maxValue(), 0);
        case SetMin:
            return setDataConst(element, 1, minValue(), 0);
        case SetValue:
            return setDataConst(element, 1, a, b);
        case SetRandomRange: {
            const double lo = a == b ? minValue() : a;
            const double hi = a == b ? maxValue() : b;
            return setDataConst(element, 1, RandomBetween(*this, lo, hi).next(), 0);
        }
        case SetRamp:
            return setDataConst(element, 1, a, 0);
    }
}
