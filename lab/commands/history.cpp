/// metrig-lab history: figures over many builds, kept in one store.

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "commands/commands.h"
#include "commands/guard.h"
#include "history/historystore.h"
#include "history/historytable.h"
#include "history/page.h"
#include "machine/wholefile.h"
#include "show/table.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

struct Adding {
    std::string history;
    std::string run;
    JoiningWords words;
};

struct Viewing {
    std::string history;
    std::string output;  ///< of the page; empty: beside the history, by its name
    Choice choice;
    std::string failOn;
    bool points = false;
    bool json = false;
    bool good = false;
    bool figures = false;
};

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    return fmt::format("{:04}-{:02}-{:02}", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

std::string parseLabel(const std::string& text) {
    constexpr std::size_t most = 100;
    const auto steers = [](unsigned char c) { return c < ' ' || c == 0x7F; };
    if (text.empty() || text.size() > most || std::any_of(text.begin(), text.end(), steers)) {
        throw std::invalid_argument("a label has 1 to 100 bytes and no control characters");
    }
    return text;
}

std::string parseDay(const std::string& text) {
    if (!isDay(text)) {
        throw std::invalid_argument("\"" + text + "\" is no day: say 2026-11-23");
    }
    return text;
}

int add(const Adding& adding) {
    const StoreKind kind = Store::kindOf(adding.run);
    Store store = Store::open(adding.run, false, kind);
    Joining joining;
    if (kind == StoreKind::comparison) {
        joining = addToHistory(adding.history, joinedFrom(store), adding.words);
    } else if (adding.words.oldLabel.empty()) {
        joining = addToHistory(adding.history, joinedMeasurementFrom(store), adding.words);
    } else {
        return complain("--old-label: a measurement has one build", exitUse);
    }
    fmt::print("{}: {} {}{}\n", adding.history, printable(joining.newer),
               joining.older.empty() ? "measured" : "against " + printable(joining.older),
               joining.isNew ? "" : ", which was there already");
    return exitNothingSlower;
}

int statusOf(const Overview& overview, const std::string& failOn) {
    return !failOn.empty() && hasChange(overview, failOn == "slower") ? exitSlower : exitNothingSlower;
}

int show(const Viewing& viewing) {
    const History history = readHistory(viewing.history);
    if (viewing.figures) {
        fmt::print("{}", figuresTable(history, viewing.choice));
        return std::fflush(stdout) == 0 ? exitNothingSlower : complain("can't write the history", exitUse);
    }
    const Overview overview = overviewOf(history, viewing.choice);
    if (viewing.good) {
        fmt::print("{}\n", history.builds[static_cast<std::size_t>(overview.good)].label);
    } else if (viewing.json) {
        fmt::print("{}", historyJson(overview));
    } else {
        const bool points = viewing.points || !viewing.choice.function.empty();
        fmt::print("{}", historyTable(overview, points,
                                      coloursWanted(isatty(STDOUT_FILENO) != 0, std::getenv("NO_COLOR"))));
    }
    return std::fflush(stdout) == 0 ? statusOf(overview, viewing.failOn)
                                    : complain("can't write the history", exitUse);
}

int page(const Viewing& viewing) {
    const History history = readHistory(viewing.history);
    const Overview overview = overviewOf(history, viewing.choice);
    const std::string output = viewing.output.empty()
                                   ? fs::path(viewing.history).replace_extension(".html").string()
                                   : viewing.output;
    if (fs::exists(output) && fs::equivalent(output, viewing.history)) {
        throw std::runtime_error(output + ": is the history itself");
    }
    writeWhole(output, historyPage(fs::path(viewing.history).stem().string(), overview));
    fmt::print("{}\n", output);
    return std::fflush(stdout) == 0 ? exitNothingSlower
                                    : complain("can't write the name of the page", exitUse);
}

void addHistoryAdd(CLI::App& history, CommandLine& line) {
    CLI::App& command = *history.add_subcommand(
        "add", "Adds a comparison or a measurement; one that is there is not added twice");
    const auto adding = std::make_shared<Adding>();
    adding->words.day = today();
    command.add_option("history.db", adding->history, "the history; made if it is not there")->required();
    command.add_option("run.db", adding->run, "a kept comparison or measurement that is finished")
        ->required();
    addParsed(command, "--label", adding->words.label, "name of the new build, or of the one measured",
              parseLabel);
    addParsed(command, "--old-label", adding->words.oldLabel, "name of the old one, if it has none yet",
              parseLabel);
    addParsed(command, "--revision", adding->words.revision, "of the new build's sources", parseLabel);
    addParsed(command, "--day", adding->words.day, "on which it was built (today)", parseDay);
    onCommand(command, line, Keys::none, [adding] { return guarded("", [&] { return add(*adding); }); });
}

void addChoice(CLI::App& command, Viewing& viewing) {
    command.add_option("history.db", viewing.history, "the history")->required();
    command.add_option("--since", viewing.choice.since,
                       "changes after a build, or from a day like 2026-11-23 on");
    command.add_option("--function", viewing.choice.function, "the points of this function alone");
    command
        .add_option("--method", viewing.choice.method, "number of the method (that of the last comparison)")
        ->check(CLI::PositiveNumber);
}

void addHistoryShow(CLI::App& history, CommandLine& line) {
    CLI::App& command = *history.add_subcommand("show", "Levels now, and the builds at which they changed");
    const auto viewing = std::make_shared<Viewing>();
    addChoice(command, *viewing);
    command.add_flag("--points", viewing->points, "a line a point, not a function");
    command.add_flag("--json", viewing->json, "as one JSON document");
    command.add_flag("--good", viewing->good, "only the label of the build to measure the next one against");
    command.add_option("--fail-on", viewing->failOn, "status 1 where a change (to slower) is shown")
        ->check(CLI::IsMember({"slower", "change"}));
    CLI::Option* figures =
        command.add_flag("--figures", viewing->figures, "what measurements found, build by build");
    for (const char* const other : {"--points", "--json", "--good", "--method", "--fail-on"}) {
        figures->excludes(command.get_option(other));
    }
    onCommand(command, line, Keys::none, [viewing] { return guarded("", [&] { return show(*viewing); }); });
}

void addHistoryPage(CLI::App& history, CommandLine& line) {
    CLI::App& command = *history.add_subcommand("page", "Writes it as a page for a browser, one file");
    const auto viewing = std::make_shared<Viewing>();
    addChoice(command, *viewing);
    command.add_option("-o,--output", viewing->output, "the page (the history's name with .html)");
    onCommand(command, line, Keys::none, [viewing] { return guarded("", [&] { return page(*viewing); }); });
}

}  // namespace

void addHistory(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("history", "Figures over many builds, and where they changed");
    command.require_subcommand(1);
    addHistoryAdd(command, line);
    addHistoryShow(command, line);
    addHistoryPage(command, line);
}

}  // namespace lab
