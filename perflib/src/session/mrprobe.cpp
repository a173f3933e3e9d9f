// What is wrong with the keys of a run, found without measuring anything: a supervisor asks for it in the
// journal. The run itself passes over all of this in silence, or in words that no script reads.

#include "session/mr.h"
#include "stream/mristream.h"
#include "stream/mrjournal.h"

namespace {

constexpr const char* fieldKeys[RunCondition::FieldCount] = {"-f", "-t", "-m"};
constexpr const char* fieldNames[RunCondition::FieldCount] = {"the name of a function", "the name of a test",
                                                              "the name of a source file"};

bool anyTest(const auto& isSought) {
    for (const mrTest* test : *pTestList) {
        if (isSought(test)) {
            return true;
        }
    }
    return false;
}

void probeCondition(const RunCondition& condition) {
    if (!anyTest([&](const mrTest* test) { return condition.names(test); })) {
        const bool whole = condition.kind() == RunCondition::Equal;
        g_journal.complain(mrString(fieldKeys[condition.field()]) + ": \"" + condition.pattern() +
                           (whole ? "\" is not " : "\" is no part of ") + fieldNames[condition.field()]);
    }
}

/// -P measures the functions that are sections of the ini file.
void probeSections() {
    const mrIniFile* ini = g_istrm.iniFile();
    if (!mrTest::m_pressing || ini == nullptr) {
        return;
    }
    for (const mrString& name : ini->sectionNames()) {
        if (!(name == "Metrig") && !anyTest([&](const mrTest* test) { return test->m_name == name; })) {
            g_journal.complain(mrString("-P: no test is of function \"") + name + "\"");
        }
    }
}

void probeData() {
    for (const mrData& data : g_istrm.dataList()) {
        if (!data.m_read) {
            g_journal.complain(mrString("-d") + data.m_name + "=" + data.m_value + ": no test asks for it");
        }
    }
}

}  // namespace

void mrSession::probeTests() {
    for (const RunCondition* condition : *m_conditions) {
        probeCondition(*condition);
    }
    probeSections();
    int count = 0;
    for (mrTest* test : *pTestList) {
        if (!test->tobeRun(*m_conditions) || !test->m_name.found(mrTestList::m_startFunc)) {
            continue;
        }
        mrTestList::m_startFunc = "";
        count += test->readParameters() ? 1 : 0;
    }
    if (!mrTestList::m_startFunc.empty()) {
        g_journal.complain(mrString("-F: no test that is to run is of function \"") +
                           mrTestList::m_startFunc + "\"");
    }
    if (count == 0) {
        g_journal.complain("no test is left to run");
    } else {
        probeData();
    }
}
