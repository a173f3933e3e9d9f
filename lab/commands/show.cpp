/// metrig-lab show: the table of a kept comparison.

#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/showing.h"

namespace lab {

namespace {

struct Options {
    std::string store;
    std::string kind;
    Showing showing;
};

}  // namespace

void addShow(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("show", "Shows a comparison, finished or not");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "the kept comparison, or a merged store")->required();
    command.add_option("--kind", options->kind, "this kind alone, of a merged store");
    addShowing(command, options->showing);
    onCommand(command, line, Keys::none, [options] {
        return guarded(options->store,
                       [&] { return showStore(options->store, options->showing, options->kind); });
    });
}

}  // namespace lab
