#include "commands/surviving.h"

#include <fmt/core.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "compare/settings.h"
#include "machine/elf.h"
#include "machine/facts.h"
#include "machine/instruments.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr int ProductBits = 32;

/// Nothing if the folder holds none.
std::optional<int> widthIn(const std::string& folder) {
    const fs::path path = fs::path(folder) / "libzylch.so.10";
    std::error_code failed;
    if (!fs::is_regular_file(path, failed)) {
        return std::nullopt;
    }
    const auto facts = elfFacts(fileContent(path));
    if (!facts) {
        throw std::runtime_error(path.string() + ": no shared object");
    }
    return facts->bits;
}

/// Of the library that the loader will find, where its folder is named.
std::optional<int> widthOfLibrary(const std::string& folder) {
    if (!folder.empty()) {
        const auto width = widthIn(folder);
        if (!width) {
            throw std::runtime_error(folder + ": no libzylch.so.10");
        }
        return width;
    }
    const char* folders = std::getenv("LD_LIBRARY_PATH");
    std::istringstream names(folders != nullptr ? folders : "");
    for (std::string name; std::getline(names, name, ':');) {
        if (const auto width = name.empty() ? std::nullopt : widthIn(name)) {
            return width;
        }
    }
    return std::nullopt;
}

std::string instrumentFor(const SurvivalOptions& options) {
    if (!options.instrument.empty()) {
        return options.instrument;
    }
    if (const auto width = widthOfLibrary(options.library)) {
        return instrumentOf(*width);
    }
    try {
        return instrumentOf(ProductBits);
    } catch (const std::runtime_error&) {
        return instrumentOf(2 * ProductBits);
    }
}

}  // namespace

void addSurvival(CLI::App& command, SurvivalOptions& options) {
    command
        .add_option("--library", options.library,
                    "folder with the three shared objects (LD_LIBRARY_PATH, or those of the instrument)")
        ->check(CLI::ExistingDirectory);
    command
        .add_option("--instrument", options.instrument,
                    "the instrument (that of the library's width; 32 bits where no folder tells it)")
        ->check(CLI::ExistingFile);
    addParsed(command, "--patience", options.patience,
              "longest time that one combination of a function may take: 90s, 10m (5m)", parseSeconds);
}

SupervisedStart startOf(const SurvivalOptions& options, const CommandLine& line) {
    SupervisedStart start;
    start.program = instrumentFor(options);
    start.arguments = line.keys;
    if (!options.library.empty()) {
        const char* others = std::getenv("LD_LIBRARY_PATH");
        start.environment.push_back("LD_LIBRARY_PATH=" + fs::canonical(options.library).string() +
                                    (others != nullptr ? std::string(":") + others : ""));
    }
    return start;
}

void sayBeside(const std::string& text) {
    fmt::print(stderr, "metrig-lab: {}\n", text);
    std::fflush(stderr);
}

}  // namespace lab
