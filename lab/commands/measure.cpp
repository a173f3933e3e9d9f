/// metrig-lab measure: the figures of one build.

#include <memory>
#include <random>

#include "commands/commands.h"
#include "commands/measuring.h"
#include "commands/runoptions.h"

namespace lab {

namespace {

constexpr const char* DefaultStore = "metrig-measure.db";

struct Options {
    MeasureSettings settings;
    Showing showing;
    std::string store = DefaultStore;
    bool noWait = false;
};

void addBuild(CLI::App& command, Options& options) {
    command.add_option("LIB", options.settings.folder, "folder with the three shared objects")->required();
    command.add_option("-o,--output", options.store, "what is measured is kept here")->capture_default_str();
    command
        .add_option("--against", options.settings.against,
                    "an earlier measurement on this machine, to stand beside this one")
        ->check(CLI::ExistingFile);
    command.add_flag("--points", options.showing.style.points, "a line a point, not a function");
}

}  // namespace

void addMeasure(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("measure", "The figures of one build, and what they are worth");
    const auto options = std::make_shared<Options>();
    MeasureSettings& settings = options->settings;
    settings.seed = std::random_device()();
    addBuild(command, *options);
    command.add_option("--processes", settings.processes, "one after the other, each on a fresh copy")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    addParsed(command, "--over", settings.over, "spreads their starts over so long: 30s, 10m (no pause)",
              parseSeconds);
    addRunOptions(command, settings, options->noWait);
    command.footer(
        "Keys of metrig stand after \"--\".\n"
        "Exit status: 0 measured, 2 wrong use or a file, 4 the earlier measurement is of another machine,\n"
        "130 interrupted: resume goes on.");
    onCommand(command, line, Keys::handedOn, [options, &line] {
        options->settings.keys = line.keys;
        options->settings.wait = !options->noWait;
        return runMeasurement(options->store, options->showing, 0.0, [&](const Watcher& watcher) {
            return beginMeasurement(options->settings, options->store, watcher);
        });
    });
}

}  // namespace lab
