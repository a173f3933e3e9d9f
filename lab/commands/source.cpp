#include "commands/source.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "show/table.h"

namespace lab {

namespace {

constexpr std::string_view storeBegins("SQLite format 3\0", 16);
constexpr std::size_t mostWarnings = 5;

/// Opens a folder too; the first read fails then.
std::ifstream opened(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream || (stream.peek(), stream.bad())) {
        throw std::runtime_error(file + ": can't be read: " + std::strerror(errno));
    }
    stream.clear();
    return stream;
}

ResultTable read(const std::string& file, const ParameterNames& names) {
    std::ifstream stream = opened(file);
    try {
        return readResults(stream, names);
    } catch (const std::runtime_error& reason) {
        throw std::runtime_error(file + ": " + printable(reason.what()));
    }
}

}  // namespace

void addSource(CLI::App& command, Source& source) {
    command
        .add_option("FILE", source.file,
                    "a kept comparison or measurement, or a table of results that metrig wrote (-r)")
        ->required();
    command.add_option("--names", source.names, "the table of parameter names of that run (-q)");
}

bool isStore(const std::string& file) {
    std::ifstream stream = opened(file);
    std::string start(storeBegins.size(), '\0');
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    return stream && start == storeBegins;
}

ResultTable tableOf(const Source& source) {
    const ParameterNames names = source.names.empty() ? ParameterNames() : read(source.names, {}).names;
    ResultTable table = read(source.file, names);
    if (table.rows.empty()) {
        table.warnings.emplace_back("there is no result in it");
    }
    for (std::size_t i = 0; i < table.warnings.size() && i < mostWarnings; ++i) {
        fmt::print(stderr, "warning: {}: {}\n", source.file, table.warnings[i]);
    }
    if (table.warnings.size() > mostWarnings) {
        fmt::print(stderr, "warning: {}: {} more of these\n", source.file,
                   table.warnings.size() - mostWarnings);
    }
    return table;
}

}  // namespace lab
