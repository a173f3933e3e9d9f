#include "job/mrconditions.h"

#include "job/mrtest.h"

namespace {

template <RunCondition::Kind AsKind, RunCondition::Field OfField>
class Containing final : public RunCondition {
  public:
    explicit Containing(mrString pattern) : RunCondition(AsKind, OfField, pattern) {}
    bool tobeRun(const mrTest* test) const override { return contains(test); }
};

template <RunCondition::Field OfField>
class Lacking final : public RunCondition {
  public:
    explicit Lacking(mrString pattern) : RunCondition(And, OfField, pattern) {}
    bool tobeRun(const mrTest* test) const override { return !contains(test); }
};

template <RunCondition::Field OfField>
class Equalling final : public RunCondition {
  public:
    explicit Equalling(mrString pattern) : RunCondition(Equal, OfField, pattern) {}
    bool tobeRun(const mrTest* test) const override { return equals(test); }
};

using RunCondition_f = Containing<RunCondition::Or, RunCondition::FunctionName>;
using RunCondition_fEqual = Equalling<RunCondition::FunctionName>;
using RunCondition_fAnd = Containing<RunCondition::And, RunCondition::FunctionName>;
using RunCondition_fNot = Lacking<RunCondition::FunctionName>;
using RunCondition_t = Containing<RunCondition::Or, RunCondition::TestName>;
using RunCondition_tEqual = Equalling<RunCondition::TestName>;
using RunCondition_tAnd = Containing<RunCondition::And, RunCondition::TestName>;
using RunCondition_tNot = Lacking<RunCondition::TestName>;
using RunCondition_s = Containing<RunCondition::Or, RunCondition::SourceName>;
using RunCondition_sEqual = Equalling<RunCondition::SourceName>;
using RunCondition_sAnd = Containing<RunCondition::And, RunCondition::SourceName>;
using RunCondition_sNot = Lacking<RunCondition::SourceName>;

using Maker = RunCondition* (*)(const mrString& pattern);

template <class Condition>
RunCondition* make(const mrString& pattern) {
    return new Condition(pattern);
}

/// By field, then by the form of the argument.
constexpr Maker makers[RunCondition::FieldCount][mrConditionArg::FormCount] = {
    {make<RunCondition_f>, make<RunCondition_fEqual>, make<RunCondition_fAnd>, make<RunCondition_fNot>},
    {make<RunCondition_t>, make<RunCondition_tEqual>, make<RunCondition_tAnd>, make<RunCondition_tNot>},
    {make<RunCondition_s>, make<RunCondition_sEqual>, make<RunCondition_sAnd>, make<RunCondition_sNot>},
};

mrConditionArg::Form formOf(char first) {
    switch (first) {
        case '=':
            return mrConditionArg::Equal;
        case '+':
            return mrConditionArg::With;
        case '-':
            return mrConditionArg::Without;
        default:
            return mrConditionArg::Plain;
    }
}

}  // namespace

mrString RunCondition::text(const mrTest* test) const {
    switch (m_field) {
        case FunctionName:
            return test->m_name;
        case TestName:
            return test->m_info.m_suite;
        default:
            return test->m_fileName;
    }
}

bool RunCondition::contains(const mrTest* test) const { return text(test).found(m_pattern); }

bool RunCondition::equals(const mrTest* test) const { return text(test) == m_pattern; }

mrConditionArg::mrConditionArg(mrString arg) : m_form(formOf(arg[0])) {
    m_pattern = m_form == Plain ? arg : arg.substr(1);
}

RunCondition* mrMakeCondition(RunCondition::Field field, mrString arg) {
    const mrConditionArg parts(arg);
    return parts.m_pattern.empty() ? nullptr : makers[field][parts.m_form](parts.m_pattern);
}

bool mrConditions::tobeRun(const mrTest* test) const {
    if (empty()) {
        return true;
    }
    const bool joinedByOr = m_logic == MR_LOGIC_OR;
    for (int field = 0; field < RunCondition::FieldCount; ++field) {
        if (count(field) > 0 && (tobeRun(test, field) > 0) == joinedByOr) {
            return joinedByOr;
        }
    }
    return !joinedByOr;
}

int mrConditions::tobeRun(const mrTest* test, int field) const {
    if (tobeRun_or(test, field, RunCondition::Equal)) {
        return 1;
    }
    if (count(field) == count(field, RunCondition::Equal)) {
        return 0;
    }
    if (count(field, RunCondition::Or) > 0 && !tobeRun_or(test, field, RunCondition::Or)) {
        return 0;
    }
    return tobeRun_and(test, field) ? 1 : 0;
}

bool mrConditions::tobeRun_or(const mrTest* test, int field, int kind) const {
    for (const RunCondition* condition : *this) {
        if (condition->field() == field && condition->kind() == kind && condition->tobeRun(test)) {
            return true;
        }
    }
    return false;
}

bool mrConditions::tobeRun_and(const mrTest* test, int field) const {
    for (const RunCondition* condition : *this) {
        if (condition->field() == field && condition->kind() == RunCondition::And &&
            !condition->tobeRun(test)) {
            return false;
        }
    }
    return true;
}

int mrConditions::count(int field) const {
    int number = 0;
    for (const RunCondition* condition : *this) {
        number += condition->field() == field ? 1 : 0;
    }
    return number;
}

int mrConditions::count(int field, int kind) const {
    int number = 0;
    for (const RunCondition* condition : *this) {
        number += condition->field() == field && condition->kind() == kind ? 1 : 0;
    }
    return number;
}
