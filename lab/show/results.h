#pragma once

/// A table of metrig's results as it is shown: what all its forms say of it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "results/resulttable.h"

namespace lab {

/// The figure for people, "?" where there is none.
std::string figureText(std::optional<double> value);

/// The calls that a result stands on, by its comment; nothing where that does not tell.
std::optional<std::int64_t> callsOf(const ResultRow& row);

/// What a run says by that name; several libraries with "; " between.
std::string titleOf(const ResultRun& run, std::string_view name);

/// All results of one function with one unit.
struct FunctionResults {
    std::string_view function;
    std::string_view unit;
    std::size_t count = 0;
    std::optional<double> least;  ///< clocks of one unit
    std::optional<double> most;
};

/// In the order of the table.
std::vector<FunctionResults> functionsOf(const ResultTable& table);

/// "438 results of 39 functions, of 1 run."
std::string sentence(const ResultTable& table);

/// For a terminal: what the runs say of themselves, then a line a function, or a line a result with `points`.
std::string table(const ResultTable& results, bool points);

}  // namespace lab
