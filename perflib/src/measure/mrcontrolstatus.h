#pragma once

/// The floating-point control status of a combination: set up before it is measured, and judged afterwards by
/// what the timed calls left (machine/mrfloat.h).
class mrControlStatus {
  public:
    static void initCtrlStatus();
    static bool badCtrlStatus(bool& bad87, bool& badSSX);
    static void clearCtrlStatus();
    static void printCtrlStatus(bool bad87, bool badSSX);
    /// Prints what badCtrlStatus finds.
    static void printBadCtrlStatus();
};

extern bool is_W_flagUsed;  ///< -W was given: float exceptions are signals
