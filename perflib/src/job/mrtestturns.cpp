// A combination in a driven run: what the driver is told of it.

#include "job/mrtest.h"
#include "measure/mrturns.h"
#include "stream/mrcstream.h"
#include "stream/mrtrace.h"

namespace {

using Parameters = std::vector<mrTurnPoint::Parameter>;

/// By the columns that the test writes to the table: for tests that walk something of their own.
Parameters parametersByColumns(mrTest& test) {
    Parameters parameters;
    g_cstrm.setNextColmIndex(0);
    test.parmsToCstrm();
    for (int i = 0; i < g_cstrm.nextColm(); ++i) {
        mrString value;
        g_cstrm.getColm(i, value);
        parameters.push_back({mrString("Parm") + mrText(i + 1), value});
    }
    g_cstrm.setNextColmIndex(0);
    return parameters;
}

Parameters parametersOf(mrTest& test) {
    Parameters parameters;
    for (const mrParameter* parm : test.m_parms) {
        if (!parm->name().empty()) {
            parameters.push_back({parm->name(), parm->valueString()});
        }
    }
    return parameters.empty() ? parametersByColumns(test) : parameters;
}

}  // namespace

mrResult mrTest::takeTurns() {
    const mrResult noted = mrTraced("runTiming", [this] { return runTiming(); });
    if (mrIsFail(noted) || m_tool.m_funcStat == nullptr) {
        g_ostrm << MSG_ERR << "-- " << m_name << " takes no turns: it has no statistic entry\n" << MSG_END;
        return MR_FAIL;
    }
    const mrTurnPoint point = {m_name, getUnit(), getDivisor() / m_tool.m_funcClocks, parametersOf(*this)};
    initCtrlStatus();
    mrTraced("takeTurns", [&] { g_turns.serve(point, m_tool); });
    return std::max(static_cast<mrResult>(m_tool.m_result), checkCtrlStatus());
}
