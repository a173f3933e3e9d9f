#include "commands/commands.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

#include "commands/progress.h"
#include "compare/comparison.h"
#include "compare/storedreport.h"
#include "show/json.h"
#include "show/table.h"

namespace lab {

namespace {

int complain(const std::string& text, ExitStatus status) {
    fmt::print(stderr, "metrig-lab: {}\n", text);
    return status;
}

/// Runs what may end in one of the known ways. `store` is what can be resumed then, if anything.
int guarded(const std::string& store, const std::function<int()>& work) {
    try {
        return work();
    } catch (const Interrupted&) {
        return complain(
            store.empty() ? "interrupted" : "interrupted; \"metrig-lab resume " + store + "\" goes on",
            exitInterrupted);
    } catch (const NotComparable& reason) {
        return complain(std::string("not comparable: ") + reason.what(), exitNotComparable);
    } catch (const std::exception& reason) {
        return complain(reason.what(), exitUse);
    }
}

int showReport(const Report& report, const Showing& showing) {
    TableStyle style;
    style.points = showing.points;
    style.colours = coloursWanted(isatty(STDOUT_FILENO) != 0, std::getenv("NO_COLOR"));
    fmt::print("{}", table(report, style));
    std::fflush(stdout);
    return exitStatus(report, showing.failOnUnsure);
}

/// Has the store of a comparison made, runs what is missing and shows all.
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

}  // namespace

int compareCommand(const Settings& settings, const std::string& path, const Showing& showing) {
    return runComparison(path, showing, 0.0,
                         [&](const Watcher& watcher) { return beginComparison(settings, path, watcher); });
}

int resumeCommand(const std::string& path, const Showing& showing, double moreSeconds) {
    return runComparison(path, showing, moreSeconds, [&](const Watcher&) { return Store::open(path, true); });
}

int showCommand(const std::string& path, const Showing& showing) {
    return guarded(path, [&] {
        Store store = Store::open(path, false);
        return showReport(reportOf(store), showing);
    });
}

int exportCommand(const std::string& path, const Showing& showing) {
    return guarded(path, [&] {
        Store store = Store::open(path, false);
        const Report report = reportOf(store);
        const ExitStatus status = exitStatus(report, showing.failOnUnsure);
        fmt::print("{}", json(report, status));
        return std::fflush(stdout) == 0 ? 0 : complain("can't write the document", exitUse);
    });
}

}  // namespace lab
