/// metrig-lab: which functions a change made slower, by instruments that take turns.

#include <fmt/core.h>

#include <CLI/CLI.hpp>

namespace {

constexpr const char* labVersion = "1.0";

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Compares two builds of a library by instruments that take turns.", "metrig-lab");
    app.set_version_flag("--version", fmt::format("metrig-lab {}", labVersion));
    app.require_subcommand(0, 1);
    CLI11_PARSE(app, argc, argv);
    fmt::print("{}", app.help());
    return 2;
}
