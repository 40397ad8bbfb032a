#include <gmock/gmock.h>

#include "robot/grid_sketch.h"
#include "robot/planning/lines.h"
#include "robot/planning/planner.h"
#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

using testing::ElementsAre;
using testing::Ge;

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
    const std::vector<std::string> lines = room(20, 20);
    const Home home = sketch(lines);
    const PlanningMap map = makePlanningMap(gridOf(home), {});
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 20; ++column) {
            const CellIndex cell{column, row};
            const bool fits = home.isDiscFree(home.centreOf(cell), kRobotRadiusMm);
            EXPECT_EQ(map.at(cell) == Ground::Open, fits) << column << ' ' << row;
        }
    }
    EXPECT_EQ(map.at({-1, 5}), Ground::Solid);
    EXPECT_NEAR(map.clearanceMm({5, 10}), 225, 1);
}

TEST(PlanningMap, DistancesAreThoseOfTheNearestObstacle)
{
    std::vector<std::string> lines(25, std::string(25, '.'));
    fill(lines, {3, 4}, {3, 4}, '#');
    fill(lines, {17, 20}, {18, 20}, '#');
    fill(lines, {12, 2}, {12, 9}, '#');
    const Grid<CellState> cells = gridOf(lines);
    const int far = 10;
    const Grid<std::uint8_t> squares = squaredDistances(cells, CellState::Occupied, far);
    for (std::size_t i = 0; i < cells.cells().size(); ++i) {
        const CellIndex a = cells.window().cellOf(i);
        int nearest = far * far;
        for (std::size_t j = 0; j < cells.cells().size(); ++j) {
            const CellIndex b = cells.window().cellOf(j);
            if (cells.at(b) == CellState::Occupied) {
                nearest = std::min(nearest, (a.column - b.column) * (a.column - b.column) +
                                                (a.row - b.row) * (a.row - b.row));
            }
        }
        EXPECT_EQ(squares.at(a), nearest) << a.column << ' ' << a.row;
    }
}

TEST(PlanningMap, WhatTheBumperMetAndVirtualWallsAreInTheWay)
{
    VirtualWalls walls;
    walls.lines.push_back({{1000, 300}, {1000, 700}});
    walls.areas.push_back({{2000, 800}, {2400, 800}, {2400, 1200}, {2000, 1200}});
    const std::vector<PointMm> contacts{{400, 1200}};
    const PlanningMap map =
        makePlanningMap(gridOf(room(62, 32)), {.contacts = contacts, .virtual_walls = &walls});
    EXPECT_EQ(map.at(cellAt({400, 1200})), Ground::Solid);
    EXPECT_EQ(map.at(cellAt({400, 1100})), Ground::Tight);
    EXPECT_EQ(map.at(cellAt({1125, 500})), Ground::Forbidden);
    EXPECT_EQ(map.at(cellAt({1225, 500})), Ground::Open);
    EXPECT_EQ(map.at(cellAt({2200, 1000})), Ground::Forbidden);
    EXPECT_EQ(map.at(cellAt({1875, 1000})), Ground::Forbidden);
    EXPECT_EQ(map.at(cellAt({1775, 1000})), Ground::Open);
}

