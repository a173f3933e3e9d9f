#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "text/mrobject.h"
#include "zyfunc.h"
#include "zyvectorviews.h"

/// How setVector and setIndex fill.
enum SetMode : int {
    SetDefault = 0,
    SetZero = 1,
    SetOne = 2,
    SetMax = 3,
    SetMin = 4,
    SetValue = 5,
    SetRandomRange = 6,  ///< between the two values; if they are equal, as setRandom() without limits
    SetRamp = 7,         ///< from the first value to the second, again and again
};

/// A block of test data of one type, an argument of a function under test: it allocates itself as a block of
/// the memory list, fills itself by simple patterns, keeps a copy to restore the data between runs, and
/// prints its elements. Without data the fill operations do nothing. Values are stored by truncation:
/// integers keep their low bits. Vectors stand at file scope in the suites, so building and destroying one
/// without data touches no other global.
class zyVector : public mrObject {
  public:
    zyVector() { init(0); }
    explicit zyVector(zyType type) { init(type); }
    zyVector(zyFunc func, int argument) { init(func, argument); }
    zyVector(zyFunc func, zyArg argument) { init(func, argument); }
    zyVector(const zyVector&) = delete;
    zyVector& operator=(const zyVector&) = delete;

    /// Drops the data and takes a type, or the type and the channel layout of an argument of `func`.
    void init(zyType type);
    /// By the index of a type in the name, for suites that go by it.
    void init(zyFunc func, int argument);
    void init(zyFunc func, zyArg argument);

    /// Bytes of one element of the first type in a function's name, for suites that allocate themselves.
    static int item(zyFunc func) { return zyItemSize(func.type(1)); }

    int objectSize() const override { return size(); }
    mrString objectInfo() const override;
    bool reserveCopy() override;
    bool setReservedCopy() override;
    void deleteReservedCopy() override;
    ~zyVector() override;

    /// A zeroed block that replaces the data; a negative `align` asks for the session's misalignment, a null
    /// `owner` stands for this vector. False, with a message, for fewer bytes than one or more than an int
    /// holds, and without memory.
    bool allocateVector(long long bytes, int align, mrObject* owner);
    /// New data of `len` elements with the values of setConst(), or of `mode`.
    bool createVector(long long len, int align, mrObject* owner = nullptr);
    bool createVector(long long len, SetMode mode, double a, double b) {
        return createVectorExt(len, -1, mode, a, b);
    }
    bool createVectorExt(long long len, int align, SetMode mode, double a, double b);
    virtual void deleteVector();

    /// 2, and 1.00001 for floating types, in both parts.
    virtual void setConst();
    /// Real types take the first value of the pair alone.
    virtual void setConst(double re, double im);
    /// Exact for the 64-bit integers too.
    virtual void setConst_64s(long long re, long long im);
    virtual void setMinValue();
    virtual void setMaxValue();
    /// A sine of rising frequency: from 0 at the first element it reaches a quarter of the sampling rate at
    /// the last. At most as high as the type allows; around the middle of the range for unsigned types, else
    /// around 0.
    /// For suites of signal and image functions.
    virtual void setJaehne();
    virtual void setJaehne(double magn);
    /// A ramp from `a` to `b` over the whole vector, or by `step`; past `b` it starts over (`wrap`) or stays
    /// at `b`. The imaginary part is 0.
    virtual void setSequence(double a, double b);
    virtual void setSequence(double a, double b, double step, bool wrap);
    /// Random numbers that are the same on every machine for the same m_seed, between -1 and 1 for floating
    /// types, else over the whole range. Both limits are cut to the range of the type.
    virtual void setRandom();
    virtual void setRandom(double lo, double hi);
    /// For suites whose data must not depend on what was filled before.
    virtual void setRandom(double lo, double hi, unsigned int seed);

    /// The elements in columns, without line ends.
    virtual mrString getString() const { return getDataString(m_data, m_len); }
    /// Bytes of all elements.
    virtual int size() const { return itemSize() * m_len; }
    /// For suites that compare with the copy.
    virtual void* getReservedData() { return m_reserved.get(); }
    virtual void setVector(SetMode mode, double a, double b);
    /// One element alone: the extremes and the ramp's first value in the real part only, and one random
    /// number there too, over the whole range of the type if the two values are equal.
    virtual void setIndex(int index, SetMode mode, double a, double b);
    // Elements, for suites that look at what a function has written.
    virtual double getIndex(int index) const { return getElement(getPointerAt(index)); }
    virtual void getIndex(int index, double& re, double& im) const {
        getElement(getPointerAt(index), re, im);
    }
    /// For suites that know no type here.
    virtual const void* getDataConst() const { return m_data; }
    /// The elements as `T`; no virtual call, so that it may stand in a timed body.
    template <class T>
    T* data() const {
        return static_cast<T*>(m_data);
    }

    // The patterns on any part of a block of this vector's type.
    void setDataConst(void* data, int count, double re, double im) const;
    void setDataConst_64s(void* data, int count, long long re, long long im) const;
    void setVectorJaehne(void* data, int count, double magn) const;
    void setDataSequence(void* data, int count, double a, double b, double step, bool wrap) const;
    void setDataRandom(void* data, int count, double lo, double hi) const;

    static double getMinValue(zyType type) { return zyInfoOf(type).m_min; }
    static double getMaxValue(zyType type) { return zyInfoOf(type).m_max; }
    /// For suites that stay clear of 0.
    static double getMinAbsValue(zyType type) { return zyInfoOf(type).m_minAbs; }
    double minValue() const { return getMinValue(m_type & ~zyTypeComplex); }
    double maxValue() const { return getMaxValue(m_type & ~zyTypeComplex); }

    /// Null without data. The index is not checked.
    void* getPointerAt(int index) const;
    /// One element as numbers; the imaginary part of a real type is 0.
    void getElement(const void* element, double& re, double& im) const;
    double getElement(const void* element) const;

    /// Empty for a null pointer and for a count below 1.
    mrString getDataString(const void* data, int count) const { return getDataString(m_type, data, count); }
    static mrString getDataString(zyType type, const void* data, int count);
    /// Hexadecimal bytes.
    static mrString getByteString(const void* data, int count);

    static std::uint32_t m_seed;  ///< the state that the random generator leaves for its next call

    void* m_data = nullptr;  ///< owned, a block of the memory list
    std::unique_ptr<void, decltype(&std::free)> m_reserved{nullptr, &std::free};
    int m_len = 0;
    zyFunc m_func;  ///< a name that tells the type and the channel layout
    zyType m_type = 0;
    zyVectorViews m_views;

  private:
    int itemSize() const { return zyItemSize(m_type); }
    bool isFloat() const { return (m_type & zyTypeFloat) != 0; }
    double defaultValue() const;
};
