#include "commands/comparing.h"

#include "commands/keptrun.h"
#include "commands/progress.h"
#include "compare/storedreport.h"

namespace lab {

int runComparison(const std::string& path, const Showing& showing, double moreSeconds,
                  const std::function<Store(const Watcher&)>& makeStore) {
    KeptRun run;
    run.make = makeStore;
    run.go = [=](Store& store, const Watcher& watcher) { continueComparison(store, watcher, moreSeconds); };
    run.progress = progressText;
    run.show = [&](Store& store, const std::vector<std::string>& said) {
        Report report = reportOf(store);
        leaveOut(said, report.warnings);
        return showReport(report, showing);
    };
    return runKept(path, run);
}

}  // namespace lab