TEST(PlanningMap, WhereTheRobotStoodBeforeItFitsOneCellTighter)
{
    std::vector<std::string> lines = twoRooms(6);  // 300 mm by the map
    const auto stood = [](CellIndex cell) { return cell.row == 12 || cell.row == 13; };
    EXPECT_FALSE(Search(lines).way(kRight));
    EXPECT_TRUE(Search(lines, {.passed = stood}).way(kRight));
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

TEST(FindWay, TakesTheLongWayRatherThanNone)
{
    std::vector<std::string> lines = twoRooms(10);
    const auto direct = Search(lines).way(kRight);
    fill(lines, {30, 10}, {31, 19}, '#');
    EXPECT_FALSE(Search(lines).way(kRight)) << "the door is shut";
    fill(lines, {30, 1}, {31, 9}, '.');
    const auto round = Search(lines).way(kRight);
    ASSERT_TRUE(direct && round);
    EXPECT_GT(round->cost, direct->cost);
}

TEST(FindWay, UnknownFloorCountsOnlyWhereItMay)
{
    std::vector<std::string> lines = twoRooms(10);
    fill(lines, {28, 1}, {33, 30}, '?');
    fill(lines, {30, 1}, {31, 9}, '#');
    EXPECT_TRUE(Search(lines).way(kRight));
    EXPECT_FALSE(Search(lines, {}, {.unknown = false}).way(kRight));
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

TEST(PiecesOf, OutOfAVirtualWallAndThroughAGapAreBridges)
{
    VirtualWalls walls;
    walls.areas.push_back({{200, 800}, {700, 800}, {700, 1300}, {200, 1300}});
    const PlanningMap map = makePlanningMap(gridOf(twoRooms(6)), {.virtual_walls = &walls});
    EXPECT_FALSE(findWay(map, costsFor(map, kLeft, {}), kLeft, centreOf(kRight), 100));
    const CostGrid costs =
        costsFor(map, kLeft, {.narrow = [&](CellIndex cell) { return map.room.at(cell) >= 9; }});
    const auto way = findWay(map, costs, kLeft, centreOf(kRight), 100);
    ASSERT_TRUE(way);
    const std::vector<WayPiece> pieces = piecesOf(map, costs, *way);
    ASSERT_EQ(pieces.size(), 4U);
    EXPECT_EQ(pieces[0].kind, Stretch::OutOfVirtualWall);
    EXPECT_EQ(pieces[1].kind, Stretch::Plain);
    EXPECT_EQ(pieces[2].kind, Stretch::Narrow);
    EXPECT_EQ(pieces[3].kind, Stretch::Plain);
    EXPECT_EQ(map.at(cellAt(pieces[0].corners.back())), Ground::Open);
    EXPECT_LT(pieces[2].corners.front().x, 1500);
    EXPECT_GT(pieces[2].corners.back().x, 1600);
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

TEST(Wavefront, FindsTheNearestWantedCellAndCountsTheFloor)
{
    const Search search(twoRooms(4));
    const auto nearest =
        findNearest(search.costs, kLeft, [](CellIndex cell) { return cell.row == 5 || cell.column == 25; });
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->cells.back().row, 5);
    const std::size_t floor = countReachable(search.costs, kLeft, 100000);
    EXPECT_EQ(floor, 23U * 24U);
    EXPECT_EQ(countReachable(search.costs, kLeft, 40), 40U);
}

TEST(Lines, AWayIsDrawnWithFewStraightLinesThatStayOnIt)
{
    std::vector<std::string> lines = room(60, 40);
    fill(lines, {20, 1}, {22, 28}, '#');
    const PlanningMap map = makePlanningMap(gridOf(lines), {});
    const CostGrid costs = costsFor(map, kLeft, {});
    const auto way = findPath(costs, {6, 6}, {50, 6});
    ASSERT_TRUE(way);
    const std::vector<CellIndex> corners = straightened(costs, way->cells);
    EXPECT_EQ(corners.front(), (CellIndex{6, 6}));
    EXPECT_EQ(corners.back(), (CellIndex{50, 6}));
    EXPECT_LE(corners.size(), 12U);
    EXPECT_LT(corners.size() * 4, way->cells.size());
    for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
        EXPECT_TRUE(
            walkLine(corners[i], corners[i + 1], [&](CellIndex c) { return map.at(c) == Ground::Open; }));
    }
}

TEST(Lines, AThinWallIsNotSeenThroughAtItsCorners)
{
    std::vector<CellIndex> seen;
    walkLine({0, 0}, {2, 1}, [&](CellIndex cell) {
        seen.push_back(cell);
        return true;
    });
    EXPECT_THAT(seen, ElementsAre(CellIndex{0, 0}, CellIndex{1, 0}, CellIndex{1, 1}, CellIndex{2, 1}));
    const auto blocked = [](CellIndex cell) { return !(cell == CellIndex{1, 0}); };
    EXPECT_FALSE(walkLine({0, 0}, {3, 3}, blocked));
}

TEST(Lines, PlacesOnALine)
{
    const std::vector<PointMm> line{{0, 0}, {1000, 0}, {1000, 1000}};
    EXPECT_DOUBLE_EQ(lengthOf(line), 2000);
    EXPECT_EQ(pointAlong(line, 1500), (PointMm{1000, 500}));
    EXPECT_EQ(pointAlong(line, 9999), (PointMm{1000, 1000}));
    const PlaceOnLine near_end = nearestOnLine(line, {900, 800}, 0, 2000);
    EXPECT_DOUBLE_EQ(near_end.along_mm, 1800);
    EXPECT_DOUBLE_EQ(near_end.away_mm, 100);
    // Only the first part is looked at.
    EXPECT_DOUBLE_EQ(nearestOnLine(line, {900, 800}, 0, 1000).along_mm, 900);
}

}  // namespace
}  // namespace vemra::robot
