#pragma once

#include <ctime>

#include "text/mrstring.h"

/// Start and stop of a stretch of work.
class mrDate {
  public:
    mrDate() : m_start(std::time(nullptr)), m_stop(m_start) {}

    void start() { m_start = std::time(nullptr); }
    void startedAt(std::time_t moment) { m_start = moment; }
    void stop() { m_stop = std::time(nullptr); }
    std::time_t startTime() const { return m_start; }
    std::time_t stopTime() const { return m_stop; }
    /// Whole seconds from start to stop.
    int seconds() const { return static_cast<int>(std::difftime(m_stop, m_start)); }

    /// A moment as "Sun Nov 22 21:26:00 2026", without line end.
    static mrString text(std::time_t moment);

  private:
    std::time_t m_start;
    std::time_t m_stop;
};

/// The frequency of the tick counter.
class mrCpuTicker {
  public:
    /// MHz, measured at the first call, which takes two to three seconds, and kept. A measured value within
    /// 3% of a known clock rate counts as that rate.
    static int getFreq();
    /// Clocks per tick.
    static int getClockFactor() { return 1; }
    /// The known clock rate nearest to a measured one, or the measured one.
    static int nominalFreq(int measuredMHz);

    static int m_freqMHz;  ///< 0 until measured
};
