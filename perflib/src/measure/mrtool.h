#pragma once

#include "measure/mrtoolstate.h"

/// The measuring instrument: holds the timing settings, drives the entries of a test by one of four methods
/// and keeps the result of the last measurement. The session sets up g_tool; each test measures with a copy,
/// so what changes during a test stays with it.
class mrTool : public mrToolSettings, public mrToolFigures {
  public:
    mrTool() = default;
    mrTool(const mrTool&) = default;
    mrTool& operator=(const mrTool&) = default;
    virtual ~mrTool() = default;

    /// Forgets the last measurement; the settings stay.
    void reset();
    /// Measures by the method set; the result is also m_result, the figures are in m_funcClocks, m_accuracy,
    /// m_comment.
    mrResult timing(FuncOld old);
    mrResult timing(FuncLoop loop, FuncStat stat, FuncCall call, FuncCall init);

    /// `blocks` blocks of `calls` calls through the statistic entry of the last timing(); their raw ticks go
    /// to mrBlockTicks::wanted.
    mrResult takeBlocks(int calls, int blocks);

    void setMethodAuto() { m_method = MR_METHOD_AUTO; }
    void setMethodLoop(int loops);
    void setMethodStat(int calls, long long clocks);
    void setMethodBest(int start, int stop, long long minClocks);
    /// Each tells whether its method is set, and fills its arguments only then.
    bool getMethodAuto() const { return m_method == MR_METHOD_AUTO; }
    bool getMethodLoop(int& loops) const;
    bool getMethodStat(int& calls, long long& clocks) const;
    bool getMethodBest(int& start, int& stop, long long& minClocks) const;
    /// Start loops, stop loops and least clocks of the Auto method.
    void getAutoParameters(int& start, int& stop, long long& minClocks) const;
    /// Shifts the Auto method's start and stop loops left by -factor or right by factor; 0 takes the shift
    /// away.
    /// For suites whose calls are much longer or shorter than a library function's.
    void setLoopFactor(int factor);

    /// For tests that work out the clock figure themselves.
    void setFuncTicks(double clocks) { m_funcClocks = clocks; }
    void updateResult(mrResult result);
    /// An accuracy in percent: "0.05%", "5.0%".
    static mrString getAccuracyStr(double accuracy);

    // Of all tools.

    static int numIntLoops;        ///< calls a statistic entry times as one block
    static int tResolution;        ///< timer resolution in clocks
    static int m_numMilliseconds;  ///< least length of a statistic measurement, in tenths of a millisecond
    static int m_minNumLoops;      ///< least calls of a statistic measurement
    static int m_numExtLoops;      ///< kept for the -J key; no method reads it
    static int m_extLoopIdx;       ///< not read
    static int m_priority;         ///< process priority during a measurement, see mrSetPriority
    static mrResult (*m_pCheckStatus)(int status);  ///< turns the status of a call entry into a result
    static mrString path;
    static mrString path_tmp;

  private:
    // measure/mrautomethod.cpp
    struct LoopRange;
    enum class Phase;
    void autoLoopTiming();
    void bestTiming(int startLoops, int maxLoops, long long minClocks);
    Phase priorMeasurement(LoopRange& range, long long minClocks);
    Phase iterateMeasurement(LoopRange& range);
    Phase growCount(LoopRange& range) const;
    Phase rescueZero(LoopRange& range);
    Phase belowStop(const LoopRange& range) const;
    Phase failTiming();
    void finishTiming();
    void avoidBadStatus();
    mrResult startIterations(int loops, long long minClocks);
    mrResult continueIterations(int startLoops, int maxLoops);
    mrResult doubleLoops(int startLoops, int maxLoops);
    mrResult measureStatistic();
    mrResult repeatTiming(int numLoops, int numRepeat);
    bool watchedBadStatus() const;

    // measure/mrgivenmethods.cpp
    void statisticTiming();
    void customLoopTiming();
    void runTimFuncStat(long long clocks, int* numCalls, double* funcClocks);

    // measure/mrmeasure.cpp
    /// One measurement of `n` loops or calls; m_numLoops tells how many there were. `clocks` goes both ways:
    /// in, the least clocks, which a statistic entry alone looks at; out, what the entry gave, undivided, as
    /// in m_funcClocks. A rough measurement (`prior`) never takes the statistic entry.
    void runTimFunc(int n, double* clocks, bool prior);
    mrResult measureOnce(int& n, double least, bool prior);
    mrResult callEntry(int& n, double least, bool prior);
    mrResult timCall_Loop(int n, long long* clocks, bool reset);
    mrResult timCall_Stat(int* numCalls, long long* clocks, bool reset);
    mrResult checkedStatus(int status) const;
    static void ctrlStart();
    static void ctrlStop();
    template <class Entry>
    static mrResult watchedCall(Entry entry);
};

/// Sends `text` at MSG_INFO and empties it.
void writeInfo(mrString& text);
/// At console levels below MSG_INFO: flushes what an error may have left unprinted.
void writeError();
/// An internal error with its fixed line number, which listings refer to.
mrResult mrInternalFail(int line);

/// A clock count: what does not fit an int is shown by its leading digits, zeros after them.
mrString clockStr(long long clocks);

extern mrTool g_tool;
