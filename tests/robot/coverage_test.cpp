#include <algorithm>
#include <cmath>
#include <numbers>

#include "robot/belief/cleaned_floor.h"
#include "robot/belief/traced_walls.h"
#include "robot/grid_sketch.h"
#include "robot/planning/cleaning_lines.h"
#include "robot/planning/planner.h"
#include "robot/services/coverage/charge_need.h"
#include "robot/services/coverage/offers.h"
#include "robot/world/distances.h"
#include "robot/world/sweeping.h"
#include "robot/world/swept_floor.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

// A drive in small steps along a line.
template <class Floor>
void drive(Floor& floor, PointMm from, PointMm to, bool brushes_on)
{
    const Degrees heading = degreesOfRadians(std::atan2(to.y - from.y, to.x - from.x));
    const int steps = 1 + static_cast<int>(distance(from, to) / 6);
    for (int i = 0; i <= steps; ++i)
        floor.follow({from + (static_cast<double>(i) / steps) * (to - from), heading}, brushes_on);
}

TEST(SweptFloor, CountsWhatBrushAndSideBrushTouch)
{
    const Home home = sketch(room(80, 60));
    SweptFloor floor(home);
    drive(floor, {1000, 1500}, {3000, 1500}, false);
    EXPECT_EQ(floor.areaM2(), 0) << "the brushes were off";
    floor.follow({{3000, 1500}, {180}}, false);
    drive(floor, {3000, 1500}, {1000, 1500}, true);
    // Heading back the side brush is on the upper side: 100 mm of brush below, 195 mm above, and a round end.
    EXPECT_THAT(floor.areaM2(), DoubleNear(2.0 * 0.3 + 0.16 * 0.17, 0.02));
    EXPECT_EQ(floor.againM2(), 0);
    floor.follow({{1000, 1500}, {0}}, false);
    drive(floor, {1000, 1500}, {3000, 1500}, true);
    // The first half metre was left less than a metre ago.
    EXPECT_THAT(floor.againM2(), DoubleNear(1.5 * 0.2, 0.03));

    floor.follow({{500, 500}, {0}}, false);
    const double before = floor.areaM2();
    floor.follow({{3500, 2500}, {0}}, true);
    EXPECT_THAT(floor.areaM2() - before, Lt(0.05)) << "it was carried";
}

TEST(ChargeNeed, IsWhatTheFloorThatIsLeftTakesByWhatItTookBefore)
{
    ChargeNeed need;
    EXPECT_EQ(need.forFloor(1), 40) << "the least";
    const int unknown = need.forFloor(40);
    // 20 percent for 10 square metres, a charge, and 10 percent for 5 more.
    need.follow(80, 0);
    need.follow(60, 10);
    EXPECT_EQ(need.forFloor(20), 64);
    need.follow(90, 10);
    need.follow(80, 15);
    EXPECT_EQ(need.forFloor(20), 64);
    EXPECT_EQ(need.forFloor(100), 100);
    // The next task shows anew what it takes.
    need.follow(80, 0);
    EXPECT_EQ(need.forFloor(40), unknown);
}

TEST(SweptFloor, ReachesWhatTheSideBrushGetsTo)
{
    // 3 m by 2 m, and a niche of 250 mm into which the body does not fit.
    std::vector<std::string> lines = room(62, 42);
    fill(lines, {1, 1}, {20, 5}, '#');
    const Home home = sketch(lines);
    const SweptFloor::Share share = SweptFloor(home).shareOf({2000, 1000});
    // All but what no disc of 218 mm around a middle that keeps 175 mm from the walls gets to: the corners.
    EXPECT_THAT(share.reachable_m2, DoubleNear(home.freeAreaM2(), 0.03));
    EXPECT_THAT(share.reachable_m2, Lt(home.freeAreaM2()));
    EXPECT_EQ(share.cleaned_m2, 0);
    EXPECT_EQ(SweptFloor(home).shareOf({100, 100}).reachable_m2, 0) << "within a wall";
}

TEST(SquaredDistances, AgreeWithALookAtEachPair)
{
    Chance source(5);
    for (int round = 0; round < 20; ++round) {
        const int columns = 1 + upTo(source, 20);
        const int rows = 1 + upTo(source, 20);
        std::vector<bool> marked(static_cast<std::size_t>(columns * rows));
        marked[static_cast<std::size_t>(upTo(source, columns * rows))] = true;
        for (std::size_t i = 0; i < marked.size(); ++i)
            marked[i] = marked[i] || upTo(source, 9) == 0;
        const std::vector<float> found = squaredDistancesTo(marked, columns, rows);
        for (int at = 0; at < columns * rows; ++at) {
            int least = columns * columns + rows * rows;
            for (int of = 0; of < columns * rows; ++of) {
                const int dx = at % columns - of % columns;
                const int dy = at / columns - of / columns;
                if (marked[static_cast<std::size_t>(of)])
                    least = std::min(least, dx * dx + dy * dy);
            }
            ASSERT_EQ(found[static_cast<std::size_t>(at)], static_cast<float>(least));
        }
    }
}

