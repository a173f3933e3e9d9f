#pragma once

#include "text/mrstring.h"

/// The one exception type: a signal in a function under test, or a parameter text that can't be used. Texts
/// that do not fit are cut.
class mrException {
  public:
    /// A signal, by its plain text.
    explicit mrException(const char* signalText);
    /// A refused value; always built from an mrString, the other form would call it a signal.
    explicit mrException(const mrString& text);
    mrException(const mrException&) = default;
    mrException& operator=(const mrException&) = default;
    virtual ~mrException() = default;

    /// The end of the process that called the function, by its text.
    static mrException lostProcess(const mrString& text);

    /// With its kind in front: "--ZYL. Signal: ...", "--ZYL. Exception: ..." or "--ZYL. Process: ...".
    mrString msg() const { return m_msg; }
    mrString info() const { return m_info; }

  private:
    mrException() = default;
    void setTexts(const char* kind, const mrString& text);

    char m_msg[274];
    char m_info[258];
};
