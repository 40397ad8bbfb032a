#include "robot/planning/planner.h"

#include <array>

#include "robot/planning/lines.h"

namespace vemra::robot {
namespace {

// By the room of a cell, in cells: what a step there costs more. It keeps ways off walls without making
// doors dear.
constexpr std::array<int, 9> kNearObstacle = {40, 40, 40, 30, 24, 12, 6, 3, 1};
constexpr int kOnUnknown = 6;
constexpr int kOffTheRim = 60;
constexpr int kOutOfVirtualWall = 40;
constexpr int kNarrow = 110;
// A robot that stands too near to something finds its way out within this.
constexpr int kRimCells = 7;
constexpr std::size_t kPastBridgeCells = 3;
constexpr std::size_t kMostCameBy = 400;

int nearObstacle(int squared_room)
{
    const auto cells = static_cast<std::size_t>(std::sqrt(static_cast<double>(squared_room)));
    return cells < kNearObstacle.size() ? kNearObstacle.at(cells) : 0;
}

// The cells of the virtual wall in which the robot stands.
Grid<std::uint8_t> virtualWallAround(const PlanningMap& map, CellIndex from)
{
    Grid<std::uint8_t> around(map.window(), 0, 0);
    if (map.at(from) != Ground::Forbidden) {
        return around;
    }
    std::vector<CellIndex> waiting{from};
    around.set(from, 1);
    while (!waiting.empty()) {
        const CellIndex cell = waiting.back();
        waiting.pop_back();
        for (const CellIndex beside :
             {CellIndex{cell.column + 1, cell.row}, CellIndex{cell.column - 1, cell.row},
              CellIndex{cell.column, cell.row + 1}, CellIndex{cell.column, cell.row - 1}}) {
            if (map.at(beside) == Ground::Forbidden && around.at(beside) == 0) {
                around.set(beside, 1);
                waiting.push_back(beside);
            }
        }
    }
    return around;
}

// The narrow stretch in which the robot stands, as far as it came through it.
Grid<std::uint8_t> wayItCame(const PlanningMap& map, CellIndex from, const WayRules& rules)
{
    Grid<std::uint8_t> way(map.window(), 0, 0);
    if (!rules.came_by || map.at(from) != Ground::Tight) {
        return way;
    }
    std::vector<CellIndex> waiting{from};
    way.set(from, 1);
    for (std::size_t cells = 0; !waiting.empty() && cells < kMostCameBy; ++cells) {
        const CellIndex cell = waiting.back();
        waiting.pop_back();
        for (int row = -1; row <= 1; ++row) {
            for (int column = -1; column <= 1; ++column) {
                const CellIndex beside{cell.column + column, cell.row + row};
                if (map.at(beside) == Ground::Tight && way.at(beside) == 0 && rules.came_by(beside)) {
                    way.set(beside, 1);
                    waiting.push_back(beside);
                }
            }
        }
    }
    return way;
}

}  // namespace

CostGrid costsFor(const PlanningMap& map, CellIndex from, const WayRules& rules)
{
    CostGrid costs(map.window(), 0, 0);
    const Grid<std::uint8_t> own_wall = virtualWallAround(map, from);
    const bool bounded = rules.region && rules.region->contains(from);
    const int room_at_start = map.room.at(from);
    const Grid<std::uint8_t> way_it_came = wayItCame(map, from, rules);
    for (std::size_t i = 0; i < costs.cells().size(); ++i) {
        const CellIndex cell = map.window().cellOf(i);
        if (bounded && !rules.region->contains(cell)) {
            continue;
        }
        const int room = map.room.cells()[i];
        const bool at_start = std::abs(cell.column - from.column) <= kRimCells &&
                              std::abs(cell.row - from.row) <= kRimCells && room > 0 && room >= room_at_start;
        int cost = 0;
        switch (map.ground.cells()[i]) {
            case Ground::Open:
                cost = kPlainStep + nearObstacle(room);
                break;
            case Ground::Unknown:
                cost = rules.unknown || at_start ? kPlainStep + kOnUnknown + nearObstacle(room) : 0;
                break;
            case Ground::Tight:
                cost = at_start || way_it_came.cells()[i] != 0 ? kOffTheRim
                       : rules.narrow && rules.narrow(cell)    ? kNarrow
                                                               : 0;
                break;
            case Ground::Forbidden:
                cost = own_wall.cells()[i] != 0 ? kOutOfVirtualWall : 0;
                break;
            case Ground::Solid:
                break;
        }
        costs.cells()[i] = static_cast<std::uint8_t>(cost);
    }
    return costs;
}

std::vector<WayPiece> piecesOf(const PlanningMap& map, const CostGrid& costs, const GridPath& path)
{
    const auto kindOf = [&](CellIndex cell) {
        const Ground ground = map.at(cell);
        return ground == Ground::Forbidden && costs.at(cell) == kOutOfVirtualWall ? Stretch::OutOfVirtualWall
               : ground == Ground::Tight && costs.at(cell) == kNarrow             ? Stretch::Narrow
                                                                                  : Stretch::Plain;
    };
    std::vector<WayPiece> pieces;
    Stretch before = Stretch::Plain;
    for (std::size_t i = 0; i < path.cells.size(); ++i) {
        const CellIndex cell = path.cells[i];
        const Stretch kind = kindOf(cell);
        if (pieces.empty() || kind != before) {
            // A bridge reaches from the last open cell to where the robot is well past the next.
            if (!pieces.empty() && kind == Stretch::Plain) {
                for (std::size_t past = i; past < path.cells.size() && past < i + kPastBridgeCells &&
                                           kindOf(path.cells[past]) == Stretch::Plain;
                     ++past) {
                    pieces.back().cells.push_back(path.cells[past]);
                }
            }
            std::vector<CellIndex> joint;
            if (!pieces.empty() && kind != Stretch::Plain) {
                joint.push_back(path.cells[i - 1]);
            }
            pieces.push_back({kind, std::move(joint), {}});
            before = kind;
        }
        pieces.back().cells.push_back(cell);
    }
    for (WayPiece& piece : pieces) {
        for (const CellIndex corner : straightened(costs, piece.cells)) {
            piece.corners.push_back(centreOf(corner));
        }
    }
    return pieces;
}

std::optional<GridPath> findWay(const PlanningMap& map, const CostGrid& costs, CellIndex from, PointMm to,
                                double radius_mm)
{
    const CellIndex goal = cellAt(to);
    if (costs.at(goal) != 0) {
        return findPath(costs, from, goal);
    }
    auto close = findWayCloseTo(costs, from, to, radius_mm);
    if (!close) {
        return std::nullopt;
    }
    // Nothing solid may stand between, so that a goal beyond a wall is not taken for one at it. The goal
    // itself may lie in something: then its last cells do not count.
    constexpr int kInsideCells = 3;
    const bool open = walkLine(close->cells.back(), goal, [&](CellIndex cell) {
        const bool at_goal = std::max(std::abs(cell.column - goal.column), std::abs(cell.row - goal.row)) <=
                             (map.at(goal) == Ground::Solid ? kInsideCells : 0);
        return at_goal || map.at(cell) != Ground::Solid;
    });
    return open ? close : std::nullopt;
}

}  // namespace vemra::robot
