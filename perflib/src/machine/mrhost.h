#pragma once

#include "text/mrstring.h"

/// The host's name.
class mrHost {
  public:
    mrHost();
    const mrString& text() const { return m_text; }

  private:
    mrString m_text;
};

/// The operating system: "Linux (6.1.0, x86_64)".
class mrOS {
  public:
    mrOS();
    const mrString& text() const { return m_text; }

  private:
    mrString m_text;
};

/// Processors online, at least 1.
int mrGetNumOfProcessors();

extern mrOS os;
extern mrHost host;
