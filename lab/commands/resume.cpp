/// metrig-lab resume: goes on where a comparison or a measurement was interrupted.

#include <memory>

#include "commands/commands.h"
#include "commands/comparing.h"
#include "commands/guard.h"
#include "commands/measuring.h"
#include "compare/settings.h"

namespace lab {

namespace {

struct Options {
    std::string store;
    Showing showing;
    double moreSeconds = 0.0;
};

int run(const Options& options) {
    const StoreKind kind = Store::kindOf(options.store);
    const auto open = [&](const Watcher&) { return Store::open(options.store, true, kind); };
    return (kind == StoreKind::measurement ? runMeasurement : runComparison)(options.store, options.showing,
                                                                             options.moreSeconds, open);
}

}  // namespace

void addResume(CLI::App& app, CommandLine& line) {
    CLI::App& command =
        *app.add_subcommand("resume", "Goes on with a comparison or a measurement that was interrupted");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "what was kept of it")->required();
    addParsed(command, "--time", options->moreSeconds, "longest time from now on: 90s, 10m (what was left)",
              parseSeconds);
    addShowing(command, options->showing);
    onCommand(command, line, Keys::none, [options] { return guarded("", [&] { return run(*options); }); });
}

}  // namespace lab
