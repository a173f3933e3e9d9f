// The dialogue before the tests: the timing method, the common parameters of the tests, the layout of vectors
// in memory.

#include "parameter/mrmemory.h"
#include "session/mr.h"
#include "stream/mristream.h"

namespace {

constexpr int BoxWidth = 78;
constexpr int DefaultAccuracy = 5;  // percent
constexpr int DefaultCalls = 3;
constexpr int DefaultClocks = 10000;
constexpr int DefaultLoops = 10;
constexpr int DefaultVectorShift = 512;

template <class Parameter>
auto valueRead(Parameter& parm) {
    parm.fromIStream(g_istrm);
    return parm.value();
}

int readNumber(const char* name, int value, const char* prompt = "") {
    mrDefault<int> parm(value, name, prompt);
    return valueRead(parm);
}

/// A choice between two words; the default is that of false.
bool readChoice(const char* name, const char* wordOfTrue, const char* wordOfFalse) {
    mrMapDefault<bool> parm(false, name, "");
    parm[true] = wordOfTrue;
    parm[false] = wordOfFalse;
    return valueRead(parm);
}

int readMethod(int method) {
    mrMapDefault<int> parm(method, "Method", "");
    parm[MR_METHOD_AUTO] = "Auto";
    parm[MR_METHOD_LOOP] = "Manual";
    parm[MR_METHOD_STAT] = "Statistic";
    parm[MR_METHOD_BEST] = "Iterative";
    return valueRead(parm);
}

void readLoopMethod(const mrTool& fresh) {
    int loops = DefaultLoops;
    fresh.getMethodLoop(loops);
    g_tool.setMethodLoop(readNumber("NumLoops", loops));
}

void readStatMethod(const mrTool& fresh) {
    int calls = DefaultCalls;
    long long clocks = DefaultClocks;
    fresh.getMethodStat(calls, clocks);
    calls = readNumber("NumCalls", calls);
    g_tool.setMethodStat(calls, readNumber("TotalCpuClocks", static_cast<int>(clocks)));
}

void readBestMethod(const mrTool& fresh) {
    int start = 0;
    int stop = 0;
    long long minClocks = 0;
    fresh.getAutoParameters(start, stop, minClocks);
    fresh.getMethodBest(start, stop, minClocks);
    start = readNumber("StartNumLoops", start);
    stop = readNumber("StopNumLoops", stop);
    g_tool.setMethodBest(start, stop, readNumber("MinCpuClocks", static_cast<int>(minClocks)));
}

/// Out of 1 to 50 percent no accuracy is required: the figure is one that every measurement reaches.
void readAccuracy() {
    double accuracy = readNumber("Accuracy", DefaultAccuracy, "Accuracy, %") * 0.01;
    if (accuracy < 0.01) {
        accuracy = 10.0;
    }
    if (accuracy > 0.5) {
        accuracy = 500.0;
    }
    g_tool.m_reqAccuracy = accuracy;
}

void putTitle(const char* text) { g_ostrm << MSG_ERR << mrSession::getEnterTitle(text) << MSG_END; }

}  // namespace

mrString mrSession::getEnterTitle(mrString text) {
    mrString frame = " ";
    for (int i = 0; i < BoxWidth; ++i) {
        frame << "*";
    }
    frame << "\n";
    const int pad = (BoxWidth + 2 - text.length()) / 2;
    const mrString line = mrString(" *").padRight(pad) + text;
    return frame + line.padRight(line.length() + BoxWidth - pad - text.length()) + "*\n" + frame;
}

int mrSession::beginQuestions(Ask group, const char* title) {
    const int asked = g_istrm.dialogueEnded() ? 0 : m_askMode & group;
    if (asked == 0) {
        g_istrm.setIStream(nullptr);
    } else {
        g_istrm.setIStream(&c_in);
        putTitle(title);
    }
    return asked;
}

void mrSession::readCommonData() {
    int asked = readTimingMethod();
    asked |= readTestParameters();
    asked |= readDataOffset();
    if (asked != 0) {
        putTitle("End of common specifications");
    }
}

int mrSession::readTimingMethod() {
    mrTool fresh;
    if (initTimingMethod != nullptr) {
        initTimingMethod(fresh);
    } else {
        fresh.setMethodAuto();
    }
    const int asked = beginQuestions(AskTiming, "Specify timing method, please");
    switch (readMethod(fresh.m_method)) {
        case MR_METHOD_LOOP:
            readLoopMethod(fresh);
            return asked;
        case MR_METHOD_STAT:
            readStatMethod(fresh);
            return asked;
        case MR_METHOD_BEST:
            readBestMethod(fresh);
            break;
        default:
            g_tool.setMethodAuto();
    }
    readAccuracy();
    return asked;
}

int mrSession::readTestParameters() {
    if (g_pParmList == nullptr || g_pParmList->empty()) {
        return 0;
    }
    const int asked = beginQuestions(AskCommon, "Specify common test parameters, please");
    for (mrParameter* parm : *g_pParmList) {
        parm->fromIStream(g_istrm);
        parm->setActive(false);
    }
    return asked;
}

int mrSession::readDataOffset() {
    const int asked = beginQuestions(AskAlignment, "Specify vectors alignment, please");
    const bool byByte = readChoice("AlignVectorsBy", "byte", "element");
    mrSetAlignByByte(byByte);

    DefaultAlign align(0, "VectorAlign",
                       byByte ? "VectorAlign by Byte, 0..63" : "VectorAlign by Element, 0..63");
    mrSetVectorAlign(valueRead(align));
    if (align.value() != 0) {
        mrSetAlignSrc(readChoice("MisalignFirstVectorOnly", "yes", "no"));
    }
    DefaultShift shift(DefaultVectorShift, "MutualVectorShift",
                       "MutualVectorShift in Bytes, divisible by 64");
    mrSetVectorShift(valueRead(shift));
    return asked;
}
