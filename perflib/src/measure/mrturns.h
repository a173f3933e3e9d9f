#pragma once

#include <vector>

#include "text/mrstring.h"

class mrTool;

/// What a combination of a driven run is: one `point` line of the protocol.
struct mrTurnPoint {
    struct Parameter {
        mrString name;
        mrString value;
    };

    mrString function;
    mrString unit;
    double divisor = 1.0;  ///< clocks of one call by this give the figure of the tables
    std::vector<Parameter> parameters;
};

/// The driven run: a driver, which holds a second instrument on another build of the library, says when this
/// one measures and how much, and gets raw ticks in place of figures. METRIG_TURNS=<in>,<out> in the
/// environment names two open descriptors; without it no run is driven. docs/turns.md tells the protocol.
///
/// What is no command, a driver that has gone and descriptors that are none are told once, and the run ends
/// as by SIGTERM.
class mrTurns {
  public:
    /// Reads the environment and greets the driver with the tick frequency and the name of the library.
    void begin(mrString library);
    bool driven() const { return m_driven; }
    /// Tells the driver of a combination whose data are made, and serves it until it wants another one.
    /// `tool` holds the entries.
    void serve(const mrTurnPoint& point, mrTool& tool);
    /// The driver wants no more of this test.
    bool leavesTest() const { return m_leavesTest; }
    /// A test has ended; `word` is that of the summary.
    void endTest(mrString function, mrString word);
    void end();

  private:
    bool readLine(mrString& line);
    void send(mrString line);
    void take(int calls, int blocks, mrTool& tool);
    void endRun(mrString reason);

    bool m_driven = false;
    bool m_leavesTest = false;
    bool m_over = false;  ///< nothing is read or sent any more
    int m_in = -1;
    int m_out = -1;
    mrString m_pending;  ///< read and not yet a whole line
};

extern mrTurns g_turns;
