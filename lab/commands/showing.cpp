#include "commands/showing.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "commands/guard.h"
#include "compare/fleetreport.h"
#include "compare/storedreport.h"
#include "store/merged.h"

namespace lab {

void addShowing(CLI::App& command, Showing& showing) {
    command.add_flag("--points", showing.style.points, "a line a point, not a function");
    const std::map<std::string, Verdict> verdicts{{"slower", Verdict::slower},
                                                  {"faster", Verdict::faster},
                                                  {"same", Verdict::same},
                                                  {"unsure", Verdict::unsure}};
    command
        .add_option_function<std::vector<std::string>>(
            "--only",
            [&showing, verdicts](const std::vector<std::string>& words) {
                for (const std::string& word : words) {
                    showing.style.only.insert(verdicts.at(word));
                }
            },
            "points of these verdicts alone: slower,faster,same,unsure")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(verdicts));
    command
        .add_option_function<std::string>(
            "--fail-on", [&showing](const std::string&) { showing.failOnUnsure = true; },
            "\"unsure\": status 3 where it could not tell")
        ->check(CLI::IsMember({"unsure"}));
}

namespace {

bool wantsColours() { return coloursWanted(isatty(STDOUT_FILENO) != 0, std::getenv("NO_COLOR")); }

int showFleet(const FleetReport& fleet, const Showing& showing) {
    fmt::print("{}", fleetTable(fleet, showing.style.points, wantsColours()));
    std::fflush(stdout);
    return exitStatus(fleet, showing.failOnUnsure);
}

}  // namespace

int showReport(const Report& report, const Showing& showing) {
    TableStyle style = showing.style;
    style.colours = wantsColours();
    fmt::print("{}", table(report, style));
    std::fflush(stdout);
    return exitStatus(report, showing.failOnUnsure);
}

int showStore(const std::string& path, const Showing& showing, const std::string& kind) {
    if (!isMerged(path)) {
        Store store = Store::open(path, false);
        return showReport(reportOf(store), showing);
    }
    const FleetReport fleet = fleetReportOf(path);
    if (kind.empty()) {
        return showFleet(fleet, showing);
    }
    for (const KindReport& one : fleet.kinds) {
        if (one.name == kind) {
            return showReport(one.report, showing);
        }
    }
    return complain(path + ": no kind " + kind, exitUse);
}

}  // namespace lab
