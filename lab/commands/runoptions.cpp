#include "commands/runoptions.h"

#include <fmt/core.h>

namespace lab {

namespace {

void addTurns(CLI::App& command, TurnShape& shape) {
    command.add_option("--epochs", shape.epochs, "turns at a point, by each process")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    addParsed(command, "--turn", shape.microseconds,
              fmt::format("length of a turn, about ({:g}us)", shape.microseconds),
              [](const std::string& text) { return parseSeconds(text) * 1e6; });
    command.add_option("--blocks", shape.blocks, "blocks of a turn")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
}

}  // namespace

void addRunOptions(CLI::App& command, RunSettings& settings, bool& noWait) {
    addParsed(command, "--time", settings.seconds, "longest time: 90s, 10m (10m)", parseSeconds);
    addTurns(command, settings.shape);
    addParsed(command, "--patience", settings.patience, "longest wait for an answer of an instrument (10s)",
              parseSeconds);
    command.add_option("--core", settings.core, "processor to run on (the quietest)")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--seed", settings.seed, "of all that is random (random)");
    command.add_flag("--no-wait", noWait, "does not wait for a quiet machine");
    command
        .add_option("--instrument", settings.instrument,
                    "program whose suites call the shared objects (metrig, in their width)")
        ->check(CLI::ExistingFile);
}

}  // namespace lab
