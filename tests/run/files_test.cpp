#include <sys/stat.h>

#include <array>

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
    const std::string stars = " " + std::string(78, '*') + "\n";
    const auto title = [&](const std::string& line) { return stars + line + "\n" + stars; };
    const std::size_t begin = std::min(outcome.output.find(stars), outcome.output.size());
    EXPECT_EQ(outcome.output.substr(begin, outcome.output.find("| Function") - begin),
              title(" *                       Specify timing method, please                        *") +
                  " Method = Manual\n"  // the file
                  " NumLoops = 13\n" +  // the option before the file
                  title(" *                   Specify common test parameters, please                   *") +
                  "\n for VectorLength [32; 32768; *4] = "
                  " for (VectorLength = 40; VectorLength <= 60; VectorLength += 10)\n" +
                  title(" *                     Specify vectors alignment, please                      *") +
                  "\n AlignVectorsBy {byte|element} [element] =  AlignVectorsBy = byte\n"
                  "\n VectorAlign by Byte, 0..63 [0] =  VectorAlign = 0\n"
                  "\n MutualVectorShift in Bytes, divisible by 64 [512] =  MutualVectorShift = 512\n" +
                  title(" *                        End of common specifications                        *"));
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
    Cells walk;
    for (const Cells& row : Table(folder.content("walk.csv")).rows) {
        ASSERT_EQ(row.size(), ResultWidth);
        walk.push_back(row[0] + " " + row[3] + " " + row[4] + " " + row[5] + " " + row[CommentColumn]);
    }
    EXPECT_EQ(walk, (Cells{"zylsFind 64 16 - nLps=10", "zylsFind 64 16 hardSearch nLps=10",
                           "zylsHash 4 - - nLps=10", "zylsHash 8 - - nLps=10", "zylsHash 16 - - nLps=10",
                           "zylsHash 32 - - nLps=10"}));
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

// The first argument stands beside -v, which ends the run early; then, "<folder>/" for the folder: what is
// printed in front of the option text, the option, and what is after it; "" is the banner of an ordinary
// end.
TEST(BadInput, IsToldAndEndsTheRunInOrder) {
    const WorkFolder folder;
    folder.file("nul.txt", std::string("-B\0-s-\n", 8));
    folder.file("kept.csv", "kept");
    folder.file("twice", "-gkept.csv -okept.csv");
    const std::string fatal = "FATAL FAIL: can't open output file for writing\n";
    const std::string fatalIni = "FATAL FAIL: can't open ini-file for writing\n";
    const std::string ignored = ": ignored because of -v option\n";
    const std::array<std::string, 4> rows[] = {
        {"-onone/x.txt", "-- Can't open file <folder>/none/x.txt to write: \n",
         "-onone/x.txt: write console output to <folder>/none/x.txt\n", fatal},
        {"-Uno/u", "-- Can't open file <folder>/no/u_sum.csv to write: \n", "-Uno/u" + ignored, fatal},
        {"-gno/g", "", "-gno/g: create file <folder>/no/g.end at the end of MR work\n", ""},
        {"-rkept", "", "-rkept: write performance result table to <folder>/kept.csv\n", ""},
        {"-@twice", "-- Can't write file <folder>/kept.csv: two keys name it\n",
         "-gkept.csv: create file <folder>/kept.csv at the end of MR work\n"
         "-okept.csv: write console output to <folder>/kept.csv\n",
         fatal},
        {"-@none", "-- Can't open file <folder>/none to read: \n", "", fatal},
        {"-@.", "-- Can't read file <folder>/.: it is a directory\n", "", fatal},
        {"-@/dev/zero", "-- Can't read file /dev/zero: it is a device\n", "", fatal},
        {"-@pipe.ini", "-- Can't read file <folder>/pipe.ini: it is a pipe\n", "", fatal},
        {"-@nul.txt", "", "-B" + ignored, ""},
        {"-inone", "", "-inone" + ignored, "-- Can't open file <folder>/none.ini to read: \n"},
        {"-Ipipe", "", "-Ipipe" + ignored, "-- Can't read file <folder>/pipe.ini: it is a pipe\n" + fatalIni},
        {"-Ino/x", "", "-Ino/x" + ignored, "-- Can't open file <folder>/no/x.ini to write: \n" + fatalIni},
    };
    mkfifo(folder.path("pipe.ini").c_str(), 0600);
    const std::string keys =
        "Command line options: \n-v: type the version number of the Metrig and exit\n"
        "-p<folder>/: open test data files & ini-file in <folder>/\n"
        "-l<folder>/: open output files in <folder>/\n";
    for (const auto& [argument, before, option, after] : rows) {
        const Outcome outcome =
            run({.arguments = {"-v", "-p" + folder.path(), "-l" + folder.path(), argument}, .seconds = 10});
        expectCleanEnd(outcome);
        const std::string text = replaced(outcome.output, folder.path(), "<folder>/");
        const std::string start = before + keys + option + after;
        EXPECT_EQ(text.substr(0, start.size()), start);
        const std::string rest = text.substr(std::min(start.size(), text.size()));
        const bool banner = rest.starts_with("\nZorva(R) Zylkit. Metrig 2.0, ");
        EXPECT_TRUE(holds(after, "FATAL") ? rest.empty() : banner) << argument << ": " << rest;
        EXPECT_EQ(holds(rest, "-- Can't open file <folder>/no/g.end to write: \n"), argument == "-gno/g");
        EXPECT_EQ(folder.content("kept.csv"), "kept") << argument;
    }
}

}  // namespace
