#include "commands/measuring.h"

#include <fmt/core.h>

#include <cstdio>

#include "commands/guard.h"
#include "commands/keptrun.h"
#include "commands/progress.h"
#include "measure/storedmeasurement.h"

namespace lab {

int showMeasurement(Store& store, const Showing& showing, const std::vector<std::string>& said) {
    if (showing.failOnUnsure || !showing.style.only.empty()) {
        return complain("a measurement of one build has no verdicts", exitUse);
    }
    MeasurementReport report = measurementOf(store);
    leaveOut(said, report.warnings);
    fmt::print("{}", table(report, showing.style.points));
    return std::fflush(stdout) == 0 ? 0 : complain("can't write the table", exitUse);
}

int runMeasurement(const std::string& path, const Showing& showing, double moreSeconds,
                   const std::function<Store(const Watcher&)>& makeStore) {
    KeptRun run;
    run.make = makeStore;
    run.go = [=](Store& store, const Watcher& watcher) { continueMeasurement(store, watcher, moreSeconds); };
    run.progress = measureProgressText;
    run.show = [&](Store& store, const std::vector<std::string>& said) {
        return showMeasurement(store, showing, said);
    };
    return runKept(path, run);
}

}  // namespace lab
