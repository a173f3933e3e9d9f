/// metrig-lab: which functions a change made slower, by instruments that take turns.

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "machine/version.h"
#include "show/report.h"

namespace {

constexpr const char* defaultStore = "metrig-lab.db";

constexpr const char* statuses =
    "Exit status: 0 nothing slower, 1 something slower, 2 wrong use or a file, 3 could not tell (--fail-on "
    "unsure),\n"
    "4 not comparable, 5 the new side crashes where the old does not, 130 interrupted: resume goes on.";

/// What the command line says, as it stands there.
struct CommandLine {
    lab::Settings settings;
    lab::Showing showing;
    std::string store = defaultStore;
    std::vector<std::string> oldKeys;
    std::vector<std::string> newKeys;
    std::string failOn;
    std::string margin;
    std::string time;
    std::string pairs;
    std::string patience;
    std::string turn;
    bool noWait = false;
    bool json = false;
};

template <class Parse>
std::function<std::string(const std::string&)> checkedBy(Parse parse) {
    return [parse](const std::string& text) -> std::string {
        try {
            parse(text);
            return "";
        } catch (const std::exception& reason) {
            return reason.what();
        }
    };
}

void addShowing(CLI::App& command, CommandLine& line) {
    command.add_flag("--points", line.showing.points, "a line a point, not a function");
    command.add_option("--fail-on", line.failOn, "\"unsure\": status 3 where it could not tell")
        ->check(CLI::IsMember({"unsure"}));
}

void addCompare(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("compare", "Which functions became slower or faster");
    lab::Settings& settings = line.settings;
    command.add_option("OLD", settings.folders[0], "folder with the three shared objects")->required();
    command.add_option("NEW", settings.folders[1], "the same of the new build; or the same folder")
        ->required();
    command.add_option("-o,--output", line.store, "what is measured is kept here")->capture_default_str();
    command.add_option("--old-keys", line.oldKeys,
                       "keys of metrig for the old side alone: --old-keys=-TSSE2");
    command.add_option("--new-keys", line.newKeys, "keys of metrig for the new side alone");
    command.add_option("--margin", line.margin, "differences within it are none (1%)")
        ->check(checkedBy(lab::parseShare));
    command.add_option("--time", line.time, "longest time: 90s, 10m (10m)")
        ->check(checkedBy(lab::parseSeconds));
    command.add_option("--pairs", line.pairs, "fewest and most pairs of processes (8:40)")
        ->check(checkedBy(lab::parsePairs));
    command.add_option("--epochs", settings.shape.epochs, "turns of each side at a point, by each pair")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    command.add_option("--turn", line.turn, "length of a turn, about (50us)")
        ->check(checkedBy(lab::parseSeconds));
    command.add_option("--blocks", settings.shape.blocks, "blocks of a turn")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    command.add_option("--core", settings.core, "processor to run on (the quietest)")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--seed", settings.seed, "of all that is random (random)");
    command.add_option("--patience", line.patience, "longest wait for an answer of an instrument (10s)")
        ->check(checkedBy(lab::parseSeconds));
    command.add_flag("--no-wait", line.noWait, "does not wait for a quiet machine");
    command.add_option("--metrig", settings.instrument, "the instrument (that of the libraries' width)")
        ->check(CLI::ExistingFile);
    addShowing(command, line);
    command.footer(std::string("Keys of metrig for both sides stand after \"--\".\n") + statuses);
}

CLI::App& addOfStore(CLI::App& app, const char* name, const char* description, CommandLine& line) {
    CLI::App& command = *app.add_subcommand(name, description);
    command.add_option("run.db", line.store, "the kept comparison")->required();
    return command;
}

/// Puts the texts into the settings; they are checked already.
void apply(CommandLine& line, const std::vector<std::string>& keys) {
    lab::Settings& settings = line.settings;
    settings.keys = keys;
    const auto each = [](const std::vector<std::string>& texts, std::vector<std::string>& all) {
        for (const std::string& text : texts) {
            const auto some = lab::parseKeys(text);
            all.insert(all.end(), some.begin(), some.end());
        }
    };
    each(line.oldKeys, settings.sideKeys[0]);
    each(line.newKeys, settings.sideKeys[1]);
    const auto ifGiven = [](const std::string& text, auto&& use) {
        if (!text.empty()) {
            use(text);
        }
    };
    ifGiven(line.margin, [&](const std::string& text) { settings.margin = lab::parseShare(text); });
    ifGiven(line.time, [&](const std::string& text) { settings.seconds = lab::parseSeconds(text); });
    ifGiven(line.patience, [&](const std::string& text) { settings.patience = lab::parseSeconds(text); });
    ifGiven(line.turn,
            [&](const std::string& text) { settings.shape.microseconds = lab::parseSeconds(text) * 1e6; });
    ifGiven(line.pairs, [&](const std::string& text) {
        const auto [fewest, most] = lab::parsePairs(text);
        settings.fewestPairs = fewest;
        settings.mostPairs = most;
    });
    settings.wait = !line.noWait;
    line.showing.failOnUnsure = !line.failOn.empty();
}

int run(CLI::App& app, CommandLine& line, const std::vector<std::string>& keys) {
    apply(line, keys);
    if (app.got_subcommand("compare")) {
        if (app.get_subcommand("compare")->count("--seed") == 0) {
            line.settings.seed = std::random_device()();
        }
        return lab::compareCommand(line.settings, line.store, line.showing);
    }
    if (!keys.empty()) {
        fmt::print(stderr, "metrig-lab: keys of metrig are for \"compare\" alone\n");
        return lab::exitUse;
    }
    if (app.got_subcommand("resume")) {
        return lab::resumeCommand(line.store, line.showing, line.time.empty() ? 0.0 : line.settings.seconds);
    }
    if (app.got_subcommand("show")) {
        return lab::showCommand(line.store, line.showing);
    }
    return lab::exportCommand(line.store, line.showing);
}

int runCommandLine(int argc, char** argv) {
    // what stands after the first "--" is metrig's, whatever it looks like
    char** const end = argv + argc;
    char** const ours = std::find(argv + std::min(argc, 1), end, std::string("--"));
    const std::vector<std::string> keys(ours == end ? end : ours + 1, end);

    CommandLine line;
    CLI::App app("Compares two builds of a library by instruments that take turns.", "metrig-lab");
    app.set_version_flag("--version", fmt::format("metrig-lab {}", lab::labVersion()));
    app.require_subcommand(1);
    app.footer(statuses);
    addCompare(app, line);
    CLI::App& resuming = addOfStore(app, "resume", "Goes on with a comparison that was interrupted", line);
    resuming.add_option("--time", line.time, "longest time from now on: 90s, 10m (what was left)")
        ->check(checkedBy(lab::parseSeconds));
    addShowing(resuming, line);
    addShowing(addOfStore(app, "show", "Shows a comparison, finished or not", line), line);
    CLI::App& exporting = addOfStore(app, "export", "Hands a comparison to other programs", line);
    exporting.add_flag("--json", line.json, "as one JSON document")->required();
    try {
        app.parse(static_cast<int>(ours - argv), argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        return status == 0 ? 0 : lab::exitUse;
    }
    return run(app, line, keys);
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
