#include "parameter/mrstepiterator.h"

namespace {

bool isOperation(char c) { return c == OprtnAdd || c == OprtnSub || c == OprtnMul; }

mrString operationText(StepOprtn operation) {
    mrString text;
    text.assign(static_cast<char>(operation));
    return text;
}

/// The next value; wraps like the processor's arithmetic.
int stepped(int value, StepOprtn operation, int step) {
    const auto a = static_cast<unsigned>(value);
    const auto b = static_cast<unsigned>(step);
    switch (operation) {
        case OprtnSub:
            return static_cast<int>(a - b);
        case OprtnMul:
            return static_cast<int>(a * b);
        default:
            return static_cast<int>(a + b);
    }
}

bool agree(int first, int last, int step, StepOprtn operation, bool descending) {
    switch (operation) {
        case OprtnAdd:
            return (step > 0) != descending;
        case OprtnSub:
            return (step > 0) == descending;
        case OprtnMul:
            return step >= 2 &&
                   ((first > 0 && last > 0 && !descending) || (first < 0 && last < 0 && descending));
        default:
            return true;
    }
}

}  // namespace

void mrStepIterator<int>::validate(int first, int last, int& step, StepOprtn& operation, bool& descending) {
    descending = first > last;
    if (!agree(first, last, step, operation, descending)) {
        mrRefuse("Conflict between iterator limits and operation", "");
    }
}

void mrStepIterator<int>::setSteps(int first, int last, StepOprtn operation, int step) {
    bool descending = false;
    validate(first, last, step, operation, descending);
    m_first = first;
    m_last = last;
    m_step = step;
    m_operation = operation;
    m_descending = descending;
}

mrString mrStepIterator<int>::defaultString() const {
    if (isList()) {
        return mrIterator::defaultString();
    }
    mrString text;
    return text << m_first << "; " << m_last << "; " << operationText(m_operation) << m_step;
}

mrString mrStepIterator<int>::description() const {
    if (isList()) {
        return mrIterator::description();
    }
    mrString text = "for (";
    text << m_name << " = " << m_first << "; " << m_name << (m_descending ? " >= " : " <= ") << m_last
         << "; ";
    return text << m_name << " " << operationText(m_operation) << "= " << m_step << ")";
}

mrString mrStepIterator<int>::prompt() const { return isList() ? m_name : mrString("for ") + m_name; }

bool mrStepIterator<int>::nextValue() {
    if (isList()) {
        return mrIterator::nextValue();
    }
    m_value = m_started ? stepped(m_value, m_operation, m_step) : m_first;
    m_started = m_descending ? m_value >= m_last : m_value <= m_last;
    return m_started;
}

int mrStepIterator<int>::numberIn(mrString word, const char* fault) const {
    const int value = stringToValue(word);
    if (word.failed()) {
        mrRefuse(fault, word);
    }
    return value;
}

void mrStepIterator<int>::translate(mrString text) {
    mrString first;
    mrString last;
    mrString step;
    if (text.parse(first, last, step, "; ") != 3 || !isOperation(step[0])) {
        mrIterator::translate(text);
        m_operation = OprtnList;
        return;
    }
    const auto operation = static_cast<StepOprtn>(step[0]);
    const int firstValue = numberIn(first, "Invalid first value = ");
    const int lastValue = numberIn(last, "Invalid last value = ");
    setSteps(firstValue, lastValue, operation, numberIn(step.substr(1), "Invalid step = "));
}
