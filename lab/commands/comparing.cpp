#include "commands/comparing.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "commands/guard.h"
#include "commands/progress.h"
#include "compare/storedreport.h"

namespace lab {

int runComparison(const std::string& path, const Showing& showing, double moreSeconds,
                  const std::function<Store(const Watcher&)>& makeStore) {
    noteInterrupts();
    std::string begun;
    return guarded(begun, [&] {
        ProgressLine line(stderr, isatty(STDERR_FILENO) != 0);
        std::vector<std::string> said;
        const auto warn = [&](const std::string& text) {
            line.say("warning: " + text);
            said.push_back(text);
        };
        const Watcher watcher{[&](const Progress& progress) { line.show(progress); }, warn,
                              [&](const std::string& text) { line.say(text); }};
        Store store = makeStore(watcher);
        begun = path;
        continueComparison(store, watcher, moreSeconds);
        line.clear();
        Report report = reportOf(store);
        if (isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
            // who reads the report has just read these
            std::erase_if(report.warnings, [&](const std::string& text) {
                return std::find(said.begin(), said.end(), text) != said.end();
            });
        }
        return showReport(report, showing);
    });
}

}  // namespace lab
