#include "measure/mrautotexts.h"

#include "stream/mrostream.h"

namespace {

void tell(mrString text) { writeInfo(text); }

mrString resultLine(mrResult result) {
    return mrString("        result     = ") + mrResultString(result) + "\n";
}

mrString accuracyLine(double accuracy) {
    return mrString("        accuracy   = ") + mrTool::getAccuracyStr(accuracy) + "\n";
}

}  // namespace

void mrAutoTexts::start(long long minClocks) const {
    mrString text = "    Auto method: start\n        minClocks  = ";
    text << clockStr(minClocks) << "\n";
    writeInfo(text);
}

void mrAutoTexts::priorMeasurement(int loops) const {
    mrString text = "    Prior Measurement: \n        ";
    text << countLabel() << "   = " << loops << "\n";
    writeInfo(text);
}

void mrAutoTexts::priorResult(mrResult result) const {
    mrString text;
    text << "        numClocks  = " << m_tool.m_numClocks << "\n"
         << "        funcClocks = " << m_tool.m_funcClocks << "\n"
         << resultLine(result);
    writeInfo(text);
}

void mrAutoTexts::iteration(int next, int stop) const {
    mrString text = "    Iteration Measurement: \n        startLoops = ";
    text << next << "\n"
         << "        maxLoops   = " << stop << "\n";
    writeInfo(text);
}

void mrAutoTexts::iterationResult(mrResult result) const {
    mrString text;
    text << "        stopLoops  = " << m_tool.m_numLoops << "\n"
         << "        stopClocks = " << m_tool.m_numClocks << "\n"
         << accuracyLine(m_tool.m_accuracy) << "        funcClocks = " << m_tool.m_funcClocks << "\n"
         << resultLine(result);
    writeInfo(text);
}

void mrAutoTexts::simpleMeasurements() const { tell("    Simple Measurements: \n"); }

void mrAutoTexts::simpleMeasurement(double clocks) const {
    mrString text = "        ";
    text << countLabel() << "   = " << m_tool.m_numLoops << "\n"
         << "        numClocks  = " << m_tool.m_numClocks << "\n"
         << "        funcClocks = " << clocks << "\n";
    writeInfo(text);
}

void mrAutoTexts::simpleResult(mrResult result) const {
    mrString text = accuracyLine(m_tool.m_accuracy);
    text << "        bestClocks = " << m_tool.m_funcClocks << "\n" << resultLine(result);
    writeInfo(text);
}

void mrAutoTexts::finished() const { tell("    Auto method: stop\n"); }

void mrAutoTexts::gaveUp() const { tell("    Auto method: exit\n"); }

void mrAutoTexts::avoidingBadStatus() const {
    g_ostrm << MSG_WARN << "-- Attempting to avoid bad control status\n" << MSG_END;
    tell("    Reduce loops to avoid bad ctrl status.\n    Simple Measurements: \n");
}

void mrAutoTexts::badStatusAvoided() const { g_ostrm << MSG_WARN << "-- Attempt is successful\n" << MSG_END; }

void mrAutoTexts::badStatusStays(bool repeats) const {
    tell("    Cannot avoid bad ctrl status\n");
    g_ostrm << MSG_WARN << "-- Attempt fails: " << MSG_END;
    g_ostrm << MSG_WARN << (repeats ? "Bad control status repeats.\n" : "Accuracy is unsatisfactory.\n")
            << MSG_END;
}
