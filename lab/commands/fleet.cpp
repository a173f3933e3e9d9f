/// metrig-lab fleet: a comparison on many kinds of machines.

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/showing.h"
#include "compare/sides.h"
#include "fleet/hosts.h"
#include "fleet/program.h"
#include "fleet/run.h"
#include "fleet/script.h"
#include "fleet/slurm.h"
#include "store/merged.h"
#include "turns/child.h"

namespace lab {

namespace {

struct Options {
    std::string file;
    std::string output = "metrig-fleet.db";
    std::string label;
    std::string road;
    bool dryRun = false;
    bool detach = false;
    Showing showing;
};

void say(const std::string& text) { fmt::print(stderr, "{}\n", text); }

/// Options of "compare" that a session gets from the file or from this program.
const std::set<std::string> ofTheFleet = {"OLD",      "NEW",    "--output", "--core",   "--instrument",
                                          "--family", "--kind", "--points", "--fail-on"};
/// Those of them that can be said all the same.
const std::set<std::string> alsoSaid = {"OLD", "NEW", "--instrument", "--family"};

/// What stands after the first "--": "compare OLD NEW ...", and keys of metrig after another one.
FleetOrder readOrder(const std::vector<std::string>& words) {
    const auto keys = std::find(words.begin(), words.end(), "--");
    CommandLine line;
    CLI::App app("", "metrig-lab fleet FILE --");
    app.require_subcommand(1);
    addCompare(app, line);
    std::vector<std::string> ours(words.begin(), keys);
    std::reverse(ours.begin(), ours.end());
    app.parse(std::move(ours));

    FleetOrder order;
    const CLI::App& command = *app.get_subcommand("compare");
    for (const CLI::Option* option : command.get_options()) {
        const std::string name = option->get_name();
        if (option->count() == 0) {
            continue;
        }
        if (ofTheFleet.contains(name)) {
            if (!alsoSaid.contains(name)) {
                throw CLI::ValidationError(name, "a session has it from the fleet");
            }
            continue;
        }
        const bool isFlag = option->get_items_expected_max() == 0;
        for (const std::string& value : option->results()) {
            order.options.push_back(isFlag ? name : fmt::format("{}={}", name, value));
        }
    }
    Settings& settings = order.settings;
    settings.folders = {command.get_option("OLD")->as<std::string>(),
                        command.get_option("NEW")->as<std::string>()};
    if (command.count("--instrument") > 0) {
        settings.instrument = command.get_option("--instrument")->as<std::string>();
    }
    if (command.count("--family") > 0) {
        settings.family = parseShare(command.get_option("--family")->as<std::string>());
    }
    settings.keys.assign(keys == words.end() ? keys : keys + 1, words.end());
    return order;
}

int printScripts(const FleetFile& fleet, const FleetRun& run, bool slurm) {
    for (const Kind& kind : fleet.kinds) {
        fmt::print("### {}/{}.sh\n{}\n", run.folder, kind.name,
                   slurm ? arrayScript(fleet, run, kind) : hostScript(run, kind));
    }
    if (slurm) {
        fmt::print("### {}/merge.sh, after all of them (afterany)\n{}", run.folder, mergeScript(fleet, run));
    }
    return std::fflush(stdout) == 0 ? exitNothingSlower : exitUse;
}

int missingKinds(const FleetFile& fleet) {
    const std::vector<std::string> missing = kindsOfNobody(fleet.kinds, clusterNodes());
    for (const std::string& text : missing) {
        complain(text, exitUse);
    }
    return static_cast<int>(missing.size());
}

/// Sessions that came to a store.
int measureByJobs(const FleetFile& fleet, const FleetRun& run, const Options& options) {
    stageRun(run);
    say("run " + run.folder);
    try {
        runJobs(fleet, run, !options.detach, say);
    } catch (const Interrupted&) {
        say("the jobs go on; the same command waits for them again");
        throw;
    }
    if (options.detach) {
        return fleet.sessions();
    }
    std::vector<std::string> stores;
    for (const Kind& kind : fleet.kinds) {
        for (int session = 1; session <= kind.sessions; ++session) {
            const std::string store = run.storeOf(kind, session);
            if (Store::isOne(store)) {
                stores.push_back(store);
            } else {
                say(fmt::format("{}: session {} came to no store, see {}/{}.{}.log", kind.name, session,
                                run.folder, kind.name, session));
            }
        }
    }
    if (!stores.empty()) {
        // a session that a lost node put back may have ended after the job that joins
        mergeStores(run.mergedStore(), stores);
        mergeStores(options.output, {run.mergedStore()});
    }
    return static_cast<int>(stores.size());
}

int run(const Options& options, const std::vector<std::string>& words) {
    const FleetFile fleet = readFleetFile(options.file);
    FleetOrder order;
    try {
        order = readOrder(words);
    } catch (const CLI::ParseError& error) {
        CLI::App app("", "metrig-lab fleet FILE --");
        return app.exit(error) == 0 ? exitNothingSlower : exitUse;
    }
    order.label = options.label;
    const std::array<StoredSide, 2> sides = findSides(order.settings);
    const FleetRun run = planRun(fleet, order, sides);
    const bool slurm = options.road.empty() ? isOnPath("sbatch") : options.road == "slurm";
    if (options.dryRun) {
        return printScripts(fleet, run, slurm);
    }
    if (slurm && missingKinds(fleet) > 0) {
        return complain("nothing was submitted", exitUse);
    }
    checkMergeInto(options.output, sides);
    noteInterrupts();
    const int measured =
        slurm ? measureByJobs(fleet, run, options) : runOnHosts(fleet, run, options.output, say);
    if (options.detach && slurm) {
        say("the same command waits for the jobs and shows what they found");
        return exitNothingSlower;
    }
    if (measured == 0) {
        return complain("no session came to a store", exitUse);
    }
    const int status = showStore(options.output, options.showing, "");
    if (measured < fleet.sessions()) {
        say(fmt::format("{} of {} sessions are missing", fleet.sessions() - measured, fleet.sessions()));
        return status == exitNothingSlower ? exitUnsure : status;
    }
    return status;
}

}  // namespace

void addFleet(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("fleet", "Compares on many kinds of machines, by Slurm or ssh");
    const auto options = std::make_shared<Options>();
    command.add_option("fleet.toml", options->file, "the kinds of machines")->required();
    command.add_option("-o,--output", options->output, "the merged store")->capture_default_str();
    command.add_flag("--dry-run", options->dryRun, "prints the scripts and does nothing");
    command.add_option("--road", options->road, "\"slurm\" or \"ssh\" (slurm where there is sbatch)")
        ->check(CLI::IsMember({"slurm", "ssh"}));
    command.add_flag("--detach", options->detach, "submits the jobs and does not wait for them");
    command.add_option("--label", options->label, "with another one, the same is measured anew");
    addShowing(command, options->showing);
    command.footer("\"compare OLD NEW ...\" stands after \"--\", and keys of metrig after another one.\n" +
                   std::string(statusHelp));
    onCommand(command, line, Keys::handedOn,
              [options, &line] { return guarded("", [&] { return run(*options, line.keys); }); });
}

}  // namespace lab
