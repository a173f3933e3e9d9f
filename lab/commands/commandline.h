#pragma once

/// What the commands share of the command line.

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace lab {

/// A command line while it is read.
struct CommandLine {
    std::vector<std::string> keys;  ///< of metrig: what stands after the first "--", whatever it looks like
    std::function<int()> chosen;    ///< does what the command is for; the exit status
};

/// Whether a command hands keys on to metrig. One that does not refuses them.
enum class Keys { none, handedOn };

/// `act` is what the command does, once all of the line is read and good.
void onCommand(CLI::App& command, CommandLine& line, Keys keys, std::function<int()> act);

/// A check of an option's text: that `parse` takes it. What `parse` throws is what the user reads.
template <class Parse>
std::function<std::string(const std::string&)> checkedBy(Parse parse) {
    return [parse](const std::string& text) -> std::string {
        try {
            parse(text);
            return "";
        } catch (const std::exception& reason) {
            return reason.what();
        }
    };
}

/// An option whose text `parse` turns into `value`, which stays as it is without the option.
template <class Parse, class Value>
CLI::Option* addParsed(CLI::App& command, const std::string& names, Value& value, const std::string& help,
                       Parse parse) {
    return command
        .add_option_function<std::string>(
            names, [parse, &value](const std::string& text) { value = parse(text); }, help)
        ->check(checkedBy(parse));
}

/// The exit statuses, as they stand at the end of a command's help.
extern const char* const statusHelp;

}  // namespace lab
