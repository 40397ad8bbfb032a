#include "robot/planning/planner.h"

#include <array>
#include <cstdlib>

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

bool isTight(Ground ground)
{
    return ground == Ground::Tight || ground == Ground::ForbiddenTight;
}

// The cells of the virtual wall in which the robot stands.
struct OwnWall
{
    Grid<std::uint8_t> cells;
    bool leads_out = false;
};

// Where the body would touch something, only cells that `passable` holds for belong to it; of a line, only
// those that `over_line` holds for.
OwnWall floodWall(const PlanningMap& map, CellIndex from, const std::function<bool(CellIndex)>& passable,
                  const std::function<bool(CellIndex)>& over_line)
{
    OwnWall wall{Grid<std::uint8_t>(map.window(), 0, 0)};
    std::vector<CellIndex> waiting{from};
    wall.cells.set(from, 1);
    while (!waiting.empty()) {
        const CellIndex cell = waiting.back();
        waiting.pop_back();
        for (const CellIndex beside :
             {CellIndex{cell.column + 1, cell.row}, CellIndex{cell.column - 1, cell.row},
              CellIndex{cell.column, cell.row + 1}, CellIndex{cell.column, cell.row - 1}}) {
            const Ground ground = map.at(beside);
            wall.leads_out = wall.leads_out || ground == Ground::Open || ground == Ground::Unknown ||
                             (ground == Ground::Tight && passable(beside));
            if (wall.cells.at(beside) == 0 &&
                (ground == Ground::Forbidden || (ground == Ground::ForbiddenTight && passable(beside)) ||
                 (ground == Ground::ForbiddenLine && over_line(beside)))) {
                wall.cells.set(beside, 1);
                waiting.push_back(beside);
            }
        }
    }
    return wall;
}

// A robot beside a line leaves its wall to its own side, one that stands on the very line to either. Only
// between a line and something else, where its own side is no way out, it goes over the line.
Grid<std::uint8_t> virtualWallAround(const PlanningMap& map, CellIndex from,
                                     const std::function<bool(CellIndex)>& passable)
{
    constexpr int kOffTheLineCells = 2;
    if (!isForbidden(map.at(from))) {
        return Grid<std::uint8_t>(map.window(), 0, 0);
    }
    const bool on_line = map.at(from) == Ground::ForbiddenLine;
    OwnWall wall = floodWall(map, from, passable, [&](CellIndex cell) {
        return on_line && std::abs(cell.column - from.column) <= kOffTheLineCells &&
               std::abs(cell.row - from.row) <= kOffTheLineCells;
    });
    if (!wall.leads_out) {
        wall = floodWall(map, from, passable, [](CellIndex) { return true; });
    }
    return std::move(wall.cells);
}

// The narrow stretch in which the robot stands, as far as it came through it.
Grid<std::uint8_t> wayItCame(const PlanningMap& map, CellIndex from, const WayRules& rules)
{
    Grid<std::uint8_t> way(map.window(), 0, 0);
    if (!rules.came_by || !isTight(map.at(from))) {
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
                if (isTight(map.at(beside)) && way.at(beside) == 0 && rules.came_by(beside)) {
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
    const bool bounded = rules.region && rules.region->contains(from);
    const int room_at_start = map.room.at(from);
    const Grid<std::uint8_t> way_it_came = wayItCame(map, from, rules);
    const auto isAtStart = [&](CellIndex cell) {
        const int room = map.room.at(cell);
        return std::abs(cell.column - from.column) <= kRimCells &&
               std::abs(cell.row - from.row) <= kRimCells && room > 0 && room >= room_at_start;
    };
    const auto costOfTight = [&](CellIndex cell) {
        return isAtStart(cell) || way_it_came.at(cell) != 0 ? kOffTheRim
               : rules.narrow && rules.narrow(cell)         ? kNarrow
                                                            : 0;
    };
    const Grid<std::uint8_t> own_wall =
        virtualWallAround(map, from, [&](CellIndex cell) { return costOfTight(cell) != 0; });
    for (std::size_t i = 0; i < costs.cells().size(); ++i) {
        const CellIndex cell = map.window().cellOf(i);
        if (bounded && !rules.region->contains(cell)) {
            continue;
        }
        const int room = map.room.cells()[i];
        int cost = 0;
        switch (map.ground.cells()[i]) {
            case Ground::Open:
                cost = kPlainStep + nearObstacle(room);
                break;
            case Ground::Unknown:
                cost = rules.unknown || isAtStart(cell) ? kPlainStep + kOnUnknown + nearObstacle(room) : 0;
                break;
            case Ground::Tight:
                cost = costOfTight(cell);
                break;
            case Ground::Forbidden:
            case Ground::ForbiddenLine:
                cost = own_wall.cells()[i] != 0 ? kOutOfVirtualWall : 0;
                break;
            case Ground::ForbiddenTight:
                cost = own_wall.cells()[i] != 0 ? costOfTight(cell) : 0;
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
        const int cost = costs.at(cell);
        const Ground ground = map.at(cell);
        return isTight(ground) && cost == kNarrow ? Stretch::Narrow
               : isForbidden(ground) && cost != 0 ? Stretch::OutOfVirtualWall
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
