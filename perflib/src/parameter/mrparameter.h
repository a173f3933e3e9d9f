#pragma once

#include "text/mrstring.h"

class mrOStream;
class mrCStream;
class mrIStream;

/// A named input of a test: it is read once from whichever source has a value for it, delivers its value or
/// values during the walk, and prints itself to listings and tables. A parameter without a name takes no part
/// in reading and printing. Objects have static duration; lists only refer to them.
class mrParameter {
  public:
    mrParameter() = default;
    /// For parameter types of suites; the program's are named by setName.
    mrParameter(mrString name, mrString prompt);
    mrParameter(const mrParameter&) = default;
    mrParameter& operator=(const mrParameter&) = default;
    virtual ~mrParameter() = default;

    mrString name() const { return m_name; }
    /// An empty prompt text stands for the name.
    void setName(mrString name, mrString prompt = "");
    /// The value is still to be read.
    bool active() const { return m_active; }
    void setActive(bool active) { m_active = active; }

    virtual void reset();
    virtual mrString valueString() const;
    /// The text that would set the parameter to what it is now.
    virtual mrString defaultString() const;
    /// The legal texts, joined by "|", or empty for any.
    virtual mrString validString() const;
    virtual mrString description() const;
    virtual mrString prompt() const;

    virtual void resetIterator();
    /// Begin, or go on with, the walk; false at its end. A plain parameter delivers exactly one value.
    virtual bool firstValue();
    virtual bool nextValue();

    virtual bool isDeprecatedParm();
    /// For suites that choose by it what to print; the program asks setDeprecatedFlag.
    virtual bool isDeprecatedValue();
    virtual bool setDeprecatedFlag(bool on);

    virtual mrOStream& toOStream(mrOStream& stream) const;
    /// The fixed table column, or -1 for the next one.
    virtual int colmIndex() const;
    virtual mrCStream& toCStream(mrCStream& stream) const;
    virtual mrCStream& nameToCStream(mrCStream& stream) const;
    /// Reads the value. A text that is refused is shown in a line beginning "-", and the previous value
    /// stands.
    virtual mrIStream& fromIStream(mrIStream& stream);
    /// Takes a text over as value; throws mrException if it can't be converted.
    virtual void translate(mrString text);

  protected:
    /// Bit of m_flags: the table shows the value in double quotes.
    static constexpr unsigned QuotedValue = 2;

    mrString m_name;
    mrString m_promptText;
    bool m_started = false;  ///< the walk has delivered a value and is not finished
    bool m_active = true;
    unsigned m_flags = 0;
    bool m_deprecatedNow = false;
    mrString m_deprecatedText;

  private:
    void readText(mrIStream& stream);
    void describeSelf() const;
    mrCStream& toColumn(mrCStream& stream, const mrString& text) const;
};
