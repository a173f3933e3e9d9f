#include <cstring>

#include "job/mrtestlist.h"
#include "machine/mrcachesize.h"
#include "machine/mrcpuid.h"
#include "machine/mrhost.h"
#include "report/mrreport.h"
#include "stream/mrinventory.h"
#include "stream/mrreportformat.h"
#include "stream/mrreportpairs.h"

namespace {

constexpr Zyl32u ExtendedLeaf = 0x80000000;

/// What the gateway itself answers is taken here, without a look at the highest leaf: a processor that has
/// extended leaves at all tells its brand.
mrString processorName() {
    Zyl32u words[4] = {ExtendedLeaf};
    if (!CPUID::query(words) || (words[CPUID::EAX] & ExtendedLeaf) == 0) {
        return "Unknown CPU";
    }
    char brand[3 * sizeof words + 1] = "";
    for (Zyl32u i = 0; i < 3; ++i) {
        Zyl32u piece[4] = {ExtendedLeaf + 2 + i};
        if (CPUID::query(piece)) {
            std::memcpy(brand + i * sizeof piece, piece, sizeof piece);
        }
    }
    return brand;
}

mrString processorCount() {
    const int count = mrGetNumOfProcessors();
    return count > 1 ? mrText(count) + "x" : "";
}

mrString frequency() {
    const int mhz = mrCpuTicker::getFreq();
    return mhz >= 1000 ? mrText(mhz / 1000.0) + " GHz" : mrText(mhz) + " MHz";
}

mrString cache() {
    const int size = mrGetMaxCacheSizeB();
    return size != 0 ? mrString("Max cache size ") + mrText(size / 1024) + " K" : "";
}

}  // namespace

mrReportTitle::mrReportTitle(const mrTestList& tests) {
    const auto addPair = [this](const char* name, const mrString& value) {
        append(name);
        append(value);
    };
    addPair("CPU", processorName() + ", " + processorCount() + frequency() + ", " + cache());
    addPair("OS", os.text());
    addPair("Computer", host.text());
    if (g_pLibInfoList != nullptr) {
        for (const mrString& library : *g_pLibInfoList) {
            addPair("Library", library);
        }
    }
    addPair("Start", mrDate::text(tests.m_date.startTime()));
}

mrOStream& operator<<(mrOStream& stream, const mrReportTitle& report) {
    constexpr int right = mrReportFormat::RightEdge;
    mrReportFormat format(3, {1, 11, 13, right, right, right});
    mrString start;
    stream << MSG_ERR << format.firstLine();
    mrForEachPair(report, [&](const mrString& name, const mrString& value) {
        if (name == "Start") {
            start = value;
        } else {
            stream << format.getLine(name, ":", value);
        }
    });
    stream << format.getLine("Test", ":", "Timing") << format.getLine("", "", "", start) << format.lastLine();
    return stream << MSG_END_FLUSH;
}

mrUStream& operator<<(mrUStream& stream, const mrReportTitle& report) {
    mrPairsToTable(stream, report);
    return stream;
}

mrCStream& operator<<(mrCStream& stream, const mrReportTitle& report) {
    mrPairsToTable(stream, report);
    return stream;
}
