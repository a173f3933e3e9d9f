/// metrig-lab show: the table of a kept comparison.

#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/showing.h"
#include "compare/storedreport.h"

namespace lab {

namespace {

struct Options {
    std::string store;
    Showing showing;
};

}  // namespace

void addShow(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("show", "Shows a comparison, finished or not");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "the kept comparison")->required();
    addShowing(command, options->showing);
    onCommand(command, line, Keys::none, [options] {
        return guarded(options->store, [&] {
            Store store = Store::open(options->store, false);
            return showReport(reportOf(store), options->showing);
        });
    });
}

}  // namespace lab
