#pragma once

#include <memory>

#include "measure/mrcontrolstatus.h"
#include "measure/mrtool.h"
#include "parameter/mrcacheiterator.h"
#include "parameter/mrstepiterator.h"
#include "stream/mrostream.h"
#include "text/mrstates.h"

class mrConditions;

/// What a test says of itself, cut from one text "suite/group/mark".
struct mrTestInfo {
    explicit mrTestInfo(mrString text);

    mrString m_suite;
    mrString m_group;
    mrString m_regMark;
};

/// One measurement job: a function under test, its timing entries, its parameters and its own timing tool.
/// run() walks all combinations of parameter values, measures each, watches the floating-point control status
/// and records one line per combination. Suites override the virtual operations; a plain mrTest can be run as
/// it is.
class mrTest : public mrControlStatus {
  public:
    mrTest(FuncLoop loop, FuncStat stat, mrString name, mrString file, mrString info);
    mrTest(FuncCall call, FuncCall init, FuncLoop loop, FuncStat stat, mrString name, mrString file,
           mrString info);
    /// For suites with a timing loop of their own.
    mrTest(FuncOld old, mrString name, mrString file, mrString info);
    mrTest(const mrTest&) = delete;
    mrTest& operator=(const mrTest&) = delete;
    virtual ~mrTest() = default;

    // What a suite overrides. The bases of canContinue and runTiming belong to the walk.

    /// Appends the parameters, the last one turns fastest, and prepares the data's types; false if the test
    /// can't run.
    virtual bool canStart() { return true; }
    virtual void flushStart() {}
    /// Steps to the next combination; false at the end. The base is the odometer over the parameters.
    virtual bool canContinue();
    /// Builds the data of a combination; false drops the combination.
    virtual bool initData() { return true; }
    virtual void flushData() {}
    virtual mrResult runTiming();
    /// Floating-point operations, and elements, of one call, and the name of the element.
    virtual double getFlops() { return 0.0; }
    virtual double getDivisor() { return 1.0; }
    virtual mrString getUnit() { return " "; }
    virtual void constToOstrm() {}
    virtual void endTest() {}

    // The life cycle, mrtest.cpp.

    virtual bool tobeRun(mrConditions& conditions);
    /// Runs the whole test; the result is kept in m_result too. 0 without a trace if the ini file leaves the
    /// test out.
    virtual int run();
    virtual int compareFunc(const mrTest* other) const { return m_name.compare(other->m_name); }
    virtual void beginTest() { initSettings(); }
    virtual void initSettings();
    /// Registers the parameters without running anything.
    void startAndStop();
    /// Gives the test that an earlier process of this run was lost in its end, as after a crash, and returns
    /// its result. The title stands on the console and in the listings, not in the summary any more.
    int endLost(const mrString& lostBy, std::time_t start);
    /// Reads the parameters as run() does, and measures nothing; false if the ini file leaves the test out.
    bool readParameters();

    // The parameters and where their values come from, mrtestparms.cpp.

    /// Chooses the ini section that the parameters are read from; false if the test is to be left out.
    bool setIniSection(mrString name);
    /// Appends a size parameter; with -C the cache iterator around it takes its place. `check` may change the
    /// size itself.
    void regCacheParm(mrIterator<int>& size, mrObject* object, mrCacheCheck check);
    virtual void parmsFromIstrm();

    // The walk over the combinations, mrtestwalk.cpp.

    virtual void loopData();
    /// For suites that compute their own figure; none of the program does.
    void setTimingResult(double clocks, mrString comment);
    /// What the calls of a combination left in the control status, as a result; the test keeps it for its
    /// summary.
    mrResult checkCtrlStatus();

    // Data blocks, mrtestblocks.cpp.

