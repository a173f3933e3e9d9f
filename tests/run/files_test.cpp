#include <sys/stat.h>

#include <regex>

#include "tables.h"

namespace {

TEST(Dialogue, ValuesComeFromOptionFileAnswerAndDefaultInThisOrder) {
    const WorkFolder folder;
    const std::string ini = folder.file("values.ini", "[Metrig]\nMethod=manual\nNumLoops=11\n");
    const Outcome outcome = run({.arguments = {"-ATimingParamsMisalign", "-i" + ini, "-dNumLoops=13",
                                               "-f=zylsCompare_8u", "-r", "-l" + folder.path()},
                                 .input = "40; 60; +10\nby\n\n",  // and there the input ends
                                 .seconds = 20});
    expectCleanEnd(outcome);
    // Of the values of the file, the option before it, what was typed, and the defaults after its end.
    const std::size_t begin = std::min(outcome.output.find("\n ***") + 1, outcome.output.size());
    expectGolden("run/golden/dialogue.txt",
                 outcome.output.substr(begin, outcome.output.find("| Function") - begin));
    EXPECT_EQ(Table(folder.content("metrig.csv")).column(3), (Cells{"40", "50", "60"}));
}

TEST(Dialogue, ShowsAQuestionBeforeItWaits) {
    const WorkFolder folder;
    folder.file("out", "");
    // The answer is typed when the question is there, or else after ten seconds.
    const std::string command =
        "(for i in $(seq 100); do grep -q '= $' out && tail -n 1 out >seen && break; sleep 0.1; done; echo "
        "man) |" METRIG_COMMAND " -ATiming -f=zylsCompare_8u -dVectorLength=64 -dNumLoops=1 >out";
    run({.arguments = {"-c", command}, .folder = folder.path(), .program = "/bin/sh"});
    EXPECT_EQ(folder.content("seen"), " Method {Auto|Manual|Statistic|Iterative} [Auto] = ");
    EXPECT_TRUE(holds(folder.content("out"), " [Auto] =  Method = Manual\n"));
}

TEST(IniFile, WrittenFileReadsBackToTheSameWalk) {
    const WorkFolder folder;
    const Cells common = {"-B", "-r", "-u", "-nwalk", "-p" + folder.path(), "-l" + folder.path()};
    expectCleanEnd(
        run({.arguments = common + Cells{"-I", "-f=zylsFind_8u", "-f=zylsHash_8u32u", "-dlenFind=16",
                                         "-dVectorLength=64", "-dMethod=Manual"}}));
    expectGolden("run/golden/find_and_hash.ini", folder.content("walk.ini"));
    EXPECT_TRUE(Table(folder.content("walk.csv")).rows.empty()) << "measured";

    expectCleanEnd(run({.arguments = common + Cells{"-i", "-P"}}));
    EXPECT_EQ(Table(folder.content("walk_sum.csv")).column(0), (Cells{"zylsFind_8u", "zylsHash_8u32u"}));
    const Table walk(folder.content("walk.csv"));
    expectFigures(walk);
    EXPECT_EQ(walk.column(3), (Cells{"64", "64", "4", "8", "16", "32"}));
    EXPECT_EQ(walk.column(4), (Cells{"16", "16", "-", "-", "-", "-"}));
    EXPECT_EQ(walk.column(5), (Cells{"-", "hardSearch", "-", "-", "-", "-"}));
    EXPECT_EQ(walk.column(CommentColumn), Cells(6, "nLps=10"));
}

TEST(OutputFiles, SmallKeysBeginFilesAnewAndCapitalsAppend) {
    const WorkFolder folder;
    for (const char* name : {"new.txt", "old.txt", "new.csv", "old.csv", "new_sum.csv", "old_sum.csv"}) {
        folder.file(name, "kept\n");
    }
    const Outcome outcome =
        run({.arguments = {"-onew", "-Oold", "-rnew", "-Rold", "-unew", "-Uold", "-q+", "-qnames", "-B",
                           "-f=zylsHash_8u32u", "-dMethod=Manual", "-l" + folder.path()}});
    expectCleanEnd(outcome);
    for (const std::string name : {".txt", ".csv", "_sum.csv"}) {
        EXPECT_EQ(folder.content("old" + name), "kept\n" + folder.content("new" + name)) << name;
    }
    std::string listing = outcome.output;
    const std::string sorting = "Sorting functions...\n";  // goes to standard output alone
    listing.erase(listing.find(sorting), sorting.size());
    EXPECT_EQ(folder.content("new.txt"), listing);
    const Table table(folder.content("new.csv"));
    ASSERT_EQ(table.rows.size(), 5U);
    const Table names(folder.content("names_name.csv"));
    EXPECT_EQ(names.head, table.head);
    EXPECT_EQ(names.title, table.title);
    EXPECT_EQ(names.rows, std::vector<Cells>{table.rows[0]});
}

TEST(OutputFiles, NamesCanBeHadWithoutMeasuring) {
    const WorkFolder folder;
    expectCleanEnd(
        run({.arguments = {"-B", "-q", "-r", "-Q", "-u", "-nall", "-tFind", "-l" + folder.path()}}));
    EXPECT_EQ(Table(folder.content("all_name.csv")).rows.size(), 9U);
    EXPECT_TRUE(Table(folder.content("all.csv")).rows.empty());
    EXPECT_EQ(Table(folder.content("all_sum.csv")).counters(), "Number of tests=9 Successes=9 ");
}

TEST(OutputFiles, WhatCanNotBeWrittenIsToldOnceAndStopsNothing) {
    const std::string full = "-- Can't write file /dev/full: No space left on device";
    // The command, "<metrig>" for the program with its arguments, and what the listing says.
    const std::pair<std::string, Cells> rows[] = {
        {"<metrig> -r/dev/full -u/dev/full -g/dev/full -o/dev/full >/dev/full",
         {"-- Can't write file stdout: No space left on device", full, full, full, full}},
        {"mkfifo pipe; : <pipe & <metrig> -R<folder>pipe | true",
         {"-- Can't write file stdout: Broken pipe", "-- Can't write file <folder>/pipe: Broken pipe"}},
        {"<metrig> >&- 2>&-", {}},
        {"head -c 8000 /dev/zero >big.csv; ulimit -f 16; <metrig> -Rbig >/dev/null",
         {"-- Can't write file <folder>/big.csv: File too large"}},
    };
    for (const auto& [command, told] : rows) {
        const WorkFolder folder;
        const std::string program = METRIG_COMMAND " -B -r -u -olisting -f=zylsHash_8u32u -l" + folder.path();
        const Outcome outcome = run(
            {.arguments = {"-c", replaced(replaced(command, "<metrig>", program), "<folder>", folder.path())},
             .folder = folder.path(),
             .program = "/bin/sh"});
        EXPECT_EQ(outcome.status, 0) << outcome.signal;
        const Table table(folder.content("metrig.csv"));
        EXPECT_EQ(table.rows.size(), 4U);
        expectFigures(table);
        EXPECT_EQ(Table(folder.content("metrig_sum.csv")).counters(), "Number of tests=1 Successes=1 ");
        const std::string listing = replaced(folder.content("listing.txt"), folder.path(), "<folder>/");
        EXPECT_EQ(linesWith(listing, "-- Can't write"), told) << command;
    }
}

// Each argument beside -v, which ends the run early.
TEST(BadInput, IsToldAndEndsTheRunInOrder) {
    const WorkFolder folder;
    folder.file("nul.txt", std::string("-B\0-s-\n", 8));
    folder.file("kept.csv", "kept");
    folder.file("twice", "-gkept.csv -okept.csv");
    mkfifo(folder.path("pipe.ini").c_str(), 0600);
    std::string text;
    for (const std::string argument :
         {"-onone/x.txt", "-Uno/u", "-gno/g", "-rkept", "-@twice", "-@none", "-@.", "-@/dev/zero",
          "-@pipe.ini", "-@nul.txt", "-inone", "-Ipipe", "-Ino/x"}) {
        const Outcome outcome =
            run({.arguments = {"-v", "-p" + folder.path(), "-l" + folder.path(), argument}, .seconds = 10});
        expectCleanEnd(outcome);
        EXPECT_EQ(folder.content("kept.csv"), "kept") << argument;
        text +=
            "# metrig -v " + argument + "\n" + replaced(outcome.output, folder.path(), "<folder>/") + "\n";
    }
    const std::regex date("(Metrig 2.0, ).{11}");
    expectGolden("run/golden/bad_input.txt", std::regex_replace(text, date, "$1<date>"));
}

}  // namespace
