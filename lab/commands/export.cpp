/// metrig-lab export: a kept comparison for other programs.

#include <fmt/core.h>

#include <cstdio>
#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "compare/fleetreport.h"
#include "compare/storedreport.h"
#include "show/json.h"
#include "store/merged.h"

namespace lab {

namespace {

struct Options {
    std::string store;
    bool json = false;
};

int run(const Options& options) {
    if (isMerged(options.store)) {
        fmt::print("{}", fleetJson(fleetReportOf(options.store), false));
    } else {
        Store store = Store::open(options.store, false);
        const Report report = reportOf(store);
        fmt::print("{}", json(report, exitStatus(report, false)));
    }
    return std::fflush(stdout) == 0 ? 0 : complain("can't write the document", exitUse);
}

}  // namespace

void addExport(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("export", "Hands a comparison to other programs");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "the kept comparison, or a merged store")->required();
    command.add_flag("--json", options->json, "as one JSON document")->required();
    onCommand(command, line, Keys::none,
              [options] { return guarded(options->store, [&] { return run(*options); }); });
}

}  // namespace lab
