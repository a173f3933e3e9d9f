#include "show/results.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

#include "show/columns.h"
#include "show/table.h"

namespace lab {
namespace {

std::vector<Cells> functionRows(const ResultTable& results) {
    std::vector<Cells> rows{{"function", "results", "least clocks", "most", "", "per"}};
    for (const FunctionResults& function : functionsOf(results)) {
        rows.push_back({printable(function.function), std::to_string(function.count),
                        figureText(function.least), figureText(function.most), "", printable(function.unit)});
    }
    return rows;
}

std::vector<Cells> resultRows(const ResultTable& results) {
    std::vector<Cells> rows{{"function", "clocks", "per", "usec", "calls", "point"}};
    for (const ResultRow& row : results.rows) {
        const std::optional<std::int64_t> calls = callsOf(row);
        rows.push_back({printable(row.function), figureText(row.clocks), printable(row.unit),
                        figureText(row.microseconds), calls ? std::to_string(*calls) : "?",
                        printable(parameterText(row.parameters)) + (row.hot ? " (hot)" : "")});
    }
    return rows;
}

}  // namespace

std::string figureText(std::optional<double> value) { return value ? fmt::format("{}", *value) : "?"; }

std::optional<std::int64_t> callsOf(const ResultRow& row) {
    for (const std::string_view name : {"nLps=", "nCalls="}) {
        const std::size_t at = row.comment.find(name);
        std::int64_t calls = 0;
        if (at != std::string::npos) {
            const char* const end = row.comment.data() + row.comment.size();
            if (std::from_chars(row.comment.data() + at + name.size(), end, calls).ec == std::errc()) {
                return calls;
            }
        }
    }
    return std::nullopt;
}

std::string titleOf(const ResultRun& run, std::string_view name) {
    std::string text;
    for (const auto& [its, value] : run) {
        text += its == name ? (text.empty() ? "" : "; ") + value : "";
    }
    return text;
}

std::vector<FunctionResults> functionsOf(const ResultTable& table) {
    std::vector<FunctionResults> functions;
    using Key = std::pair<std::string_view, std::string_view>;
    std::map<Key, std::size_t> known;
    for (const ResultRow& row : table.rows) {
        const auto [at, isNew] = known.emplace(Key(row.function, row.unit), functions.size());
        if (isNew) {
            functions.push_back({row.function, row.unit, 0, std::nullopt, std::nullopt});
        }
        FunctionResults& function = functions[at->second];
        ++function.count;
        if (row.clocks) {
            function.least = std::min(*row.clocks, function.least.value_or(*row.clocks));
            function.most = std::max(*row.clocks, function.most.value_or(*row.clocks));
        }
    }
    return functions;
}

std::string sentence(const ResultTable& table) {
    const auto plural = [](std::size_t number, std::string_view what) {
        return fmt::format("{} {}{}", number, what, number == 1 ? "" : "s");
    };
    return fmt::format("{} of {}, of {}.", plural(table.rows.size(), "result"),
                       plural(functionsOf(table).size(), "function"), plural(table.runs.size(), "run"));
}

std::string table(const ResultTable& results, bool points) {
    std::string text;
    for (const ResultRun& run : results.runs) {
        for (const auto& [name, value] : run) {
            text += fmt::format("{}: {}\n", name, printable(value));
        }
        text += "\n";
    }
    return text + aligned(points ? resultRows(results) : functionRows(results)) + "\n" + sentence(results) +
           "\n";
}

}  // namespace lab
