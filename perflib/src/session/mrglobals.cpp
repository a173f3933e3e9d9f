// Every constructed global of the framework, in the order of construction; they are destroyed in the reverse
// order at exit. Suites register before any of them exists, and suites' own globals are destroyed after all
// of them.

#include "machine/mrfloat.h"
#include "machine/mrhost.h"
#include "machine/mrpriority.h"
#include "machine/mrsignal.h"
#include "measure/mrturns.h"
#include "session/mr.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "stream/mrtrace.h"
#include "zylcore.h"

// Plain words and addresses, valid from the start.

namespace {
constinit mrObject bufferMark;
constinit mrObject subobjectMark;
}  // namespace

constinit mrObject* const MEM_OBJECT_IS_BUFFER = &bufferMark;
constinit mrObject* const MEM_OBJECT_IS_SUBOBJECT = &subobjectMark;

constinit mrBlockTicks* mrBlockTicks::wanted = nullptr;

constinit int mrTool::numIntLoops = 1;
constinit int mrTool::tResolution = 4;
constinit int mrTool::m_numMilliseconds = 100;
constinit int mrTool::m_minNumLoops = 8;
constinit int mrTool::m_numExtLoops = 8;
constinit int mrTool::m_extLoopIdx = 100000;
constinit int mrTool::m_priority = MR_PRIORITY_KEEP;
mrResult (*mrTool::m_pCheckStatus)(int status) = nullptr;

constinit int mrTest::m_numResultColm = 0;
constinit int mrTest::m_numParmsColm = 0;
constinit int mrTest::m_currentResult = MR_NOT_RUN;
constinit int mrTest::m_hot = MR_HOT_NONE;
constinit int mrTest::m_vectorShift = 0;
constinit int mrTest::m_vectorNum = 0;
constinit bool mrTest::m_pressing = false;
constinit bool mrTest::m_cache = false;
constinit mrTest* mrTestList::m_pCurrentTest = nullptr;

constinit bool s_version = false;
constinit char s_hintArg = MR_HINT_NONE;
constinit bool s_hintHide = true;
constinit int s_numThreads = 0;
constinit Zyl64u s_cpuFeature = 0;
constinit bool is_W_flagUsed = false;
constinit const char* const MR_version = "2.0";

constinit mrCommandList* mrSession::pCmdList = nullptr;
constinit int mrSession::m_exitLevel = MR_EXIT_NONE;
constinit int mrNameLines::m_nameMode = MR_NAMES_NONE;
constinit bool mrNameLines::m_nameExit = false;

int (*zyl_GetCpuFeatures)(Zyl64u* mask, Zyl32u registers[4]) = nullptr;
Zyl64u (*zyl_GetEnabledCpuFeatures)() = nullptr;
int (*zyl_GetMaxCacheSizeB)(int* size) = nullptr;
const char* (*zyl_GetStatusString)(int status) = nullptr;
int (*zyl_Init)() = nullptr;
int (*zyl_SetCpuFeatures)(Zyl64u mask) = nullptr;
int (*zyl_SetNumThreads)(int number) = nullptr;
int (*zyl_GetNumThreads)(int* number) = nullptr;

// Constructed objects.

mrTool g_tool;
mrString mrTool::path;
mrString mrTool::path_tmp;

mrString mrTestList::m_startFunc;

mrJournal g_journal;

o_stream c_out(stdout, "stdout");
i_stream c_in(stdin, "stdin");
mrOStream g_ostrm;
mrCStream g_cstrm;
mrCStream g_qstrm;
mrUStream g_ustrm;
mrCStream g_mstrm;
mrIStream g_istrm;
mrTrace g_trace;

mrTurns g_turns;

tsSignal _g_signal;
mr87 g_ctrl87;
mrSSX g_ssx;

mrString mrFileNames::m_exePath;
mrString mrFileNames::m_defName;
mrString mrFileNames::m_inDir;
mrString mrFileNames::m_outDir;

mrOS os;
mrHost host;
