#include <filesystem>

#include "tables.h"

namespace {

const char firstLine[] = "Command line options: \n";

TEST(Dialogue, ValuesComeFromOptionFileAnswerAndDefaultInThisOrder) {
    const WorkFolder folder;
    const std::string ini = folder.file("values.ini", "[Metrig]\nMethod=manual\nNumLoops=11\n");
    const Outcome outcome = run({.arguments = {"-ATimingParamsMisalign", "-i" + ini, "-dNumLoops=13",
                                               "-f=zylsCompare_8u", "-r", "-l" + folder.path()},
                                 .answers = {{"\n for VectorLength [32; 32768; *4] = ", "40; 60; +10\n"},
                                             {"\n AlignVectorsBy {byte|element} [element] = ", "by\n"},
                                             {"\n VectorAlign by Byte, 0..63 [0] = ", "\n"},
                                             {" [512] = ", ""}},  // and there the input ends
                                 .seconds = 20});
    expectCleanEnd(outcome);
    const std::string stars = " " + std::string(78, '*') + "\n";
    const auto title = [&](const std::string& line) { return stars + line + "\n" + stars; };
    const std::size_t begin = outcome.output.find(stars);
    ASSERT_NE(begin, std::string::npos) << outcome.output;
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

TEST(Dialogue, ThroughATerminal) {
    if (!hasTerminals()) {
        GTEST_SKIP() << "no pseudo terminals here";
    }
    const Outcome outcome = run({.arguments = {"-ATiming", "-f=zylsCompare_8u", "-dVectorLength=64"},
                                 .answers = {{"Method {Auto|Manual|Statistic|Iterative} [Auto] = ", "man\n"},
                                             {"\n NumLoops [10] = ", "\x04"}},
                                 .terminal = true,
                                 .seconds = 20});
    expectCleanEnd(outcome);
    EXPECT_TRUE(holds(outcome.output, "[Auto] = man\n Method = Manual\n")) << outcome.output;
    EXPECT_TRUE(holds(outcome.output, "\n NumLoops [10] =  NumLoops = 10\n"));
    EXPECT_TRUE(holds(outcome.output, "\n| .Successes       : 1   "));
    EXPECT_FALSE(holds(outcome.output, "VectorAlign by"));
}

TEST(IniFile, WrittenFileReadsBackToTheSameWalk) {
    const WorkFolder folder;
    const Cells common = {"-B", "-r", "-u", "-nwalk", "-p" + folder.path(), "-l" + folder.path()};
    Cells arguments = common;
    arguments.insert(arguments.end(), {"-I", "-f=zylsFind_8u", "-f=zylsHash_8u32u", "-dlenFind=16",
                                       "-dVectorLength=64", "-dMethod=Manual"});
    expectCleanEnd(run({.arguments = arguments}));
    expectGolden("find_and_hash.ini", folder.content("walk.ini"));
    EXPECT_TRUE(Table(folder.content("walk.csv")).rows.empty()) << "measured";

    arguments = common;
    arguments.insert(arguments.end(), {"-i", "-P"});
    const Outcome outcome = run({.arguments = arguments});
    expectCleanEnd(outcome);
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
    EXPECT_EQ(table.rows.size(), 5U);
    EXPECT_EQ(Table(folder.content("new_sum.csv")).counters(), "Number of tests=1 Successes=1 ");
    const Table names(folder.content("names_name.csv"));
    EXPECT_EQ(names.head, table.head);
    EXPECT_EQ(names.title, table.title);
    EXPECT_EQ(names.rows, std::vector<Cells>{table.rows[0]});
}

TEST(OutputFiles, NamesCanBeHadWithoutMeasuring) {
    const WorkFolder folder;
    expectCleanEnd(run({.arguments = {"-B", "-q", "-r", "-Q", "-u", "-tFind", "-l" + folder.path()},
                        .folder = folder.path()}));
    EXPECT_EQ(Table(folder.content("metrig_name.csv")).rows.size(), 9U);
    EXPECT_TRUE(Table(folder.content("metrig.csv")).rows.empty());
    EXPECT_EQ(Table(folder.content("metrig_sum.csv")).counters(), "Number of tests=9 Successes=9 ");
}

TEST(OutputFiles, WhatCanNotBeWrittenIsToldOnceAndStopsNothing) {
    const std::string full = "-- Can't write file /dev/full: No space left on device";
    // The command, "<metrig>" for the program with its arguments, and what the listing says.
    const std::pair<std::string, Cells> rows[] = {
        {"<metrig> -r/dev/full -u/dev/full -g/dev/full -o/dev/full >/dev/full",
         {"-- Can't write file stdout: No space left on device", full, full, full, full}},
        {"<metrig> | true", {"-- Can't write file stdout: Broken pipe"}},
        {"head -c 8000 /dev/zero >big.csv; ulimit -f 16; <metrig> -Rbig >/dev/null",
         {"-- Can't write file <folder>/big.csv: File too large"}},
    };
    for (const auto& [command, told] : rows) {
        const WorkFolder folder;
        const std::string program =
            METRIG_BIN_DIR "/metrig -B -r -u -olisting -f=zylsHash_8u32u -l" + folder.path();
        const Outcome outcome = run({.arguments = {"-c", replaced(command, "<metrig>", program)},
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

/// Arguments beside -v, which ends the run early, and what is printed with them, "<folder>/" for the folder.
struct BadInput {
    Cells arguments;
    std::string before;  ///< in front of the option text
    std::string options;
    std::string after;  ///< behind it; "" is the banner of an ordinary end
};

TEST(BadInput, IsToldAndEndsTheRunInOrder) {
    const WorkFolder folder;
    const std::string here = folder.path();
    const std::string longLine(100000, 'x');
    folder.file("nul.txt", std::string("-B\0-s-\n", 8));
    folder.file("long.txt", longLine + "\n-d" + longLine + "=1\n");
    folder.file("long.ini", "[" + longLine + "\n" + longLine + "=" + longLine + "\n");
    const std::string fatal = "FATAL FAIL: can't open output file for writing\n";
    const std::string fatalIni = "FATAL FAIL: can't open ini-file for writing\n";
    const std::string ignored = ": ignored because of -v option\n";
    const BadInput rows[] = {
        {{"-onone/x.txt"},
         "-- Can't open file <folder>/none/x.txt to write: \n",
         "-onone/x.txt: write console output to <folder>/none/x.txt\n",
         fatal},
        {{"-r."},
         "-- Can't open file <folder>/. to write: \n",
         "-r.: write performance result table to <folder>/.\n",
         fatal},
        {{"-Uno/u"}, "-- Can't open file <folder>/no/u_sum.csv to write: \n", "-Uno/u" + ignored, fatal},
        {{"-qno/q"}, "-- Can't open file <folder>/no/q_name.csv to write: \n", "-qno/q" + ignored, fatal},
        {{"-gno/g"}, "", "-gno/g: create file <folder>/no/g.end at the end of MR work\n", ""},
        {{"-@none"}, "-- Can't open file <folder>/none to read: \n", "", fatal},
        {{"-@" + here}, "-- Can't read file <folder>/: it is a directory\n", "", fatal},
        {{"-@/dev/zero"}, "-- Can't read file /dev/zero: it is a device\n", "", fatal},
        {{"-@nul.txt"}, "-- Can't read file <folder>/nul.txt: it is no text\n", "", fatal},
        {{"-@long.txt"}, "", "-d" + longLine + "=1" + ignored, ""},
        {{"-inone"}, "", "-inone" + ignored, "-- Can't open file <folder>/none.ini to read: \n"},
        {{"-i."}, "", "-i." + ignored, "-- Can't read file <folder>/.: it is a directory\n"},
        {{"-i/dev/zero"}, "", "-i/dev/zero" + ignored, "-- Can't read file /dev/zero: it is a device\n"},
        {{"-inul.txt"}, "", "-inul.txt" + ignored, "-- Can't read file <folder>/nul.txt: it is no text\n"},
        {{"-ilong"}, "", "-ilong" + ignored, ""},
        {{"-I."}, "", "-I." + ignored, "-- Can't read file <folder>/.: it is a directory\n" + fatalIni},
        {{"-Ino/x"}, "", "-Ino/x" + ignored, "-- Can't open file <folder>/no/x.ini to write: \n" + fatalIni},
        {{"-x", "-c-", "stray", "-f"},
         "",
         "-x: ignored: incorrect option key\n-c-stray: ignored: incorrect number of milliseconds\n"
         "-f: ignored: empty function pattern\n",
         ""},
    };
    const std::string keys = "-v: type the version number of the Metrig and exit\n";
    const std::string folders =
        "-p<folder>/: open test data files & ini-file in <folder>/\n-l<folder>/: open output files in "
        "<folder>/\n";
    for (const BadInput& row : rows) {
        const std::string name = row.arguments[0].substr(0, 40);
        Cells arguments = {"-v", "-p" + here, "-l" + here};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome outcome = run({.arguments = arguments, .seconds = 10});
        expectCleanEnd(outcome);
        const std::string text = replaced(outcome.output, here, "<folder>/");
        const std::string start = row.before + firstLine + keys + folders + row.options + row.after;
        EXPECT_EQ(text.substr(0, start.size()), start) << name;
        const std::string rest = text.substr(std::min(start.size(), text.size()));
        const bool banner = rest.starts_with("\nZorva(R) Zylkit. Metrig 2.0, ");
        EXPECT_TRUE(holds(row.after, "FATAL") ? rest.empty() : banner) << name << ": " << rest.substr(0, 200);
    }
}

}  // namespace
