#include "parameter/mrcacheiterator.h"

#include <algorithm>
#include <climits>

#include "machine/mrcachesize.h"
#include "parameter/mrmemory.h"
#include "stream/mrostream.h"

namespace {

constexpr int MaxTries = 12;

// The low limit of "inCache" as a fraction of the cache; it may fall once.
constexpr double FirstLowFactor = 0.1;
constexpr double LeastLowFactor = 0.01;
constexpr double FactorTolerance = 0.0001;
constexpr double InCacheFactor = 0.9;
constexpr double OutofCacheFactor = 1.05;

int scaled(int size, double factor) { return static_cast<int>(std::min(size * factor, double{INT_MAX})); }

/// `value` times 2 to the power `count`, which may be negative; the sign bit may come out set.
int shifted(int value, int count) {
    constexpr int bits = 32;
    if (count > 0) {
        return count < bits ? static_cast<int>(static_cast<unsigned>(value) << count) : 0;
    }
    return value >> std::min(-count, bits - 1);
}

/// Calls `step(+1)` for each doubling and `step(-1)` for each halving that takes `actual` just below `limit`.
/// Neither may be below 1, or the count would not end.
template <class Step>
void countSteps(int actual, int limit, Step step) {
    long long bytes = actual;
    while (bytes <= limit) {
        bytes *= 2;
        step(1);
    }
    do {
        bytes /= 2;
        step(-1);
    } while (bytes >= limit);
}

}  // namespace

mrCacheIterator::mrCacheIterator(mrParameter& cacheParm, mrObject* object, mrCacheCheck check)
    : m_cacheParm(&cacheParm), m_object(object), m_lowFactor(FirstLowFactor), m_check(check) {
    setName("cacheIterator", cacheParm.prompt());
    add(InCache);
    add(OutofCache);
}

bool mrCacheIterator::nextValue() {
    m_repeat = 0;
    m_info = "";
    m_lowFactor = FirstLowFactor;
    return mrIterator<int>::nextValue() && m_cacheParm->firstValue();
}

mrString mrCacheIterator::getComment() const {
    switch (value()) {
        case InCache:
            return "inCache";
        case OutofCache:
            return "outofCache";
        default:
            return "";
    }
}

int mrCacheIterator::cacheSize() { return mrLibraryCacheSizeB(); }

int mrCacheIterator::lowSize() const {
    return scaled(cacheSize(), value() == OutofCache ? OutofCacheFactor : m_lowFactor);
}

int mrCacheIterator::highSize() const {
    return value() == OutofCache ? INT_MAX : scaled(cacheSize(), InCacheFactor);
}

int mrCacheIterator::getObjectSize() const { return m_object != nullptr ? m_object->objectSize() : 0; }

int mrCacheIterator::getTotalSize() {
    long long total = 0;
    mrForEachBlock([&](void*, int size, mrObject*) { total += size; });
    return static_cast<int>(std::min(total, static_cast<long long>(INT_MAX)));
}

bool mrCacheIterator::validateSize() {
    m_objectSize = getObjectSize();
    m_totalSize = getTotalSize();
    if (m_objectSize == 0) {
        m_objectSize = m_totalSize;
    }
    const bool tooSmall = lowSize() > m_objectSize;
    const bool tooLarge = highSize() < m_totalSize;
    if (!tooSmall && !tooLarge) {
        m_repeat = 0;
        m_info = "";
        return true;
    }
    reportMiss(tooSmall);
    if (tooSmall && tooLarge) {
        // No size at all lies in the range of this object.
        lowerLowFactor();
    } else if (tooSmall && m_repeat >= 2 && m_wasTooLarge && lowerLowFactor()) {
        // The size swings across the range, which is wider now.
        return validateSize();
    }
    m_wasTooLarge = tooLarge;
    return false;
}

void mrCacheIterator::reportMiss(bool tooSmall) {
    mrString line = "      ";
    line << getComment() << " try: cacheParm=" << m_cacheParm->valueString();
    if (tooSmall) {
        line << (m_object != nullptr ? " objectSize=" : " totalSize=") << m_objectSize << " < " << lowSize();
    } else {
        line << " totalSize=" << m_totalSize << " > " << highSize();
    }
    line << "\n";
    m_info << line;
    g_ostrm << MSG_PERF << line << MSG_END;
}

/// False, with no try left, if it has fallen already.
bool mrCacheIterator::lowerLowFactor() {
    if (m_lowFactor - FactorTolerance > LeastLowFactor) {
        m_lowFactor = LeastLowFactor;
        return true;
    }
    m_repeat = MaxTries;
    return false;
}

bool mrCacheIterator::repeatValue() {
    ++m_repeat;
    return m_repeat < MaxTries && setNewValue();
}

bool mrCacheIterator::setNewValue() {
    const bool tooLarge = m_totalSize > highSize();
    const int actual = tooLarge ? m_totalSize : m_objectSize;
    const int limit = tooLarge ? highSize() : lowSize();
    const bool approach = m_repeat > 1;
    return m_check != nullptr ? m_check(m_cacheParm, actual, limit, approach)
                              : setNewValueToParm(actual, limit, approach);
}

void mrCacheIterator::outputInfo() const {
    if (g_ostrm.outLevel() < MSG_PERF) {
        g_ostrm << MSG_ERR << m_info << MSG_END;
    }
}

mrCacheIteratorInt::mrCacheIteratorInt(mrIterator<int>& size, mrObject* object, mrCacheCheck check)
    : mrCacheIterator(size, object, check), m_size(&size) {}

bool mrCacheIteratorInt::updateValue(int& value, int actual, int limit, bool approach) {
    if (approach) {
        value = shifted(value, actual < limit ? 1 : -1);
        return value > 0;
    }
    if (actual < 1 || limit < 1) {
        return false;
    }
    int count = 0;
    countSteps(actual, limit, [&](int step) { count += step; });
    value = shifted(value, count);
    return value > 0;
}

bool mrCacheIteratorInt::setNewValueToParm(int actual, int limit, bool approach) {
    int value = m_size->value();
    if (!updateValue(value, actual, limit, approach)) {
        return false;
    }
    m_size->setValue(value);
    return true;
}

mrCacheIteratorSize::mrCacheIteratorSize(mrIterator<ZyliSize>& size, mrObject* object, mrCacheCheck check)
    : mrCacheIterator(size, object, check), m_size(&size) {}

bool mrCacheIteratorSize::updateValue(ZyliSize& value, int actual, int limit, bool approach) {
    int widthCount = 0;
    int heightCount = 0;
    if (approach) {
        const bool grows = actual < limit;
        const bool wide = value.width > value.height;
        (wide == grows ? heightCount : widthCount) = grows ? 1 : -1;
    } else if (actual < 1 || limit < 1) {
        return false;
    } else {
        countSteps(actual, limit, [&](int step) {
            const bool wide = widthCount > heightCount;
            (wide == (step > 0) ? heightCount : widthCount) += step;
        });
    }
    value.width = shifted(value.width, widthCount);
    value.height = shifted(value.height, heightCount);
    return value.width >= 1 && value.height >= 1;
}

bool mrCacheIteratorSize::setNewValueToParm(int actual, int limit, bool approach) {
    ZyliSize value = m_size->value();
    if (!updateValue(value, actual, limit, approach)) {
        return false;
    }
    m_size->setValue(value);
    return true;
}
