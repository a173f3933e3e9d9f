#include "session/mrbinding.h"

#include "machine/mrlibrary.h"
#include "session/mr.h"
#include "stream/mrinventory.h"
#include "stream/mrostream.h"
#include "zylcore.h"

namespace {

int s_zylGetCpuFeatures(Zyl64u*, Zyl32u*) { return MR_NOT_BOUND; }
Zyl64u s_zylGetEnabledCpuFeatures() { return 0; }
int s_zylInit() { return MR_NOT_BOUND; }
int s_zylSetCpuFeatures(Zyl64u) { return MR_NOT_BOUND; }
int s_zylSetNumThreads(int) { return MR_NOT_BOUND; }
int s_zylGetNumThreads(int*) { return MR_NOT_BOUND; }

const char* s_zylGetStatusString(int status) {
    if (status == 0) {
        return "OK";
    }
    return status < 0 ? "Fail" : "Note";
}

template <class Function>
void bind(Function*& pointer, Function* fallback) {
    if (pointer == nullptr) {
        pointer = fallback;
    }
}

void reportSetting(int status) {
    if (status == 0) {
        g_ostrm << "--status = zylStsNoErr\n";
    } else {
        reportStatus(status);
    }
}

void setThreads() {
    g_ostrm << MSG_ERR;
    int numThreads = 0;
    zyl_GetNumThreads(&numThreads);
    g_ostrm << "\n"
            << "--calling zylGetNumThreads: numThreads = " << mrText(numThreads) << "\n";
    if (s_numThreads > 0) {
        g_ostrm << "--calling zylSetNumThreads( " << mrText(s_numThreads) << " )\n";
        reportSetting(zyl_SetNumThreads(s_numThreads));
    }
    g_ostrm << MSG_END;
}

}  // namespace

void mrBindFallbacks() {
    bind(zyl_GetCpuFeatures, s_zylGetCpuFeatures);
    bind(zyl_GetEnabledCpuFeatures, s_zylGetEnabledCpuFeatures);
    bind(zyl_GetMaxCacheSizeB, zylGetMaxCacheSizeB);
    bind(zyl_GetStatusString, s_zylGetStatusString);
    bind(zyl_Init, s_zylInit);
    bind(zyl_SetCpuFeatures, s_zylSetCpuFeatures);
    bind(zyl_SetNumThreads, s_zylSetNumThreads);
    bind(zyl_GetNumThreads, s_zylGetNumThreads);
}

void initStaticCpu() {
    if (zylEnvironment == nullptr) {
        return;
    }
    if (s_cpuFeature == 0) {
        zyl_Init();
        return;
    }
    g_ostrm << MSG_ERR << "\n"
            << "--calling zylSetCpuFeatures( zylCpuFeatures "
            << "= " << mrFormat("%#8x", static_cast<unsigned>(s_cpuFeature)) << " )\n";
    const int status = zyl_SetCpuFeatures(s_cpuFeature);
    reportSetting(status);
    if (status < 0) {
        g_ostrm << "--calling zylInit()\n";
        const int initStatus = zyl_Init();
        if (initStatus < 0) {
            reportStatus(initStatus);
        }
    }
    g_ostrm << MSG_END;
}

void mrBindLibrary() {
    if (zylEnvironment != nullptr) {
        initStaticCpu();
        setThreads();
        zylEnvironment();
        // The same words were sent at the start of the run too, below the level that passed then; only these
        // show.
        g_ostrm << "\nZorva ZYL Core library functions have been integrated into MR\n";
    }
    mrBindFallbacks();
}

void mrNoteLibraryVersions() {
    if (zylVersionList == nullptr) {
        return;
    }
    for (const ZylVersionFunc getVersion : *zylVersionList) {
        const ZylLibraryVersion* version = getVersion();
        mrRegLibInfo(mrString(version->Name) + ", " + version->Version + ", " + version->BuildDate);
    }
    g_ostrm << "Zorva ZYL libraries information has been set into MR\n";
}
