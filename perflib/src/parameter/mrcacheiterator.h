#pragma once

#include "parameter/mriterator.h"
#include "text/mrobject.h"

/// A two-sided size.
struct ZyliSize {
    int width;
    int height;
};

/// Sizes have no text form; they can be walked but not typed in.
inline ZyliSize& operator<<(ZyliSize& size, mrString&) { return size; }
inline mrString& operator<<(mrString& text, ZyliSize) { return text; }

/// A test's own way to change its size: parameter, actual bytes, limit, and whether a single step is asked
/// for. False if no size can be had.
using mrCacheCheck = bool (*)(mrParameter* size, int actual, int limit, bool approach);

/// Measures each size twice, with its data inside the processor's largest cache and outside it. It stands in
/// a test's parameter list for the size parameter that it wraps; after each data set-up the bytes really
/// allocated are compared with the cache, and where they miss the range of the state the size is changed and
/// the data are built again. For suites that call regCacheParm; none of the program does, so it
/// answers -C with a message.
class mrCacheIterator : public mrIterator<int> {
  public:
    enum State : int { InCache = 0, OutofCache = 1 };

    /// Neither is owned; `object` may be null.
    mrCacheIterator(mrParameter& cacheParm, mrObject* object, mrCacheCheck check);

    mrParameter* cacheParm() const { return m_cacheParm; }

    // The wrapped size is what the user sees, enters and reads in the tables.
    mrString valueString() const override { return m_cacheParm->valueString(); }
    mrString defaultString() const override { return m_cacheParm->defaultString(); }
    mrString validString() const override { return m_cacheParm->validString(); }
    mrString description() const override { return m_cacheParm->description(); }
    mrString prompt() const override { return m_cacheParm->prompt(); }
    mrOStream& toOStream(mrOStream& stream) const override { return m_cacheParm->toOStream(stream); }
    mrCStream& toCStream(mrCStream& stream) const override { return m_cacheParm->toCStream(stream); }
    mrIStream& fromIStream(mrIStream& stream) override { return m_cacheParm->fromIStream(stream); }
    bool nextValue() override;

    /// "inCache" or "outofCache".
    mrString getComment() const;
    /// True when the data of the combination fit the state.
    bool validateSize();
    /// Changes the size for another try; false after the last one.
    virtual bool repeatValue();
    /// Shows the tries of a state that failed, unless the run has shown them already.
    void outputInfo() const;

  protected:
    /// Changes the wrapped size; false, with the size as it was, if no size is left.
    virtual bool setNewValueToParm(int actual, int limit, bool approach) = 0;

  private:
    static int cacheSize();
    int lowSize() const;
    int highSize() const;
    int getObjectSize() const;
    static int getTotalSize();
    bool setNewValue();
    bool lowerLowFactor();
    void reportMiss(bool tooSmall);

    mrParameter* m_cacheParm;
    mrObject* m_object;
    int m_repeat = 0;  ///< tries of the current state
    int m_objectSize = 0;
    int m_totalSize = 0;
    bool m_wasTooLarge = false;
    double m_lowFactor;  ///< fraction of the cache that is the low limit of "inCache"
    mrString m_info;     ///< report of the tries of the current state
    mrCacheCheck m_check;
};

class mrCacheIteratorInt : public mrCacheIterator {
  public:
    mrCacheIteratorInt(mrIterator<int>& size, mrObject* object, mrCacheCheck check);

    /// Doubles or halves once (`approach`), else jumps by the power of two that brings `actual` to `limit`.
    /// False if the result is not above 0.
    static bool updateValue(int& value, int actual, int limit, bool approach);

  protected:
    bool setNewValueToParm(int actual, int limit, bool approach) override;

  private:
    mrIterator<int>* m_size;
};

class mrCacheIteratorSize : public mrCacheIterator {
  public:
    mrCacheIteratorSize(mrIterator<ZyliSize>& size, mrObject* object, mrCacheCheck check);

    /// The same, shared between the two sides so that the shape stays near square.
    static bool updateValue(ZyliSize& value, int actual, int limit, bool approach);

  protected:
    bool setNewValueToParm(int actual, int limit, bool approach) override;

  private:
    mrIterator<ZyliSize>* m_size;
};
