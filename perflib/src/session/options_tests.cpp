#include "session/options.h"
#include "session/optionwords.h"

namespace {

/// What a condition says round its pattern.
struct Words {
    const char* before;
    const char* after;
};

/// By field, then by the form of the argument.
constexpr Words conditionWords[RunCondition::FieldCount][mrConditionArg::FormCount] = {
    {{"test functions containing '", "'"},
     {"test function equal to '", "'"},
     {"don't test functions without '", "' in the name"},
     {"don't test functions containing '", "'"}},
    {{"run tests containing '", "'"},
     {"run test equal to '", "'"},
     {"don't run tests which doesn't contain '", "'"},
     {"don't run tests containing '", "'"}},
    {{"run tests from file containing '", "'"},
     {"run test equal from file with exact name '", "'"},
     {"don't run tests from file which doesn't contain '", "'"},
     {"don't run tests from file containing '", "' in file name"}},
};

mrString conditionInfo(RunCondition::Field field, mrString arg, const char* fieldName) {
    const mrConditionArg parts(arg);
    if (parts.m_pattern.empty()) {
        return mrString("ignored: empty ") + fieldName + " pattern";
    }
    const Words& words = conditionWords[field][parts.m_form];
    return mrUnlessExit(MR_EXIT_HELP, mrPhrase(words.before, parts.m_pattern, words.after));
}

void addCondition(RunCondition::Field field, mrString arg, mrSession* session) {
    RunCondition* condition = mrMakeCondition(field, arg);
    if (condition != nullptr) {
        session->addCondition(condition);
    }
}

bool asksOr(const mrString& arg) { return arg[0] == 'o'; }

bool asksHotOnly(const mrString& arg) { return arg[0] == 'O'; }

bool asksNoSorting(const mrString& arg) { return arg[0] == '-'; }

int listMode(const mrString& arg) {
    switch (arg[0]) {
        case '+':
            return MR_LIST_FUNCTIONS;
        case '-':
            return MR_LIST_UNTESTED;
        default:
            return MR_LIST_TESTS;
    }
}

}  // namespace

mrString f_info(mrString arg) { return conditionInfo(RunCondition::FunctionName, arg, "function"); }

void f_apply(mrString arg, mrSession* session) { addCondition(RunCondition::FunctionName, arg, session); }

mrString t_info(mrString arg) { return conditionInfo(RunCondition::TestName, arg, "test"); }

void t_apply(mrString arg, mrSession* session) { addCondition(RunCondition::TestName, arg, session); }

mrString m_info(mrString arg) { return conditionInfo(RunCondition::SourceName, arg, "file"); }

void m_apply(mrString arg, mrSession* session) { addCondition(RunCondition::SourceName, arg, session); }

// The misspelling has always been in the listings.
mrString k_info(mrString arg) {
    return asksOr(arg) ? "keys composition: -f<conditions> OR -t<conditions> OR -m<conditiosn>"
                       : "keys composition: -f<conditions> AND -t<conditions> AND -m<conditions>";
}

void k_apply(mrString arg, mrSession* session) {
    session->logicCondition(asksOr(arg) ? MR_LOGIC_OR : MR_LOGIC_AND);
}

mrString F_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_LIST, mrPhrase("start testing from ", arg, " function"));
}

void F_apply(mrString arg, mrSession*) { mrTestList::m_startFunc = arg; }

mrString P_info(mrString) {
    return mrUnlessExit(MR_EXIT_LIST, "read tested function names from ini-file if any");
}

void P_apply(mrString, mrSession*) { mrTest::m_pressing = true; }

mrString s_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_HELP, asksNoSorting(arg) ? "don't sort functions" : "sort functions");
}

/// There is no way back to sorting.
void s_apply(mrString arg, mrSession* session) {
    if (asksNoSorting(arg)) {
        session->setQuickMode(true);
    }
}

mrString e_info(mrString arg) {
    if (mrSession::isExit(MR_EXIT_HELP) && !mrSession::isExit(MR_EXIT_VERSION)) {
        return mrSession::getExitInfo();
    }
    switch (listMode(arg)) {
        case MR_LIST_FUNCTIONS:
            return "enumerate applied and not applied library functions and exit";
        case MR_LIST_UNTESTED:
            return "enumerate not applied library functions and exit";
        default:
            return "enumerate tested functions and exit";
    }
}

void e_apply(mrString arg, mrSession* session) { session->setEnumMode(listMode(arg)); }

mrString H_info(mrString arg) {
    return mrUnlessExit(MR_EXIT_HELP, asksHotOnly(arg) ? "run tests for hot functions only"
                                                       : "add 'Interest' column to table file");
}

void H_apply(mrString arg, mrSession*) { mrTest::m_hot = asksHotOnly(arg) ? MR_HOT_ONLY : MR_HOT_COLUMN; }
