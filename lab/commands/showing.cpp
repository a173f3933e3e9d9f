#include "commands/showing.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace lab {

void addShowing(CLI::App& command, Showing& showing) {
    command.add_flag("--points", showing.style.points, "a line a point, not a function");
    command
        .add_option_function<std::string>(
            "--fail-on", [&showing](const std::string&) { showing.failOnUnsure = true; },
            "\"unsure\": status 3 where it could not tell")
        ->check(CLI::IsMember({"unsure"}));
}

int showReport(const Report& report, const Showing& showing) {
    TableStyle style = showing.style;
    style.colours = coloursWanted(isatty(STDOUT_FILENO) != 0, std::getenv("NO_COLOR"));
    fmt::print("{}", table(report, style));
    std::fflush(stdout);
    return exitStatus(report, showing.failOnUnsure);
}

}  // namespace lab
