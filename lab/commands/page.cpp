/// metrig-lab page: a kept comparison as a page for a browser.

#include <fmt/core.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "commands/commands.h"
#include "commands/guard.h"
#include "compare/fleetreport.h"
#include "compare/storedcourse.h"
#include "compare/storedreport.h"
#include "machine/wholefile.h"
#include "page/comparison.h"
#include "page/fleet.h"
#include "store/merged.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string store;
    std::string output;  ///< empty: beside the store, by its name
};

std::string pageOf(const std::string& path, const std::string& title) {
    if (isMerged(path)) {
        return fleetPage(title, fleetReportOf(path));
    }
    Store store = Store::open(path, false);
    const Report report = reportOf(store);
    return comparisonPage(title, report, courseOf(store, report));
}

int run(const Options& options) {
    const std::string output =
        options.output.empty() ? fs::path(options.store).replace_extension(".html").string() : options.output;
    if (fs::exists(output) && fs::equivalent(output, options.store)) {
        throw std::runtime_error(output + ": is the store itself");
    }
    writeWhole(output, pageOf(options.store, fs::path(options.store).stem().string()));
    fmt::print("{}\n", output);
    return std::fflush(stdout) == 0 ? 0 : complain("can't write the name of the page", exitUse);
}

}  // namespace

void addPage(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("page", "Writes a comparison as a page for a browser, one file");
    const auto options = std::make_shared<Options>();
    command.add_option("run.db", options->store, "the kept comparison, finished or not; or a merged store")
        ->required();
    command.add_option("-o,--output", options->output, "the page (the store's name with .html)");
    onCommand(command, line, Keys::none,
              [options] { return guarded(options->store, [&] { return run(*options); }); });
}

}  // namespace lab
