/// metrig-lab check: a run for scripts, which fail by exit statuses.

#include <fmt/core.h>

#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/surviving.h"

namespace lab {

namespace {

constexpr ExitStatus exitNotAllOk = exitSlower;  // 1, as everywhere: the answer is not the one hoped for

int refuse(const std::vector<std::string>& complaints) {
    for (const std::string& complaint : complaints) {
        sayBeside(complaint);
    }
    return exitUse;
}

/// What the summary of the run is worth.
int judge(const SurvivedRun& run) {
    if (run.stopped) {
        return complain("interrupted", exitInterrupted);
    }
    std::size_t count = 0;
    std::string others;
    for (const JournalContent::Test& test : run.content.tests) {
        count += test.leftOut ? 0 : 1;
        if (!test.leftOut && test.word != "OK") {
            others += fmt::format("{}{} {}", others.empty() ? "" : ", ", test.function, test.word);
        }
    }
    if (!run.content.ended || count == 0) {
        return complain("no test was run to its end", exitUse);
    }
    return others.empty() ? 0 : complain("not OK: " + others, exitNotAllOk);
}

int run(const SurvivalOptions& options, const CommandLine& line) {
    const Requests requests;
    SupervisedStart start = startOf(options, line);
    start.batch = true;
    const std::vector<std::string> complaints = complaintsOf(start, options.patience);
    return complaints.empty() ? judge(survive(start, options.patience, sayBeside)) : refuse(complaints);
}

}  // namespace

void addCheck(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand("check", "The same as run, with an exit status for scripts");
    const auto options = std::make_shared<SurvivalOptions>();
    addSurvival(command, *options);
    command.footer(
        "Keys of metrig stand after \"--\". Nothing is asked: questions take their defaults.\n"
        "Exit status: 0 all tests are OK, 1 the summary holds another word, 2 wrong use: a key that is "
        "ignored, a name "
        "that no\ntest has, a parameter or value that nobody takes, a missing ini file, no test at all; "
        "nothing was "
        "measured or written\nthen; 130 interrupted.");
    onCommand(command, line, Keys::handedOn,
              [options, &line] { return guarded("", [&] { return run(*options, line); }); });
}

}  // namespace lab
