#include "commands/commandline.h"

#include "commands/guard.h"

namespace lab {

const char* const statusHelp =
    "Exit status: 0 nothing slower, 1 something slower, 2 wrong use or a file, 3 could not tell (--fail-on "
    "unsure),\n"
    "4 not comparable, 5 the new side crashes where the old does not, 130 interrupted: resume goes on.";

void onCommand(CLI::App& command, CommandLine& line, Keys keys, std::function<int()> act) {
    command.callback([&line, keys, name = command.get_name(), act = std::move(act)] {
        line.chosen = act;
        if (keys == Keys::none && !line.keys.empty()) {
            line.chosen = [name] {
                return complain("\"" + name + "\" hands no keys on to metrig: nothing stands after \"--\"",
                                exitUse);
            };
        }
    });
}

}  // namespace lab
