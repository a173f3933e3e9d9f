#include <regex>

#include "tables.h"

namespace {

/// The first block of that language in a page.
std::string blockOf(const std::string& page, const std::string& language) {
    const std::string fence = "```" + language + "\n";
    const std::size_t begin = page.find(fence) + fence.size();
    return page.substr(begin, page.find("```\n", begin) - begin);
}

/// With an N for each figure of the clock, and no date of a build.
std::string withoutFigures(const std::string& lines) {
    std::string result;
    for (const std::string& line : linesOf(lines)) {
        const bool ticks = line.starts_with("ticks ");
        result +=
            std::regex_replace(line, std::regex(ticks ? "[0-9]+" : ", [A-Z][a-z]+ .*"), ticks ? "N" : "") +
            "\n";
    }
    return result;
}

TEST(Turns, TheSessionOfTheManualIsWhatHappens) {
    const WorkFolder folder;
    const std::string page = readFile(METRIG_SOURCE_DIR "/docs/turns.md");
    const std::string session = replaced(blockOf(page, "sh"), " metrig ", " " METRIG_COMMAND " ");
    const Outcome outcome =
        run({.arguments = {"-c", session}, .folder = folder.path(), .program = "/bin/sh", .seconds = 20});
    EXPECT_EQ(withoutFigures(outcome.output), withoutFigures(blockOf(page, "text")));
    EXPECT_TRUE(holds(folder.content("console"), "\n-- Run is stopped by a signal\n"));
}

/// A run driven by the lines of a file, which ends where they end.
struct DrivenRun {
    std::string commands;
    std::string faults;
    std::string answers;  ///< but the greeting, figures as N
    std::string told;     ///< on the console; empty: nothing
};

TEST(Turns, WhateverHappensEndsInWords) {
    const std::string point = "point zylsCompare_8u e 64 VectorLength=64\n";
    const std::string point128 = "point zylsCompare_8u e 128 VectorLength=128\n";
    const std::string next = "point zylsEqual_8u e 64 VectorLength=64\n";
    const std::string gone = "-- the driver of the turns has gone";
    const std::vector<DrivenRun> rows = {
        {"take 10 2\nnext\ntake 1 1\nskip\n", "",
         point + "ticks N N N N\n" + point128 + "ticks N N N\nresult zylsCompare_8u OK\n" + next, gone},
        {"take 10 1\nskip\n", "zylsCompare_8u=read",
         point + "result zylsCompare_8u EXCPTFAIL\n" + next + "result zylsEqual_8u OK\nend\n", ""},
        {"take 10 3\nskip\n", "zylsCompare_8u=negative",
         point + "status -8\nticks N N\nresult zylsCompare_8u FUNCFAIL\n" + next + "", gone},
        {"take 0 1\n", "", point, "-- the driver of the turns sends no command: take%200%201"},
        {"take 1000000 4096\n", "", point,
         "-- the driver of the turns sends no command: take%201000000%204096"},
        {std::string("take\0 1\n", 8), "", point, "-- the driver of the turns sends no text"},
        {"next\nquit\ntake 1 1\n", "", point + point128 + "result zylsCompare_8u OK\nend\n", ""},
    };
    for (const auto& [commands, faults, answers, told] : rows) {
        const WorkFolder folder;
        folder.file("commands", commands);
        const Outcome outcome =
            run({.arguments = {"-c",
                               METRIG_COMMAND " -B -f=zylsCompare_8u -f=zylsEqual_8u '-dVectorLength=64;128' "
                                              "3<commands 4>answers"},
                 .folder = folder.path(),
                 .environment = {"METRIG_TURNS=3,4", "METRIG_MHZ=1000", "METRIG_FAULTS=" + faults,
                                 "LD_PRELOAD=" METRIG_LIB_DIR "/libfaults.so"},
                 .program = "/bin/sh",
                 .seconds = 20});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(withoutFigures(folder.content("answers")), "metrig-turns 1 1000 zylCH, 10.0.0\n" + answers)
            << commands;
        EXPECT_EQ(linesWith(outcome.output, "-- the driver"), told.empty() ? Cells() : Cells{told})
            << commands;
    }
}

}  // namespace
