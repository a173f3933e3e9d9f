#pragma once

/// Time and functions under test that go by a script, so that figures are exact and nothing waits.

#include <functional>
#include <string>
#include <vector>

#include "mrtool.h"
#include "session/mrbinding.h"

/// A clock that only the test moves, in the place of the clock pair; the frequency counts as measured.
class ScriptedClock {
  public:
    static constexpr int FreqMHz = 1000;

    ScriptedClock() {
        s_now = 1'000'000;
        s_readCost = 0;
        s_reads = 0;
        zyl_StartCpuClocks = [] {
            ++s_reads;
            return s_now;
        };
        zyl_StopCpuClocks = [] {
            ++s_reads;
            return s_now += s_readCost;
        };
        mrCpuTicker::m_freqMHz = FreqMHz;
    }
    ScriptedClock(const ScriptedClock&) = delete;
    ScriptedClock& operator=(const ScriptedClock&) = delete;
    ~ScriptedClock() {
        zyl_StartCpuClocks = m_start;
        zyl_StopCpuClocks = m_stop;
        mrCpuTicker::m_freqMHz = m_freqMHz;
    }

    static void advance(long long clocks) { s_now += static_cast<Zyl64u>(clocks); }
    /// What the two reads of a stretch cost by themselves.
    static void setReadCost(Zyl64u clocks) { s_readCost = clocks; }
    /// Reads of the clock so far.
    static int reads() { return s_reads; }

  private:
    static inline Zyl64u s_now = 0;
    static inline Zyl64u s_readCost = 0;
    static inline int s_reads = 0;
    ZylClocksFunc m_start = zyl_StartCpuClocks;
    ZylClocksFunc m_stop = zyl_StopCpuClocks;
    int m_freqMHz = mrCpuTicker::m_freqMHz;
};

/// Timing entries that play scripts. Of each script every call takes the next value, and the last one stays.
class ScriptedEntries {
  public:
    ScriptedEntries() { s_entries = this; }
    ScriptedEntries(const ScriptedEntries&) = delete;
    ScriptedEntries& operator=(const ScriptedEntries&) = delete;
    ~ScriptedEntries() { s_entries = nullptr; }

    std::vector<long long> costs{100};      ///< clocks of one call
    std::vector<int> statuses{0};           ///< what the call entry answers
    std::vector<mrResult> results{MR_OK};   ///< what the loop and statistic entries answer
    bool sums = true;                       ///< the loop entry reports all its calls, or else the best one
    int statCalls = 5000;                   ///< calls that the statistic entry says it made
    long long initCost = 0;                 ///< clocks of the init entry
    std::function<void(int calls)> onCall;  ///< runs inside every entry but init
    /// What was called, with the arguments: "L4 " loop, "S8/1000/1 " statistic, "C " call, "I " init.
    std::string log;

    static mrResult loop(int numLoops, long long* clocks) {
        s_entries->note("L" + std::to_string(numLoops), numLoops);
        *clocks = next(s_entries->costs) * (s_entries->sums ? numLoops : 1);
        return next(s_entries->results);
    }
    static mrResult stat(int* numCalls, long long* clocks, int block) {
        s_entries->note(
            "S" + std::to_string(*numCalls) + "/" + std::to_string(*clocks) + "/" + std::to_string(block),
            *numCalls);
        *numCalls = s_entries->statCalls;
        *clocks = next(s_entries->costs);
        return next(s_entries->results);
    }
    static int call() {
        s_entries->note("C", 1);
        ScriptedClock::advance(next(s_entries->costs));
        return next(s_entries->statuses);
    }
    static int init() {
        s_entries->log += "I ";
        ScriptedClock::advance(s_entries->initCost);
        return 0;
    }

  private:
    void note(const std::string& entry, int calls) {
        log += entry + " ";
        if (onCall) {
            onCall(calls);
        }
    }

    template <class T>
    static T next(std::vector<T>& script) {
        const T value = script.front();
        if (script.size() > 1) {
            script.erase(script.begin());
        }
        return value;
    }

    static inline ScriptedEntries* s_entries = nullptr;
};

/// Both together: most tests of a measurement begin so.
struct ScriptedTiming : ScriptedClock, ScriptedEntries {};
