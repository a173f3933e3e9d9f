/// metrig-lab resume: goes on where a comparison was interrupted.

#include <memory>

#include "commands/commands.h"
#include "commands/comparing.h"
#include "compare/settings.h"

namespace lab {

namespace {

struct Options {
    std::string store;
    Showing showing;
    double moreSeconds = 0.0;
};

}  // namespace

void addResume(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("resume", "Goes on with a comparison that was interrupted");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "the kept comparison")->required();
    addParsed(command, "--time", options->moreSeconds, "longest time from now on: 90s, 10m (what was left)",
              parseSeconds);
    addShowing(command, options->showing);
    onCommand(command, line, Keys::none, [options] {
        return runComparison(options->store, options->showing, options->moreSeconds,
                             [&](const Watcher&) { return Store::open(options->store, true); });
    });
}

}  // namespace lab
