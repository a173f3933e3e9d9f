#pragma once

/// Time and functions under test that go by a script, so that figures are exact and nothing waits.

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "machine/mrlibrary.h"
#include "measure/mrtool.h"
#include "support/captured_output.h"

/// A clock that only the test moves, in the place of the clock pair; the frequency counts as measured: 1 GHz.
class ScriptedClock {
  public:
    ScriptedClock() {
        s_now = 1'000'000;
        s_readCost = 0;
        zyl_StartCpuClocks = [] { return s_now; };
        zyl_StopCpuClocks = [] { return s_now += s_readCost; };
        mrCpuTicker::m_freqMHz = 1000;
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

  private:
    static inline Zyl64u s_now = 0;
    static inline Zyl64u s_readCost = 0;
    ZylClocksFunc m_start = zyl_StartCpuClocks;
    ZylClocksFunc m_stop = zyl_StopCpuClocks;
    int m_freqMHz = mrCpuTicker::m_freqMHz;
};

/// Timing entries that play scripts. Of each script every call takes the next value, and the last one stays.
class ScriptedTiming : public ScriptedClock {
  public:
    ScriptedTiming() { s_script = this; }
    ~ScriptedTiming() { s_script = nullptr; }

    std::vector<long long> costs{100};      ///< clocks of one call
    std::vector<int> statuses{0};           ///< what the call entry answers
    std::vector<mrResult> results{MR_OK};   ///< what the loop and statistic entries answer
    bool sums = true;                       ///< the loop entry reports all its calls, or else the best one
    int statCalls = 5000;                   ///< calls that the statistic entry says it made
    long long initCost = 0;                 ///< clocks of the init entry
    std::function<void(int calls)> onCall;  ///< runs inside every entry but init
    /// What was called, with the arguments: "L4" loop, "S8/1000/1" statistic, "C" call, "I" init.
    std::vector<std::string> log;

    static mrResult loop(int numLoops, long long* clocks) {
        note("L" + std::to_string(numLoops), numLoops);
        *clocks = next(s_script->costs) * (s_script->sums ? numLoops : 1);
        return next(s_script->results);
    }
    static mrResult stat(int* numCalls, long long* clocks, int block) {
        note("S" + std::to_string(*numCalls) + "/" + std::to_string(*clocks) + "/" + std::to_string(block),
             *numCalls);
        *numCalls = s_script->statCalls;
        *clocks = next(s_script->costs);
        return next(s_script->results);
    }
    static int call() {
        note("C", 1);
        advance(next(s_script->costs));
        return next(s_script->statuses);
    }
    static int init() {
        s_script->log.push_back("I");
        advance(s_script->initCost);
        return 0;
    }

    /// The log since the last asking, equal neighbours counted: "L1 L4*2 ".
    std::string called() {
        std::string text;
        for (std::size_t i = 0, end = 0; i < log.size(); i = end) {
            for (end = i; end < log.size() && log[end] == log[i];) {
                ++end;
            }
            text += log[i] + (end - i > 1 ? "*" + std::to_string(end - i) : "") + " ";
        }
        log.clear();
        return text;
    }
    /// One timing by the entries whose letters are given: what was called, the figure, the comment, and the
    /// result unless it is success.
    std::string course(mrTool& tool, const char* entries) {
        const auto has = [entries](char letter) { return std::strchr(entries, letter) != nullptr; };
        const int result = tool.timing(has('L') ? loop : nullptr, has('S') ? stat : nullptr,
                                       has('C') ? call : nullptr, has('I') ? init : nullptr);
        return called() + "= " + str(mrFormat("%g ", tool.m_funcClocks) + tool.m_comment) +
               (result != MR_OK ? " !" + std::to_string(result) : "");
    }

  private:
    static void note(const std::string& entry, int calls) {
        s_script->log.push_back(entry);
        if (s_script->onCall) {
            s_script->onCall(calls);
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

    static inline ScriptedTiming* s_script = nullptr;
};
