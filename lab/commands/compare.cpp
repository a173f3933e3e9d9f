/// metrig-lab compare: which functions became slower or faster.

#include <memory>
#include <random>

#include "commands/commands.h"
#include "commands/comparing.h"
#include "commands/runoptions.h"
#include "compare/settings.h"

namespace lab {

namespace {

constexpr const char* DefaultStore = "metrig-lab.db";

struct Options {
    Settings settings;
    Showing showing;
    std::string store = DefaultStore;
    std::array<std::vector<std::string>, 2> keys;  ///< texts of --old-keys and --new-keys
    bool noWait = false;
};

void addSides(CLI::App& command, Options& options) {
    command
        .add_option("OLD", options.settings.folders[0],
                    "folder with the shared objects of the old build, or a program with suites")
        ->required();
    command
        .add_option("NEW", options.settings.folders[1], "the same of the new build; or the same once more")
        ->required();
    command.add_option("--old-keys", options.keys[0],
                       "keys of metrig for the old side alone: --old-keys=-TSSE2");
    command.add_option("--new-keys", options.keys[1], "keys of metrig for the new side alone");
}

void addEffort(CLI::App& command, Settings& settings) {
    addParsed(command, "--margin", settings.margin, "differences within it are none (1%)", parseShare);
    command
        .add_option_function<std::string>(
            "--pairs",
            [&settings](const std::string& text) {
                const auto [fewest, most] = parsePairs(text);
                settings.fewestPairs = fewest;
                settings.mostPairs = most;
            },
            "fewest and most pairs of processes (10:80)")
        ->check(checkedBy(parsePairs));
}

/// What a session of many has from those that started it.
void addFleetOptions(CLI::App& command, Settings& settings) {
    addParsed(command, "--family", settings.family,
              "chance of a false word anywhere, where nothing differs, at most (1%)", parseShare);
    command.add_option("--kind", settings.kind, "of machine, by which \"merge\" groups (its processor)");
}

int run(Options& options, const CommandLine& line) {
    Settings& settings = options.settings;
    settings.keys = line.keys;
    settings.wait = !options.noWait;
    for (std::size_t side = 0; side < 2; ++side) {
        for (const std::string& text : options.keys[side]) {
            const auto some = parseKeys(text);
            settings.sideKeys[side].insert(settings.sideKeys[side].end(), some.begin(), some.end());
        }
    }
    return runComparison(options.store, options.showing, 0.0, [&](const Watcher& watcher) {
        return beginComparison(settings, options.store, watcher);
    });
}

}  // namespace

void addCompare(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("compare", "Which functions became slower or faster");
    const auto options = std::make_shared<Options>();
    options->settings.seed = std::random_device()();
    addSides(command, *options);
    command.add_option("-o,--output", options->store, "what is measured is kept here")->capture_default_str();
    addEffort(command, options->settings);
    addFleetOptions(command, options->settings);
    addRunOptions(command, options->settings, options->noWait);
    addShowing(command, options->showing);
    command.footer(std::string("Keys of metrig for both sides stand after \"--\".\n") + statusHelp);
    onCommand(command, line, Keys::handedOn, [options, &line] { return run(*options, line); });
}

}  // namespace lab
