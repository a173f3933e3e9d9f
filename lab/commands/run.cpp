/// metrig-lab run: a whole run of the instrument, whatever the library does.

#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/surviving.h"

namespace lab {

void addRun(CLI::App& app, CommandLine& line) {
    CLI::App& command =
        *app.add_subcommand("run", "Runs metrig on behind each function that its process dies or hangs in");
    const auto options = std::make_shared<SurvivalOptions>();
    addSurvival(command, *options);
    command.footer(
        "Keys of metrig stand after \"--\". Console, tables and reports are those of one run; a function "
        "that was lost "
        "has its\nrow, EXCPTFAIL, and the reason on the console.\n"
        "Exit status: that of metrig, so 0 for a run that came to its end whatever failed in it (\"check\" "
        "tells); 2 "
        "wrong use;\n128 and the number of the signal that ended a run before its first function, or that it "
        "was asked "
        "to end by twice.");
    onCommand(command, line, Keys::handedOn, [options, &line] {
        return guarded("", [&] {
            const Requests requests;
            return survive(startOf(*options, line), options->patience, sayBeside).status;
        });
    });
}

}  // namespace lab
