#include <limits>

#include "robot/base/chance.h"
#include "robot/grid_sketch.h"
#include "robot/planning/arcs.h"
#include "robot/planning/planner.h"
#include "robot/world/dock.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

// Two rooms of 1.5 m and a wall between them, with a door in it of so many cells.
std::vector<std::string> twoRooms(int door_cells)
{
    std::vector<std::string> lines = room(62, 32);
    fill(lines, {30, 1}, {31, 30}, '#');
    fill(lines, {30, 10}, {31, 10 + door_cells - 1}, '.');
    return lines;
}

constexpr CellIndex kLeft{8, 20};
constexpr CellIndex kRight{52, 20};

struct Search
{
    explicit Search(const std::vector<std::string>& lines, const PlanningSources& sources = {},
                    const WayRules& rules = {})
        : map(makePlanningMap(gridOf(lines), sources)), costs(costsFor(map, kLeft, rules))
    {}
    std::optional<GridPath> way(PointMm to, double radius_mm = 300) const
    {
        return findWay(map, costs, kLeft, to, radius_mm);
    }
    std::optional<GridPath> way(CellIndex to) const { return way(centreOf(to)); }

    PlanningMap map;
    CostGrid costs;
};

TEST(PlanningMap, GrowsObstaclesByTheRobotsRadius)
{
    std::vector<std::string> lines = room(20, 20);
    fill(lines, {11, 8}, {11, 8}, '#');
    const Home home = sketch(lines);
    const PlanningMap map = makePlanningMap(gridOf(home), {});
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 20; ++column) {
            const CellIndex cell{column, row};
            const bool fits = home.isDiscFree(home.centreOf(cell), kRobotRadiusMm);
            // Between the pillar and a wall there is as much room as the body is wide, and none to spare.
            const bool between = (row == 8 && column == 15) || (column == 11 && row == 4);
            EXPECT_EQ(map.at(cell) == Ground::Open, fits && !between) << column << ' ' << row;
        }
    }
    EXPECT_EQ(map.at({-1, 5}), Ground::Solid);
}

TEST(FindWay, GoesThroughADoorAndKeepsOffItsPosts)
{
    const Search search(twoRooms(14));
    const auto way = search.way(kRight);
    ASSERT_TRUE(way);
    EXPECT_EQ(way->cells.front(), kLeft);
    EXPECT_EQ(way->cells.back(), kRight);
    for (const CellIndex cell : way->cells) {
        EXPECT_EQ(search.map.at(cell), Ground::Open);
        if (cell.column == 30) {
            EXPECT_THAT(search.map.clearanceMm(cell), Ge(300)) << "the middle of the door";
        }
    }
}

TEST(FindWay, AGoalWithoutRoomIsReplacedByANearOneOnThisSideOfTheWall)
{
    const Search search(twoRooms(4));  // too narrow for the robot
    const PointMm at_wall{300, 75};
    const auto way = search.way(at_wall);
    ASSERT_TRUE(way);
    EXPECT_LT(distance(centreOf(way->cells.back()), at_wall), 200);
    // 100 mm of wall between: nearer than 300 mm, but not to be reached.
    EXPECT_FALSE(search.way(PointMm{1650, 400}, 450));
    EXPECT_FALSE(search.way(PointMm{300, 75}, 50));
}

TEST(FindWay, StaysWithinTheRegion)
{
    const std::vector<std::string> lines = twoRooms(14);
    const CellWindow left_room{{0, 0}, {30, 32}};
    EXPECT_FALSE(Search(lines, {}, {.region = left_room}).way(kRight));
    EXPECT_TRUE(Search(lines, {}, {.region = left_room}).way(CellIndex{20, 5}));
}

TEST(FindWay, ARobotAtAWallFindsItsWayOff)
{
    const PlanningMap map = makePlanningMap(gridOf(room(40, 40)), {});
    for (const CellIndex at_wall : {CellIndex{2, 20}, CellIndex{1, 1}, CellIndex{38, 2}}) {
        const CostGrid costs = costsFor(map, at_wall, {});
        EXPECT_TRUE(findWay(map, costs, at_wall, centreOf({20, 20}), 100)) << at_wall.column;
    }
}

