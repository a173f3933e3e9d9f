#pragma once

#include "measure/mrclock.h"
#include "measure/mrentries.h"
#include "text/mrresult.h"

/// Timing methods.
enum mrMethod : int { MR_METHOD_AUTO = 0, MR_METHOD_LOOP = 1, MR_METHOD_STAT = 2, MR_METHOD_BEST = 3 };

/// How a tool measures: what the session chose, and what the test changed in its copy.
struct mrToolSettings {
    int m_method = MR_METHOD_AUTO;
    double m_reqAccuracy = 0.05;  ///< requested, a fraction
    int m_manualLoops = 10;
    int m_statCalls = 12;
    long long m_statClocks = 10000;
    int m_bestStart = 1;
    int m_bestStop = 2048;
    long long m_bestMinClocks = 100;
    int m_factorStart = 0;  ///< start loops forced by setLoopFactor, 0 for none
    int m_factorStop = 0;
    bool m_callMode = false;     ///< counts are called calls instead of loops
    bool m_setAndUse = false;    ///< restore the data before each call, inside the timed stretch
    bool m_ibs = false;          ///< the test's data are put back before each measurement
    bool m_watchStatus = false;  ///< a bad control status is handled while measuring
};

/// What a measurement leaves, and the entries that it called; mrTool::reset() takes back all of it.
struct mrToolFigures {
    mrResult m_result = MR_NOT_RUN;  ///< worst result of this timing
    double m_funcClocks = 0.0;       ///< clock figure of one call; raw clocks until a method has divided them
    int m_numLoops = 0;              ///< loops or calls of the last measurement
    long long m_numClocks = 0;       ///< raw clocks of the last measurement
    double m_accuracy = 1.0;         ///< reached, a fraction
    mrString m_info;                 ///< text of the worst result
    mrString m_comment;              ///< for the comment column
    mrDate m_date;                   ///< time of the last reset
    FuncLoop m_funcLoop = nullptr;
    FuncStat m_funcStat = nullptr;
    FuncCall m_funcCall = nullptr;
    FuncCall m_funcInit = nullptr;
};
