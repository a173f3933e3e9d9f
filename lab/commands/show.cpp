/// metrig-lab show: a kept comparison or measurement, or a table that metrig wrote, for people.

#include <fmt/core.h>

#include <cstdio>
#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/measuring.h"
#include "commands/showing.h"
#include "commands/source.h"
#include "show/results.h"
#include "store/merged.h"

namespace lab {

namespace {

struct Options {
    Source source;
    std::string kind;
    Showing showing;
};

int runOfStore(const Options& options) {
    const std::string& file = options.source.file;
    if (!isMerged(file)) {
        if (!options.kind.empty()) {
            return complain(file + ": no merged store, so it has no kinds", exitUse);
        }
        if (Store::kindOf(file) == StoreKind::measurement) {
            Store store = Store::open(file, false, StoreKind::measurement);
            return showMeasurement(store, options.showing);
        }
    }
    return showStore(file, options.showing, options.kind);
}

int run(const Options& options) {
    const Showing& showing = options.showing;
    if (isStore(options.source.file)) {
        return runOfStore(options);
    }
    if (!options.kind.empty()) {
        return complain("a table of results has no kinds", exitUse);
    }
    if (showing.failOnUnsure || !showing.style.only.empty()) {
        return complain("a table of results has no verdicts", exitUse);
    }
    fmt::print("{}", table(tableOf(options.source), showing.style.points));
    return std::fflush(stdout) == 0 ? 0 : complain("can't write the table", exitUse);
}

}  // namespace

void addShow(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand(
        "show", "Shows a comparison or a measurement, finished or not, or a table of metrig");
    const auto options = std::make_shared<Options>();
    addSource(command, options->source);
    command.add_option("--kind", options->kind, "this kind alone, of a merged store");
    addShowing(command, options->showing);
    onCommand(command, line, Keys::none,
              [options] { return guarded(options->source.file, [&] { return run(*options); }); });
}

}  // namespace lab
