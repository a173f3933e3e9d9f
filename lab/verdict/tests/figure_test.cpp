#include "verdict/figure.h"

#include <gtest/gtest.h>

namespace lab {
namespace {

constexpr std::int64_t Calls = 1000;
constexpr std::int64_t Empty = 52;

/// A turn of three blocks of a call of so many clocks, the second block the least.
Turn turn(double clocks, double loop = 0.7) {
    const auto block = static_cast<std::int64_t>(clocks * Calls) + Empty;
    return {Side::older, 0,
            Calls,       {block + 900, block, block + 1},
            Empty,       static_cast<std::int64_t>(loop * Calls) + Empty,
            0.0};
}

/// A process of turns that say so.
std::vector<Turn> process(std::initializer_list<double> clocks) {
    std::vector<Turn> turns;
    for (const double its : clocks) {
        turns.push_back(turn(its));
    }
    return turns;
}

Figure figure(const std::vector<std::vector<Turn>>& processes) {
    return figureOf(processes).value_or(Figure());
}

TEST(Figure, TakesOffWhatIsNoCall) {
    const auto floorOf = [](double clocks, double loop) {
        return figure({{turn(clocks, loop), turn(clocks, loop)}}).floor;
    };
    EXPECT_NEAR(floorOf(4.5, 0.7), 4.5, 1e-9) << "the counter runs beside the call";
    EXPECT_NEAR(floorOf(4.5, 1.3), 4.5, 1e-9) << "on a busy core too";
    EXPECT_NEAR(floorOf(40.0, 26.0), 15.0, 1e-9) << "the init does not";
    EXPECT_NEAR(floorOf(20.0, 26.0), 20.0, 0.1) << "a call keeps its time";
    EXPECT_FALSE(figureOf({}));
    EXPECT_FALSE(figureOf(std::vector<std::vector<Turn>>(3)));
}

struct FloorCase {
    const char* what;
    std::vector<std::vector<Turn>> processes;
    double floor;
    std::size_t reached;
};

TEST(Figure, FloorIsWhatTwoTurnsSay) {
    const FloorCase rows[] = {
        {"steady", {process({30, 30, 30}), process({30, 30, 30})}, 30, 6},
        {"one turn below is a fault of the clock", {process({25, 30, 30}), process({30, 31, 44})}, 30, 4},
        {"two processes reach it once each", {process({30, 45, 45}), process({45, 45, 30})}, 30, 2},
        {"nothing repeats", {process({30, 45, 60})}, 30, 1},
        {"finer than its neighbours", {process({30.000, 30.012}), process({30.006, 40})}, 30.006, 3},
    };
    for (const FloorCase& row : rows) {
        const Figure its = figure(row.processes);
        EXPECT_NEAR(its.floor, row.floor, 0.001) << row.what;
        EXPECT_EQ(its.reached, row.reached) << row.what;
    }
}

TEST(Figure, DropsTurnsOfShortBlocks) {
    const Turn coarse{Side::older, 0, 10, {26, 52}, 0, 0, 0.0};
    const Figure its = figure({{coarse, coarse}, process({30, 30})});
    EXPECT_NEAR(its.floor, 30, 0.001);
    EXPECT_EQ(its.turns, 2U);
}

TEST(Figure, NamesClustersAndWhatMakesThem) {
    // 30 everywhere, 45 for a time in the first process, 60 in all of the last one, and two wild turns
    const Figure its =
        figure({process({30, 30, 30, 45, 45.1, 45.2, 30, 90}), process({30, 30, 30, 45, 30, 30, 30, 30}),
                process({30, 30, 30, 30, 30, 30, 30, 75}), process({60, 60, 60, 60.3, 60.2, 60, 60, 60})});
    ASSERT_EQ(its.clusters.size(), 3U);
    EXPECT_EQ(its.turns, 32U);
    EXPECT_NEAR(its.clusters[0].clocks, 30, 0.001);
    EXPECT_EQ(its.clusters[0].turns, 18U);
    EXPECT_EQ(its.clusters[1].turns, 4U);
    EXPECT_NEAR(its.clusters[1].clocks, 45.05, 0.001);
    EXPECT_FALSE(its.clusters[1].byProcess);
    EXPECT_EQ(its.clusters[2].turns, 8U);
    EXPECT_TRUE(its.clusters[2].byProcess);
    EXPECT_NEAR(its.low, 30, 0.001);
    EXPECT_NEAR(its.high, 60, 0.001) << "four processes are too few to leave one out";
}

TEST(Figure, LeavesOneProcessOutOfEightAtEachEnd) {
    std::vector<std::vector<Turn>> processes(8, process({30, 31}));
    processes[0] = process({20, 20});
    processes[7] = process({50, 50});
    EXPECT_NEAR(figure(processes).low, 30, 0.001);
    EXPECT_NEAR(figure(processes).high, 30, 0.001);
}

}  // namespace
}  // namespace lab
