#pragma once

#include "job/mrtest.h"
#include "zyfunc.h"

class zyVector;

/// mrTest bound to a function of the library under test: it knows the function by its name model and turns
/// the library's statuses into results. All test classes of the suites derive from it.
class zyTest : public mrTest {
  public:
    zyTest(FuncCall tcall, FuncCall tinit, FuncLoop loop, FuncStat stat, mrString name, mrString file,
           mrString info);

    /// Every test starts from the same random seed, so its data do not depend on what ran before.
    int run() override;
    /// The order of the function name model.
    int compareFunc(const mrTest* other) const override;
    /// Three columns: prefix and base name, types, descriptor.
    void funcToCstrm() override;
    bool isFloatFunction() override;
    int printAllMemoryBlocks(mrString title) override;
    mrString regInfo() override;

    /// The only way by which a library status becomes a result: 0 is MR_OK, above 0 MR_LIB_NOTE and below
    /// MR_LIB_FAIL, both with a message that names the function unless `name` is empty. Raises the running
    /// test's result.
    static mrResult checkStatus(int status, mrString name);
    /// Straight after the calls of an entry: no text may be copied before the direction flag is right again.
    static mrResult checkStatus(int status, const char* name);
    mrResult checkStatus(int status) const { return checkStatus(status, func); }

    using mrTest::regCacheParm;
    /// The same for a two-sided size.
    void regCacheParm(mrIterator<ZyliSize>& size, mrObject* object, mrCacheCheck check);

    zyFunc func;
    static bool m_checkErrorsOnly;  ///< positive statuses pass in silence

  protected:
    virtual void printFirstDebugLine(mrString title);
    virtual void printLastDebugLine(mrString title);
    virtual void printFirstBlockLine(int count, mrObject* object, int size);
    virtual void printLastBlockLine(int count, mrObject* object);
    virtual void printVectorBlock(zyVector* vector);
    virtual void printByteBlock(void* block, int size);
};
