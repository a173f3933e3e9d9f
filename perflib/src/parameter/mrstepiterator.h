#pragma once

#include "parameter/mriterator.h"

/// How a step iterator goes on; OprtnList means that its list of values is in force.
enum StepOprtn : char { OprtnAdd = '+', OprtnSub = '-', OprtnMul = '*', OprtnList = '?' };

template <class T>
class mrStepIterator;

/// Walks a list of values, or from a first to a last value by steps.
template <>
class mrStepIterator<int> : public mrIterator<int> {
  public:
    mrStepIterator() = default;

    /// Sets the arithmetic form; throws mrException if limits, step and operation do not agree.
    void setSteps(int first, int last, StepOprtn operation, int step);
    /// Checks a first, last, step and operation, and tells whether the walk goes down. A step of 0 passes in
    /// two cases, and such a walk does not end: the bounds are the user's to choose. Throws mrException on a
    /// conflict.
    void validate(int first, int last, int& step, StepOprtn& operation, bool& descending);

    mrString defaultString() const override;
    mrString description() const override;
    mrString prompt() const override;
    bool nextValue() override;
    /// Three words of which the third begins with +, - or * are the arithmetic form, all else is a list. So a
    /// list of three numbers with a negative third one is read as steps.
    void translate(mrString text) override;

  private:
    bool isList() const { return m_operation == OprtnList; }
    int numberIn(mrString word, const char* fault) const;

    int m_first = 0;
    int m_last = 0;
    int m_step = 0;
    StepOprtn m_operation = OprtnList;
    bool m_descending = false;
};
