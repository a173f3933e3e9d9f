#pragma once

#include "text/mrstates.h"
#include "text/mrstring.h"

class mrTest;

/// A condition of -f, -t or -m on one text of a test.
class RunCondition {
  public:
    enum Kind : int { And = 0, Or = 1, Equal = 2 };
    enum Field : int { FunctionName = 0, TestName = 1, SourceName = 2, FieldCount = 3 };

    RunCondition(Kind kind, Field field, mrString pattern)
        : m_kind(kind), m_field(field), m_pattern(pattern) {}
    RunCondition(const RunCondition&) = delete;
    RunCondition& operator=(const RunCondition&) = delete;

    virtual bool tobeRun(const mrTest* test) const = 0;
    int kind() const { return m_kind; }
    int field() const { return m_field; }
    const mrString& pattern() const { return m_pattern; }
    /// Whether the pattern occurs in the test's text, or is it, whatever follows from that.
    bool names(const mrTest* test) const { return m_kind == Equal ? equals(test) : contains(test); }

  protected:
    ~RunCondition() = default;
    bool contains(const mrTest* test) const;
    bool equals(const mrTest* test) const;

  private:
    mrString text(const mrTest* test) const;

    int m_kind;
    int m_field;
    mrString m_pattern;
};

/// The argument of -f, -t or -m, taken apart: a prefix "=", "+" or "-" and the pattern after it.
struct mrConditionArg {
    enum Form : int { Plain = 0, Equal = 1, With = 2, Without = 3, FormCount = 4 };

    explicit mrConditionArg(mrString arg);

    Form m_form;
    mrString m_pattern;
};

/// Makes the condition that a key's argument asks for; null if it holds no pattern. Conditions live to the
/// end of the process.
RunCondition* mrMakeCondition(RunCondition::Field field, mrString arg);

/// All conditions, and how the three groups combine.
class mrConditions : public mrList<RunCondition*> {
  public:
    bool tobeRun(const mrTest* test) const;
    /// The verdict of one field's conditions, 1 or 0.
    int tobeRun(const mrTest* test, int field) const;
    /// True if a condition of this field and kind holds.
    bool tobeRun_or(const mrTest* test, int field, int kind) const;
    /// True if all conditions of this field that must hold do.
    bool tobeRun_and(const mrTest* test, int field) const;
    int count(int field) const;
    int count(int field, int kind) const;

    int m_logic = MR_LOGIC_AND;  ///< mrLogic
};