TEST(CleanedFloor, KeepsThePassInWhichFloorWasSwept)
{
    CleanedFloor floor;
    drive(floor, {0, 0}, {2000, 0}, true);
    EXPECT_EQ(floor.sweptQuarters(cellAt({1000, 20})), 4);
    EXPECT_EQ(floor.sweptQuarters(cellAt({1000, 260})), 0);
    EXPECT_THAT(floor.areaM2(), Gt(0.5));
    floor.setPass(2);
    EXPECT_EQ(floor.sweptQuarters(cellAt({1000, 20})), 0);
    EXPECT_TRUE(floor.follow({{1000, 10}, {90}}, true));
    EXPECT_FALSE(floor.follow({{1000, 10}, {90}}, true)) << "it has not moved";
    const double once = floor.areaM2();
    drive(floor, {2000, 0}, {0, 0}, true);
    EXPECT_EQ(floor.sweptQuarters(cellAt({1000, 20})), 4) << "again";
    EXPECT_EQ(floor.sweptQuarters(cellAt({1000, 20}), 1), 4);
    EXPECT_THAT(floor.areaM2(), Gt(once)) << "the side brush was on the other side";
}

// Round a rectangle with the wall on the right; how far it got until it knew that it had been here.
double roundABox(TracedWalls& walls, int chain, PointMm low, PointMm high)
{
    const std::vector<PointMm> corners{low, {high.x, low.y}, high, {low.x, high.y}};
    double driven = 0;
    for (std::size_t lap = 0; lap < 8; ++lap) {
        const PointMm from = corners[lap % 4];
        const PointMm to = corners[(lap + 1) % 4];
        const Degrees heading = degreesOfRadians(std::atan2(to.y - from.y, to.x - from.x));
        const int steps = static_cast<int>(distance(from, to) / 6);
        for (int i = 0; i < steps; ++i) {
            driven += distance(from, to) / steps;
            if (walls.draw(chain, {from + (static_cast<double>(i) / steps) * (to - from), heading}))
                return driven;
        }
    }
    return driven;
}

TEST(TracedWalls, AChainClosesAtItsOwnBeginningAndShutsItsFloorIn)
{
    TracedWalls walls;
    const int chain = walls.begin(true);
    EXPECT_EQ(walls.outside().at(cellAt({1000, 800})), 1);
    const double driven = roundABox(walls, chain, {0, 0}, {2000, 1600});
    EXPECT_THAT(driven, DoubleNear(7200 + 150, 150));
    const Grid<unsigned char> outside = walls.outside();
    EXPECT_EQ(outside.at(cellAt({1000, 800})), 0);
    EXPECT_EQ(outside.at(cellAt({2200, 800})), 1);
    EXPECT_TRUE(walls.isTraced(cellAt({1000, -200}))) << "the wall on the right";
    EXPECT_TRUE(walls.isTraced(cellAt({1000, -200}), {1100, 0}));
    EXPECT_FALSE(walls.isTraced(cellAt({1000, -200}), {1000, -400})) << "its other side";
    EXPECT_FALSE(walls.isTraced(cellAt({1000, 200})));
}

TEST(TracedWalls, TheOtherWallOfACorridorIsNotTheSame)
{
    TracedWalls walls;
    const int chain = walls.begin(true);
    EXPECT_THAT(roundABox(walls, chain, {0, 0}, {3000, 60}), DoubleNear(6120 + 150, 150));
}

TEST(TracedWalls, AnotherChainIsRunOnto)
{
    TracedWalls walls;
    roundABox(walls, walls.begin(true), {0, 0}, {2000, 1600});
    const int second = walls.begin(true);
    bool met = false;
    for (int i = 0; i < 100 && !met; ++i)
        met = walls.draw(second, {{500.0 + i * 6, 20}, {0}});
    EXPECT_TRUE(met);
    EXPECT_TRUE(walls.chains().back().open);
    walls.close(second);
    EXPECT_FALSE(walls.chains().back().open);
}

