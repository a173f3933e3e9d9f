/// metrig-lab: which functions a change made slower, and what those of a build take, by instruments that take
/// turns.

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

#include "commands/commands.h"
#include "machine/version.h"
#include "show/report.h"

namespace {

int runCommandLine(int argc, char** argv) {
    char** const end = argv + argc;
    char** const ours = std::find(argv + std::min(argc, 1), end, std::string("--"));
    lab::CommandLine line;
    line.keys.assign(ours == end ? end : ours + 1, end);

    CLI::App app("Compares builds of a library, and measures one, by instruments that take turns.",
                 "metrig-lab");
    app.set_version_flag("--version", fmt::format("metrig-lab {}", lab::labVersion()));
    app.require_subcommand(1);
    app.footer(lab::statusHelp);
    for (const auto add :
         {lab::addCompare, lab::addMeasure, lab::addResume, lab::addShow, lab::addExport, lab::addPage,
          lab::addHistory, lab::addFleet, lab::addMerge, lab::addRun, lab::addCheck}) {
        add(app, line);
    }
    try {
        app.parse(static_cast<int>(ours - argv), argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        return status == 0 ? 0 : lab::exitUse;
    }
    return line.chosen();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return runCommandLine(argc, argv);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "metrig-lab: %s\n", failure.what());
    }
    return lab::exitUse;
}
