/// metrig-lab export: a kept comparison or measurement, or a table that metrig wrote, for other programs.

#include <fmt/core.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "commands/commands.h"
#include "commands/guard.h"
#include "commands/source.h"
#include "compare/fleetreport.h"
#include "compare/storedreport.h"
#include "machine/wholefile.h"
#include "measure/storedmeasurement.h"
#include "show/csv.h"
#include "show/json.h"
#include "show/markdown.h"
#include "store/merged.h"

namespace lab {

namespace {

enum class Format { json, csv, markdown };

struct Options {
    Source source;
    Format format = Format::json;
    std::string output;
};

std::string jsonOf(const Report& report) { return json(report, exitStatus(report, false)); }
std::string jsonOf(const FleetReport& fleet) { return fleetJson(fleet, false); }
std::string jsonOf(const MeasurementReport& report) { return json(report); }
std::string jsonOf(const ResultTable& table) { return json(table); }

template <class Exported>
std::string textOf(const Exported& exported, Format format) {
    switch (format) {
        case Format::json:
            return jsonOf(exported);
        case Format::csv:
            return csv(exported);
        default:
            return markdown(exported);
    }
}

std::string textOf(const Options& options) {
    const std::string& file = options.source.file;
    if (!isStore(file)) {
        return textOf(tableOf(options.source), options.format);
    }
    if (isMerged(file)) {
        return textOf(fleetReportOf(file), options.format);
    }
    const StoreKind kind = Store::kindOf(file);
    Store store = Store::open(file, false, kind);
    return kind == StoreKind::measurement ? textOf(measurementOf(store), options.format)
                                          : textOf(reportOf(store), options.format);
}

int run(const Options& options) {
    std::error_code none;
    if (!options.output.empty() && std::filesystem::equivalent(options.source.file, options.output, none)) {
        return complain(options.output + " is what is to be exported", exitUse);
    }
    const std::string text = textOf(options);
    if (!options.output.empty()) {
        writeWhole(options.output, text);
        return 0;
    }
    fmt::print("{}", text);
    return std::fflush(stdout) == 0 ? 0 : complain("can't write the document", exitUse);
}

}  // namespace

void addExport(CLI::App& app, CommandLine& line) {
    CLI::App& command = *app.add_subcommand(
        "export", "Hands a comparison, a measurement or a table of metrig to other programs");
    const auto options = std::make_shared<Options>();
    addSource(command, options->source);
    command.add_option("-o,--output", options->output,
                       "written whole or not at all; without it, on standard output");
    CLI::Option_group& formats = *command.add_option_group("Format", "one of these");
    const auto add = [&](const char* name, Format format, const char* help) {
        formats.add_flag_callback(
            name, [options, format] { options->format = format; }, help);
    };
    add("--json", Format::json, "one JSON document (docs/formats.md)");
    add("--csv", Format::csv, "a line of names, then a line a point");
    add("--markdown", Format::markdown, "the text of a pull request");
    formats.require_option(1);
    onCommand(command, line, Keys::none, [options] { return guarded("", [&] { return run(*options); }); });
}

}  // namespace lab
