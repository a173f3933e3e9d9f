#pragma once

#include "measure/mrtool.h"

/// What the Auto and Iterative methods tell of their course, most of it at MSG_INFO. The figures told are
/// those that the tool holds at the time.
class mrAutoTexts {
  public:
    explicit mrAutoTexts(const mrTool& tool) : m_tool(tool) {}

    void start(long long minClocks) const;
    void priorMeasurement(int loops) const;
    void priorResult(mrResult result) const;
    void iteration(int next, int stop) const;
    void iterationResult(mrResult result) const;
    void simpleMeasurements() const;
    void simpleMeasurement(double clocks) const;
    void simpleResult(mrResult result) const;
    void finished() const;
    void gaveUp() const;

    /// The retry with half the loops, and its outcome.
    void avoidingBadStatus() const;
    void badStatusAvoided() const;
    void badStatusStays(bool repeats) const;

  private:
    const char* countLabel() const { return m_tool.m_callMode ? "numCalls" : "numLoops"; }

    const mrTool& m_tool;
};
