#include <gtest/gtest.h>

#include <cmath>

#include "show/csv.h"
#include "show/markdown.h"
#include "show/results.h"

namespace lab {
namespace {

/// A slower function, one that died and whose names are no plain words, and one that is the same.
Report report() {
    Report made;
    made.older.name = "./a";
    made.newer.name = "./b`|<b>";
    made.machine.processor = "a processor";
    made.machine.bits = 64;
    made.warnings = {"busy"};
    Point point;
    point.function = "zylsSlow_8u";
    point.parameters = {{"VectorLength", "64"}};
    point.unit = "e";
    point.divisor = 64;
    point.decision = {Verdict::slower,
                      Reason::none,
                      {std::log(1.01), std::log(1.02), std::log(1.03)},
                      0.015,
                      20,
                      Next::nothing,
                      0};
    point.older = 100;
    point.newer = 102.5;
    point.marks = {"same machine code"};
    made.points.push_back(point);
    point.parameters[0].second = "128";
    point.decision.verdict = Verdict::same;
    made.points.push_back(point);
    point.function = "a|b`\n,\"";
    point.parameters = {{"Unit", " x,y"}, {"vectorlength", "é"}};
    point.decision = {.reason = Reason::crash};
    point.older = 0;
    point.newerFate.death = "SIGSEGV";
    made.points.push_back(point);
    point.function = "zylsSame_8u";
    point.parameters = {};
    point.newerFate = {};
    point.decision = {Verdict::same, Reason::none, {-0.001, 0, 0.001}, 0.011, 8, Next::nothing, 0};
    made.points.push_back(point);
    return made;
}

TEST(Csv, OfAComparison) {
    EXPECT_EQ("\n" + csv(report()), R"(
function,VectorLength,Unit_2,vectorlength_2,unit,divisor,verdict,reason,ratio_low,ratio,ratio_high,smallest,old_clocks,new_clocks,pairs,old_status,new_status,old_death,new_death,marks
zylsSlow_8u,64,,,e,64,slower,,1.01,1.02,1.03,1.015113,100,102.5,20,0,0,,,same machine code
zylsSlow_8u,128,,,e,64,same,,1.01,1.02,1.03,1.015113,100,102.5,20,0,0,,,same machine code
"a|b`\x0a,""",," x,y",é,e,64,unsure,crash,,,,,,102.5,0,0,0,,SIGSEGV,same machine code
zylsSame_8u,,,,e,64,same,,0.999,1,1.001001,1.011061,,102.5,8,0,0,,,same machine code
)");
}

/// Two kinds: one has the report above, the other a function of it that is faster there.
FleetReport fleet() {
    FleetReport made;
    made.kinds = {{"wide, new", 2, report()}, {"old", 1, report()}};
    Report& other = made.kinds[1].report;
    other.warnings.clear();
    other.points = {other.points[1], other.points[3]};
    other.points[0].decision.verdict = Verdict::faster;
    other.points[0].decision.interval = {std::log(0.5), std::log(0.5), std::log(0.5)};
    other.points[1].parameters = {{"Kind", "8"}};
    return made;
}

TEST(Csv, OfKinds) {
    EXPECT_EQ("\n" + csv(fleet()), R"(
kind,function,VectorLength,Unit_2,vectorlength_2,Kind_2,unit,divisor,verdict,reason,ratio_low,ratio,ratio_high,smallest,old_clocks,new_clocks,pairs,old_status,new_status,old_death,new_death,marks
"wide, new",zylsSlow_8u,64,,,,e,64,slower,,1.01,1.02,1.03,1.015113,100,102.5,20,0,0,,,same machine code
"wide, new",zylsSlow_8u,128,,,,e,64,same,,1.01,1.02,1.03,1.015113,100,102.5,20,0,0,,,same machine code
"wide, new","a|b`\x0a,""",," x,y",é,,e,64,unsure,crash,,,,,,102.5,0,0,0,,SIGSEGV,same machine code
"wide, new",zylsSame_8u,,,,,e,64,same,,0.999,1,1.001001,1.011061,,102.5,8,0,0,,,same machine code
old,zylsSlow_8u,128,,,,e,64,faster,,0.5,0.5,0.5,1.015113,100,102.5,20,0,0,,,same machine code
old,zylsSame_8u,,,,8,e,64,same,,0.999,1,1.001001,1.011061,,102.5,8,0,0,,,same machine code
)");
}

TEST(Markdown, OfKinds) {
    const auto details = [](const Report& of) {
        const std::string text = markdown(of);
        return text.substr(text.find("<details>"));
    };
    EXPECT_EQ("\n" + markdown(fleet()), R"(
**Of 2 kinds 1 has something slower, 1 something faster, 1 a crash.**

| function | `wide, new` | `old` |
| --- | --- | --- |
| <code>a&#124;b&#96;&#92;x0a,&#34;</code> | unsure: crash | - |
| `zylsSlow_8u` | **slower** +2.00% | faster -50.00% |

1 function without a known difference on any kind.

`wide, new`: 2 sessions. Of 4 points 1 slower (1 function), 0 faster, 2 the same within 1%, 1 cannot be told (crash 1).

)" + details(report()) + R"(
`old`: 1 session. Of 2 points 0 slower, 1 faster (1 function), 1 the same within 1%, 0 cannot be told.

)" + details(fleet().kinds[1].report));
}

TEST(Markdown, OfAComparison) {
    EXPECT_EQ("\n" + markdown(report()), R"(
**Of 4 points 1 slower (1 function), 0 faster, 2 the same within 1%, 1 cannot be told (crash 1).**

| function | verdict | change  | interval | points | rests on |
| --- | --- | --: | --- | --- | --- |
| <code>a&#124;b&#96;&#92;x0a,&#34;</code> | unsure: crash | ? | ? | 1 unsure | `Unit= x,y vectorlength=\xc3\xa9` `(new: SIGSEGV) (same machine code)` |
| `zylsSlow_8u` | **slower** | +2.00% | +1.00% .. +3.00% | 1 slower, 1 same | `VectorLength=64` `(same machine code)` |

1 function without a known difference: 1 same.

<details><summary>2 points that differ or cannot be told</summary>

| function | point | verdict | change  | interval | clocks of one call |
| --- | --- | --- | --: | --- | --- |
| <code>a&#124;b&#96;&#92;x0a,&#34;</code> | `Unit= x,y vectorlength=\xc3\xa9` `(new: SIGSEGV) (same machine code)` | unsure: crash | ? | ? | ? -> 102.50 |
| `zylsSlow_8u` | `VectorLength=64` `(same machine code)` | **slower** | +2.00% | +1.00% .. +3.00% | 100.00 -> 102.50 |

</details>

<details><summary>Builds and machine</summary>

- old: `./a`
- new: <code>./b&#96;&#124;&#60;b&#62;</code>
- processor: `a processor`
- 64 bits, core -1, 0 MHz, 0.0 s, seed 0
- warning: `busy`

</details>
)");
}

TEST(Results, OnATerminal) {
    ResultTable results;
    results.runs = {{{"CPU", "x"}, {"Start", "now\x1b"}}};
    results.rows = {{0, "zylsA_8u", {{"VectorLength", "64"}}, 0.25, "e", 0.006, {}, "nLps=600", true},
                    {0, "zylsA_8u", {{"VectorLength", "512"}}, 12, "e", 0.04, {}, "inCache nCalls=7", false},
                    {0, "zylsLong_8u", {}, {}, "pattern", {}, {}, "", false}};
    const std::string title = "\nCPU: x\nStart: now\\x1b\n";
    EXPECT_EQ("\n" + table(results, false), title + R"(
function     results  least clocks  most  per
zylsA_8u           2          0.25    12  e
zylsLong_8u        1             ?     ?  pattern

3 results of 2 functions, of 1 run.
)");
    EXPECT_EQ("\n" + table(results, true), title + R"(
function     clocks      per   usec  calls  point
zylsA_8u       0.25        e  0.006    600  VectorLength=64 (hot)
zylsA_8u         12        e   0.04      7  VectorLength=512
zylsLong_8u       ?  pattern      ?      ?

3 results of 2 functions, of 1 run.
)");
}

}  // namespace
}  // namespace lab