// Against a look at all cells that can be reached.
TEST(FindWay, TheNearestPlaceIsFoundWithoutAFlood)
{
    Chance chance(5);
    int failed = 0;
    for (int i = 0; i < 300; ++i) {
        CostGrid costs({{-3, -3}, {17, 17}}, 0, 0);
        for (std::uint8_t& cost : costs.cells())
            cost = chance.uniform() < 0.6 ? static_cast<std::uint8_t>(10 + chance.uniform() * 30) : 0;
        const PointMm to{chance.uniform() * 1400 - 400, chance.uniform() * 1400 - 400};
        const double radius_mm =
            i % 10 == 0 ? std::numeric_limits<double>::infinity() : chance.uniform() * 400;
        double best_mm = radius_mm;
        bool any = false;
        findNearest(costs, {5, 5}, [&](CellIndex cell) {
            any = any || distance(centreOf(cell), to) <= radius_mm;
            best_mm = std::min(best_mm, distance(centreOf(cell), to));
            return false;
        });
        const auto way = findWayCloseTo(costs, {5, 5}, to, radius_mm);
        ASSERT_EQ(way.has_value(), any) << i;
        failed += way ? 0 : 1;
        if (way) {
            EXPECT_EQ(distance(centreOf(way->cells.back()), to), best_mm) << i;
            EXPECT_EQ(way->cells.front(), (CellIndex{5, 5}));
        }
    }
    EXPECT_THAT(failed, AllOf(Gt(50), Lt(250)));
}

TEST(FindPath, NoStepGoesPastACornerOrThroughTheRim)
{
    CostGrid costs({{0, 0}, {3, 3}}, kPlainStep, 0);
    costs.set({1, 0}, 0);
    const auto round = findPath(costs, {0, 0}, {1, 1});
    ASSERT_TRUE(round);
    EXPECT_THAT(round->cells, ElementsAre(CellIndex{0, 0}, CellIndex{0, 1}, CellIndex{1, 1}));
    EXPECT_EQ(round->cost, 2 * kPlainStep);
    costs.set({0, 1}, 0);
    EXPECT_FALSE(findPath(costs, {0, 0}, {1, 1}));
    // The last cell of a row and the first of the next are no neighbours.
    EXPECT_EQ(findPath(costs, {2, 1}, {1, 2})->cells.size(), 2U);
    EXPECT_FALSE(findPath(costs, {2, 0}, {3, 0}));
}

TEST(Towards, DrivesAtTheCarrotRoundWhatStandsThereAndNotIntoAWall)
{
    const PoseMm pose{{0, 0}, {0}};
    const auto straight = towards({260, 0}, 2000, pose, {}, {});
    ASSERT_TRUE(straight);
    EXPECT_GT(straight->forward, 250);
    EXPECT_NEAR(straight->turn, 0, 2);
    EXPECT_LT(towards({260, 0}, 40, pose, {}, {})->forward, 230) << "slower at the end";
    const auto behind = towards({-200, 100}, 2000, pose, {}, {});
    ASSERT_TRUE(behind);
    EXPECT_EQ(behind->forward, 0);
    EXPECT_GT(behind->turn, 0);
    const auto round = towards({260, 0}, 2000, pose, std::vector<PointMm>{{420, 40}}, {});
    ASSERT_TRUE(round);
    EXPECT_LT(round->turn, -5) << "past it on the right";

    std::vector<PointMm> ahead;
    std::vector<PointMm> beside;
    for (double mm = -500; mm <= 500; mm += 20) {
        ahead.push_back({182, mm});
        beside.push_back({mm, 174});
    }
    EXPECT_FALSE(towards({260, 0}, 2000, pose, ahead, {}));
    EXPECT_TRUE(towards({260, -60}, 2000, pose, beside, {})) << "touching it, the robot can leave along it";
}

TEST(FindWay, LeadsOutOfANarrowPlaceByTheWayItCame)
{
    // A lane of 350 mm, 900 mm deep, off a room.
    std::vector<std::string> lines = room(60, 40);
    fill(lines, {1, 1}, {25, 15}, '#');
    fill(lines, {1, 23}, {25, 38}, '#');
    const PlanningMap map = makePlanningMap(gridOf(sketch(lines)), {});
    const CellIndex within{5, 19};
    ASSERT_EQ(map.at(within), Ground::Tight);
    EXPECT_FALSE(findPath(costsFor(map, within, {}), within, {45, 20}));
    const auto came = [](CellIndex cell) { return cell.row == 19; };
    const auto way = findPath(costsFor(map, within, {.came_by = came}), within, {45, 20});
    ASSERT_TRUE(way);
    EXPECT_EQ(piecesOf(map, costsFor(map, within, {.came_by = came}), *way).size(), 1U) << "no bridge";
    EXPECT_FALSE(findPath(costsFor(map, {45, 20}, {.came_by = came}), {45, 20}, within))
        << "and not in again";
}

}  // namespace
}  // namespace vemra::robot
