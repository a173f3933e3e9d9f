// The methods with counts that the user gives: one measurement, no accuracy sought.

#include "measure/mrtool.h"
#include "stream/mrostream.h"
#include "stream/mrtrace.h"

namespace {

void writeResult(double funcClocks, mrResult result) {
    mrString text = "        funcClocks = ";
    text << funcClocks << "\n"
         << "        result     = " << mrResultString(result) << "\n";
    writeInfo(text);
}

}  // namespace

void mrTool::statisticTiming() {
    mrString text = "    Statistical method:\n";
    // The value is a lower bound; its printed name is older than that.
    text << "        minCalls   = " << m_statCalls << "\n"
         << "        maxClocks  = " << clockStr(m_statClocks) << "\n";
    writeInfo(text);
    int calls = m_statCalls;
    mrTraced("runTimFuncStat", [&] { runTimFuncStat(m_statClocks, &calls, &m_funcClocks); });
    m_accuracy = 0.0;
    m_comment << "nCalls=" << calls;
    text << "        numCalls   = " << calls << "\n";
    writeInfo(text);
    writeResult(m_funcClocks, m_result);
}

void mrTool::customLoopTiming() {
    mrString text = "    Manual method: \n";
    text << "        numLoops   = " << m_manualLoops << "\n";
    writeInfo(text);
    mrTraced("runTimFunc", [this] { runTimFunc(m_manualLoops, &m_funcClocks, true); });
    m_accuracy = 0.0;
    m_comment << "nLps=" << m_manualLoops;
    writeResult(m_funcClocks, m_result);
}