TEST(OfferBook, GivesTheSameTwiceAndAThirdTimeWhenSomethingChanged)
{
    OfferBook book;
    EXPECT_TRUE(book.take("line", {0, 0}));
    EXPECT_TRUE(book.take("line", {60, 60}));
    EXPECT_FALSE(book.take("line", {0, 0}));
    EXPECT_TRUE(book.take("block", {0, 0})) << "another kind";
    EXPECT_TRUE(book.take("line", {200, 0})) << "another place";
    book.changed({400, 0});
    EXPECT_FALSE(book.isOpen("line", {0, 0})) << "too far away";
    book.changed({100, 100});
    EXPECT_TRUE(book.take("line", {0, 0}));
    book.changed({100, 100});
    EXPECT_FALSE(book.take("line", {0, 0}));
    book.useUp("chain", {5, 5});
    EXPECT_FALSE(book.isOpen("chain", {0, 0}));
    book.reset();
    EXPECT_TRUE(book.isOpen("line", {0, 0}));
}

// However the rows of a narrow floor lie to those that lines are planned in.
TEST(CleaningRuns, ReachEachRowOfACorridor)
{
    for (int open_rows = 1; open_rows <= 4; ++open_rows) {
        for (int below = 0; below < kRowsPerLine; ++below) {
            std::vector<std::string> lines = room(40, 30);
            fill(lines, {1, 1}, {38, 1 + below}, '#');
            const int upper = 2 + below + 7 + open_rows;
            fill(lines, {1, upper}, {38, 28}, '#');
            const PlanningMap plan = makePlanningMap(gridOf(lines), {});
            const auto runs = cleaningRuns(plan, plan.window(), false, [](CellIndex) { return true; });
            int rows = 0;
            for (int row = 0; row < 30; ++row) {
                const bool open = plan.at({20, row}) == Ground::Open;
                rows += open ? 1 : 0;
                EXPECT_TRUE(!open || std::any_of(runs.begin(), runs.end(),
                                                 [row](const CleaningRun& run) {
                                                     return std::abs(run.first.row - row) <= 1;
                                                 }))
                    << open_rows << ' ' << below;
            }
            EXPECT_THAT(rows, Gt(0)) << open_rows;
        }
    }
}

// Drives each run that the planner gives, as it gives them, until it gives none.
TEST(CleaningRuns, SweepAllLineFloorOfAnyRoomOnce)
{
    Chance source(11);
    for (int round = 0; round < 12; ++round) {
        std::vector<std::string> lines = room(70, 50);
        for (int thing = 0; thing < 4; ++thing) {
            const int column = 5 + upTo(source, 50);
            const int row = 5 + upTo(source, 35);
            fill(lines, {column, row}, {column + upTo(source, 12), row + upTo(source, 8)}, '#');
        }
        const Home home = sketch(lines);
        const PlanningMap plan = makePlanningMap(gridOf(home), {});
        CleanedFloor floor;
        const bool along_y = round % 2 == 1;
        const auto unswept = [&](CellIndex cell) { return floor.sweptQuarters(cell) < 2; };
        CellIndex at{4, 4};
        int driven = 0;
        for (; driven < 400; ++driven) {
            const auto runs = cleaningRuns(plan, plan.window(), along_y, unswept);
            const auto run = nearestRun(runs, costsFor(plan, at, {.unknown = false}), at);
            if (!run) {
                break;
            }
            ASSERT_EQ(plan.at(run->first), Ground::Open);
            ASSERT_EQ(plan.at(run->last), Ground::Open);
            floor.follow({centreOf(run->first), {along_y ? 90.0 : 0.0}}, false);
            if (run->first == run->last)  // a spot: the robot comes over it
                drive(floor, centreOf(run->first) - PointMm{20, 0}, centreOf(run->first) + PointMm{20, 0},
                      true);
            else
                drive(floor, centreOf(run->first), centreOf(run->last), true);
            at = run->last;
        }
        EXPECT_THAT(driven, Lt(200)) << "round " << round;
        // What is left cannot be reached from where it began, or is too little for a line.
        const auto left = [&](CellIndex cell) { return floor.sweptQuarters(cell) < 1; };
        const CostGrid costs = costsFor(plan, at, {.unknown = false});
        EXPECT_FALSE(findNearest(costs, at,
                                 [&](CellIndex cell) {
                                     const CellIndex step{along_y ? 0 : 1, along_y ? 1 : 0};
                                     return plan.at(cell) == Ground::Open && isOpenAround(plan, cell) &&
                                            left(cell) &&
                                            left({cell.column + step.column, cell.row + step.row}) &&
                                            left({cell.column - step.column, cell.row - step.row});
                                 }))
            << "round " << round;
    }
}

}  // namespace
}  // namespace vemra::robot