    /// A block on the list of mrmemory.h. A negative `align` asks for the session's misalignment. Consecutive
    /// blocks get different shifts, which carry over from one combination and one test to the next.
    static void* allocate(int size, int align, mrObject* object = nullptr);
    static void deallocate(void* block);
    /// Save, or put back, the contents of all blocks that have an owner; the number of blocks for which that
    /// worked.
    static int reserveAllVectors();
    // This one is for suites that put data back themselves; a measurement calls mrRestoreAllCopies.
    static int resetAllVectors();

    // The combination in the hands of a driver, mrtestturns.cpp.

    /// The result is that of the control status and the library.
    mrResult takeTurns();

    // Figures and their output, mrtestoutput.cpp.

    /// Clocks per element, or millions of floating-point operations per second.
    double performance(bool flops);
    mrString perfString(bool flops) { return formatClocks(performance(flops)); }
    virtual mrString formatClocks(double value);
    virtual mrString getComment();
    mrString testResultString();
    virtual mrString regInfo();
    virtual bool isFloatFunction() { return getFlops() > 0.0; }
    virtual bool isHotLine();
    virtual void parmsToOstrm();
    virtual void funcToCstrm();
    virtual void parmsToCstrm();
    virtual void parmsNameToCstrm();
    virtual void resultToCstrm(mrResult result);
    virtual void putTextParms() { putTextParms(g_ostrm.msgLevel()); }
    virtual void putTextParms(MessageLevel level);
    virtual void putTextResult(mrResult result);
    void putTextError(mrResult result);
    virtual void putTableParms();
    virtual void putTableResult(mrResult result);
    virtual void putTableResult_Deprecated(mrResult result);
    void putTableName();
    void putTableNameLine();
    bool setDeprecatedFlag(bool flag);
    virtual void outputResult(mrResult result);
    virtual void outputConst();
    virtual void outputRegInfo();
    /// Lists all data blocks; returns their number.
    virtual int printAllMemoryBlocks(mrString title);

    bool m_deprecated = false;  ///< a deprecated pass of the result line is in progress
    mrDate m_date;
    mrString m_name;
    mrString m_fileName;
    mrTestInfo m_info;
    mrTool m_tool;
    int m_result = MR_NOT_RUN;
    FuncLoop m_funcLoop = nullptr;
    FuncStat m_funcStat = nullptr;
    FuncCall m_funcCall = nullptr;
    FuncCall m_funcInit = nullptr;
    FuncOld m_funcOld = nullptr;
    bool m_first = true;  ///< no combination has been delivered yet
    bool m_bad87 = false;
    bool m_badSSX = false;
    mrList<mrParameter*> m_parms;  ///< not owned
    std::unique_ptr<mrCacheIterator> m_pCacheIter;
    bool m_cacheRetry = false;  ///< the next canContinue asks the cache iterator first

    static int m_numResultColm;  ///< shape of the performance table
    static int m_numParmsColm;
    static int m_currentResult;  ///< worst result so far in the running test; it only rises
    static int m_hot;            ///< mrHotMode
    static int m_vectorShift;    ///< of the next block
    static int m_vectorNum;      ///< blocks of the current combination
    static bool m_pressing;      ///< run only tests with a section in the ini file
    static bool m_cache;         ///< in-cache and out-of-cache runs

  protected:
    // mrtestwalk.cpp

    /// Raises m_currentResult to at least `result`.
    static void raiseResult(int result);
    /// The result as it counts at this console level: where only fails show, a note counts as success.
    static int countedResult(int result);

  private:
    // mrtest.cpp
    bool runSteps();
    void putTestTitle();
    void measureAll();
    void catchException(const mrException& exception);
    static void restoreLeftState();
    void finish();

    // mrtestwalk.cpp
    void measureCombination(bool& constantsOpen);
    mrResult timeCombination();
    void reportEmptyWalk();
    static void closeTable();
    bool retryCache();

    // mrtestoutput.cpp
    const char* measuredEntry() const;
    void putResultLine(mrResult result);

    bool m_withoutMemory = false;      ///< the walk has dropped a combination for want of memory
    OutputLevel m_outLevel = MSG_ERR;  ///< the console's, which an exception puts back
};
