#include "show/measurement.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace lab {
namespace {

MeasuredPoint point(const char* function, double clocks) {
    MeasuredPoint made;
    made.function = function;
    made.parameters = {{"VectorLength", "4096"}};
    made.unit = "e";
    made.divisor = 4096;
    Figure figure;
    figure.floor = clocks;
    figure.median = clocks;
    figure.turns = 40;
    figure.reached = 34;
    figure.processes = 4;
    figure.clusters = {{clocks, 34, false}, {154, 6, false}};
    made.figure = figure;
    return made;
}

MeasurementReport report() {
    MeasurementReport made;
    made.build.name = "lib\x1b[31m";
    made.processes = 4;
    made.turns = 10;
    made.points = {point("zylsFind_8u", 102), point("zylsHash_8u", 204)};
    made.points[1].figure.reset();
    made.points[1].fate.death = "killed by signal 9 (Killed)";
    return made;
}

TEST(Measurement, OnATerminal) {
    EXPECT_EQ("\n" + table(report(), true), R"(
build: lib\x1b[31m

function      clocks  reached   median  spread  per  point
zylsFind_8u  0.02490      85%  0.02490   0.00%    e  VectorLength=4096  [0.02490 at 34 of 40 turns, 0.03760 at 6: another load on this core]
zylsHash_8u        ?        ?        ?       ?    e  VectorLength=4096 (died: killed by signal 9 (Killed))

1 of 2 points measured by up to 4 processes of 10 turns; at 0 the floor was reached by less than a quarter of the turns.
)");
    const std::string functions = table(report(), false);
    EXPECT_NE(functions.find("zylsFind_8u       1       0.02490  0.02490"), std::string::npos) << functions;
}

TEST(Measurement, ForPrograms) {
    MeasurementReport beside = report();
    beside.earlier = Earlier{"old.db", {"another time"}};
    beside.points[0].beside = Beside{51, 2, Verdict::slower};
    const auto document = nlohmann::json::parse(json(beside));
    EXPECT_EQ(document["schema"], "metrig-lab.measurement");
    EXPECT_EQ(document["points"][0]["figure"]["floor"], 102.0);
    EXPECT_EQ(document["points"][0]["figure"]["clusters"][1]["turns"], 6);
    EXPECT_EQ(document["points"][0]["earlier"]["mark"], "slower");
    EXPECT_TRUE(document["points"][1]["figure"].is_null());
    EXPECT_EQ(document["points"][1]["fate"]["death"], "killed by signal 9 (Killed)");
}

TEST(Measurement, FiguresHaveFourDigits) {
    const std::pair<double, const char*> rows[] = {
        {0.0249, "0.02490"}, {4.52284, "4.523"}, {31.6565, "31.66"}, {21020.7, "21021"}, {0, "?"}};
    for (const auto& [value, text] : rows) {
        EXPECT_EQ(figureText(value), text);
    }
}

}  // namespace
}  // namespace lab
