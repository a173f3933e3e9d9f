/// metrig-lab merge: sessions of one comparison in one store.

#include <fmt/core.h>

#include <algorithm>
#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "store/merged.h"

namespace lab {

namespace {

struct Options {
    std::string output;
    std::vector<std::string> stores;
    bool skipOthers = false;
};

int run(Options& options) {
    if (options.skipOthers) {
        std::erase_if(options.stores, [](const std::string& store) {
            const bool isOther = !isMerged(store) && !Store::isOne(store);
            if (isOther) {
                fmt::print(stderr, "metrig-lab: {}: no store, left out\n", store);
            }
            return isOther;
        });
        if (options.stores.empty()) {
            return complain("there is no store to merge", exitUse);
        }
    }
    const MergeCount count = mergeStores(options.output, options.stores);
    fmt::print("{}: {} new session{}, {} new visits of points\n", options.output, count.sessions,
               count.sessions == 1 ? "" : "s", count.visits);
    return exitNothingSlower;
}

}  // namespace

void addMerge(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("merge", "Joins sessions of one comparison, of several machines");
    const auto options = std::make_shared<Options>();
    command.add_option("OUT.db", options->output, "gets what it does not hold; is made if it is not there")
        ->required();
    command.add_option("STORE", options->stores, "kept comparisons of the same libraries, or merged stores")
        ->required();
    command.add_flag("--skip-others", options->skipOthers, "leaves out what is no store, with a word");
    onCommand(command, line, Keys::none, [options] { return guarded("", [&] { return run(*options); }); });
}

}  // namespace lab
