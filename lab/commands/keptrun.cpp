#include "commands/keptrun.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "commands/guard.h"
#include "commands/progress.h"
#include "turns/child.h"

namespace lab {

int runKept(const std::string& path, const KeptRun& run) {
    noteInterrupts();
    std::string begun;
    return guarded(begun, [&] {
        ProgressLine line(stderr, isatty(STDERR_FILENO) != 0);
        std::vector<std::string> said;
        const auto warn = [&](const std::string& text) {
            line.say("warning: " + text);
            said.push_back(text);
        };
        const Watcher watcher{[&](const Progress& progress) { line.show(run.progress(progress)); }, warn,
                              [&](const std::string& text) { line.say(text); }};
        Store store = run.make(watcher);
        begun = path;
        run.go(store, watcher);
        line.clear();
        if (isatty(STDERR_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) {
            said.clear();  // they went elsewhere
        }
        return run.show(store, said);
    });
}

void leaveOut(const std::vector<std::string>& said, std::vector<std::string>& warnings) {
    std::erase_if(warnings, [&](const std::string& text) {
        return std::find(said.begin(), said.end(), text) != said.end();
    });
}

}  // namespace lab
