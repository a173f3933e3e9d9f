#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "show/json.h"
#include "show/table.h"

namespace lab {
namespace {

/// A point whose time changed by so many percent, give or take half a percent.
Point point(const char* function, const char* length, Verdict verdict, double percent,
            Reason reason = Reason::none) {
    const double middle = std::log1p(percent / 100);
    Point made;
    made.function = function;
    made.parameters = {{"Parm1", "8u"}, {"VectorLength", length}};
    made.unit = "e";
    made.divisor = std::stod(length);
    made.decision = {verdict, reason, {middle - 0.005, middle, middle + 0.005}, 0.015, 12, Next::nothing, 0};
    made.older = 100;
    made.newer = 100 + percent;
    return made;
}

Report report() {
    Report made;
    made.older.name = "./a";
    made.newer.name = "./b\x1b[31m";
    made.newer.keys = "-TSSE2";
    made.warnings = {"the load is 2.5"};
    made.onlyNewer = {"zylsNew_8u VectorLength=4"};
    made.points = {point("zylsSame_8u", "4", Verdict::same, 0.2),
                   point("zylsSame_8u", "8", Verdict::same, -0.3),
                   point("zylsFast_8u", "4", Verdict::unsure, -1, Reason::layout),
                   point("zylsFast_8u", "8", Verdict::faster, -20),
                   point("zylsOpen_8u", "4", Verdict::unsure, 1, Reason::noise),
                   point("zylsSlow_8u", "4", Verdict::slower, 2),
                   point("zylsSlow_8u", "8", Verdict::slower, 150),
                   point("zylsSlow_8u", "16", Verdict::faster, -5),
                   point("zylsDead_8u", "4", Verdict::unsure, 0, Reason::crash)};
    made.points[5].marks = {"same machine code"};
    made.points[8].decision = {.reason = Reason::crash};
    made.points[8].newerFate.death = "SIGSEGV";
    return made;
}

TEST(Table, OfFunctions) {
    EXPECT_EQ("\n" + table(report(), {}), R"(
old: ./a
new: ./b\x1b[31m -TSSE2
warning: the load is 2.5

function     verdict        change   interval            points              rests on
zylsDead_8u  unsure: crash  ?        ?                   1 unsure            Parm1=8u VectorLength=4 (new: SIGSEGV)
zylsSlow_8u  slower         +150%    +149% .. +151%      2 slower, 1 faster  Parm1=8u VectorLength=8
zylsOpen_8u  unsure: noise  +1.00%   +0.50% .. +1.51%    1 unsure            Parm1=8u VectorLength=4
zylsSame_8u  same           +0.20%   -0.30% .. +0.70%    2 same              Parm1=8u VectorLength=4
zylsFast_8u  faster         -20.00%  -20.40% .. -19.60%  1 faster, 1 unsure  Parm1=8u VectorLength=8
new only: zylsNew_8u VectorLength=4

Of 9 points 2 slower (1 function), 2 faster (2 functions), 2 the same within 1%, 3 cannot be told (noise 1, layout 1, crash 1).
  noise: what ran beside disturbed the turns
  layout: the speed depends on where code and data lie in memory
  crash: a build did not live through it
A difference of 1.51% would have shown at half of 8 points, one of 1.51% at nine of ten.
)");
}

TEST(Table, OfChosenPoints) {
    const TableStyle style{.points = true, .only = {Verdict::slower}, .colours = true};
    const std::string text = table(report(), style);
    EXPECT_EQ(
        "\n" + text.substr(text.find("function "), text.find("new only") - text.find("function ")),
        R"(
function     verdict  change  interval          would show  clocks            point
zylsSlow_8u  )"
        "\x1b[31m"
        R"(slower   )"
        "\x1b[0m"
        R"(+150%   +149% .. +151%    +1.51%      100.00 -> 250.00  Parm1=8u VectorLength=8
zylsSlow_8u  )"
        "\x1b[31m"
        R"(slower   )"
        "\x1b[0m"
        R"(+2.00%  +1.49% .. +2.51%  +1.51%      100.00 -> 102.00  Parm1=8u VectorLength=4 (same machine code)
)");
    EXPECT_TRUE(coloursWanted(true, nullptr) && coloursWanted(true, ""));
    EXPECT_FALSE(coloursWanted(true, "1") || coloursWanted(false, nullptr));
}

TEST(JsonOfAComparison, HoldsWhatIsKnownAndNullElse) {
    Report made = report();
    made.points[5].decision.interval.high = std::log(1.03);
    made.points[5].parameters[1].second = "\xff\"";
    const auto document = nlohmann::json::parse(json(made, exitCrash));
    EXPECT_EQ(document["schema"], "metrig-lab.comparison");
    EXPECT_EQ(document["exit"], 5);
    EXPECT_EQ(document["sides"]["new"]["name"], made.newer.name);
    EXPECT_EQ(document["summary"],
              nlohmann::json::parse(R"({"slower": 2, "faster": 2, "same": 2, "unsure": 3, "crashed": 1})"));
    EXPECT_EQ(document["points"][5], nlohmann::json::parse(R"({"function": "zylsSlow_8u",
        "parameters": {"Parm1": "8u", "VectorLength": "�\""}, "unit": "e", "divisor": 4,
        "verdict": "slower", "reason": null, "ratio": [1.014913, 1.02, 1.03], "smallest": 1.015113,
        "old": 100, "new": 102, "pairs": 12, "fate": {"old": {"status": 0, "death": null},
        "new": {"status": 0, "death": null}}, "marks": ["same machine code"]})"));
    EXPECT_EQ(document["points"][8]["ratio"], nlohmann::json::parse("[null, null, null]"));
    EXPECT_EQ(document["points"][8]["fate"]["new"]["death"], "SIGSEGV");
}

TEST(ExitStatus, IsThatOfTheWorstPoint) {
    Report made = report();
    EXPECT_EQ(exitStatus(made, false), exitCrash);
    made.points[8].olderFate.death = "SIGSEGV";
    EXPECT_EQ(exitStatus(made, true), exitSlower);
    made.points.resize(5);
    EXPECT_EQ(exitStatus(made, true), exitUnsure);
    EXPECT_EQ(exitStatus(made, false), exitNothingSlower);
}

}  // namespace
}  // namespace lab
