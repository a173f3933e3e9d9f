#pragma once

#include "text/mrstring.h"

/// State of the processor and of the process that the run relies on, and that a function under test may leave
/// changed. It is put right outside the timed stretch, and what was found is noted until it is told.

/// The x87 and MXCSR control words of the moment of its making.
class mrControlWords {
  public:
    mrControlWords();
    /// Puts them back where they differ.
    void restore() const;

  private:
    unsigned short m_x87 = 0;
    unsigned m_ssx = 0;
};

/// After each call of an entry, what any code needs that copies, computes or prints: direction flag, x87
/// register stack, locale.
void mrRestoreAfterCall();
/// After a combination, since it asks the system: signal handlers, their stack, signal mask.
void mrRestoreSignals();

/// Forgets what was found and told: a new test.
void mrForgetLeftState();
/// The names of what was found and has not been told, joined by ", "; empty if there is nothing.
mrString mrLeftStateToTell();
