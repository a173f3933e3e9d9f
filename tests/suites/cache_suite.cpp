// A suite whose sizes can move into the cache and out of it; those of the program have none. Linked to the
// framework alone it is a whole program.

#include "zy.h"

namespace {

constexpr const char* SourceFile = "tests/suites/cache_suite";
constexpr int FirstLength = 64;

zyVector src;
mrStepIterator<int> length;
mrIterator<ZyliSize> area;
int len;
int idx;

ZY_ENTRY int tcall_zylsFindC_8u() { return zylsFindC_8u(src.data<Zyl8u>(), len, 1, &idx); }
ZY_ENTRY int tcall_zylsFindRevC_8u() { return zylsFindRevC_8u(src.data<Zyl8u>(), len, 1, &idx); }

/// What both kinds of size share: a search through all of the data.
class CacheTest : public zyTest {
  public:
    using zyTest::zyTest;

    void flushData() override { src.deleteVector(); }
    double getDivisor() override { return len; }
    mrString getUnit() override { return "e"; }

  protected:
    static bool create(int bytes) {
        len = bytes;
        return src.createVector(len, -1);
    }
};

class TimsCacheLength : public CacheTest {
  public:
    using CacheTest::CacheTest;

    bool canStart() override {
        length.reset();
        length.setName("length");
        length.setSteps(FirstLength, FirstLength, OprtnMul, 2);
        src.init(func, zyArgSrc);
        regCacheParm(length, &src, nullptr);
        return true;
    }
    bool initData() override { return create(length.value()); }
};

class TimsCacheArea : public CacheTest {
  public:
    using CacheTest::CacheTest;

    bool canStart() override {
        area.reset();
        area.add({8, 8});
        src.init(func, zyArgSrc);
        regCacheParm(area, &src, nullptr);
        return true;
    }
    bool initData() override { return create(area.value().width * area.value().height); }
};

ZY_REG(TimsCacheLength, zylsFindC_8u)
ZY_REG(TimsCacheArea, zylsFindRevC_8u)

}  // namespace
