#include "functions.h"
#include "tables.h"

namespace {

/// The numbered lines of a listing of tests, without their numbers.
Cells listedTests(const std::string& output) {
    Cells tests = linesOf(output);
    const auto heading = std::ranges::find(tests, "   #\tFunction\tTest\tSource\t");
    tests.erase(tests.begin(), heading == tests.end() ? heading : heading + 1);
    for (std::string& line : tests) {
        line.erase(0, 5);
    }
    return tests;
}

TEST(Construction, EveryTestIsRegisteredInTheOrderOfTheLink) {
    const Outcome outcome = run({.arguments = {"-e", "-s-"}});
    expectCleanEnd(outcome);  // a finding of the address-checked build stands on standard error
    Cells expected = {"__mrZorvaCpu\t__mrZorvaCpuTest\tmr\t"};
    for (const MeasuredFunction& function : measuredFunctions) {
        std::string line;
        for (const std::string_view cell : {function.name, function.suite, function.source}) {
            line.append(cell).append("\t");
        }
        expected.push_back(line);
    }
    EXPECT_EQ(listedTests(outcome.output), expected);
}

TEST(Construction, WithoutSuitesTheProcessorTestIsAlone) {
    const Outcome outcome = run({.arguments = {"-e"}, .program = "metrig-bare"});
    expectCleanEnd(outcome);
    EXPECT_EQ(listedTests(outcome.output), Cells{"__mrZorvaCpu\t__mrZorvaCpuTest\tmr\t"});
}

}  // namespace
