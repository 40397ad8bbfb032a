#include "robot/planning/planning_map.h"

#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

constexpr int kFitsCells = 4;  // half a cell less is the robot's radius
constexpr int kFitsFrom = kFitsCells * kFitsCells;

// Obstacles as near as can be on both sides: a gap as wide as the body, through which nobody drives.
bool isBetween(const Grid<CellState>& obstacles, CellIndex cell)
{
    const auto solid = [&](int columns, int rows) {
        return obstacles.at({cell.column + columns, cell.row + rows}) == CellState::Occupied;
    };
    return (solid(kFitsCells, 0) && solid(-kFitsCells, 0)) || (solid(0, kFitsCells) && solid(0, -kFitsCells));
}

// A beam alone leaves a trace that is no way yet.
constexpr int kSeenAroundCells = 3;

// Ground becomes what `changed` makes of it, as far as a body may reach into the box.
void change(PlanningMap& map, const BoxMm& box, const std::function<Ground(PointMm, Ground)>& changed)
{
    const CellWindow window = intersection(cellsOf({box.low - PointMm{kRobotRadiusMm, kRobotRadiusMm},
                                                    box.high + PointMm{kRobotRadiusMm, kRobotRadiusMm}}),
                                           map.window());
    for (int row = window.low.row; row < window.end.row; ++row) {
        for (int column = window.low.column; column < window.end.column; ++column) {
            const CellIndex cell{column, row};
            map.ground.set(cell, changed(centreOf(cell), map.at(cell)));
        }
    }
}

void enterVirtualWalls(PlanningMap& map, const VirtualWalls& walls)
{
    // All cells that a line runs through are so near to it: neither a straight nor a diagonal step leads
    // across.
    const double on_line_mm = kCellMm * std::sqrt(0.5);
    for (const SegmentMm& line : walls.lines) {
        const BoxMm box{{std::min(line.from.x, line.to.x), std::min(line.from.y, line.to.y)},
                        {std::max(line.from.x, line.to.x), std::max(line.from.y, line.to.y)}};
        change(map, box, [&](PointMm p, Ground ground) {
            const double away = distance(nearestOn(line, p), p);
            return away >= kRobotRadiusMm                          ? ground
                   : away <= on_line_mm && ground != Ground::Solid ? Ground::ForbiddenLine
                                                                   : forbidden(ground);
        });
    }
    for (const PolygonMm& area : walls.areas) {
        BoxMm box{area.front(), area.front()};
        for (const PointMm corner : area) {
            box.low = {std::min(box.low.x, corner.x), std::min(box.low.y, corner.y)};
            box.high = {std::max(box.high.x, corner.x), std::max(box.high.y, corner.y)};
        }
        change(map, box, [&](PointMm p, Ground ground) {
            return isInside(area, p) || distance(nearestOn(area, p), p) < kRobotRadiusMm ? forbidden(ground)
                                                                                         : ground;
        });
    }
}

}  // namespace

double PlanningMap::clearanceMm(CellIndex cell) const
{
    return std::max(0.0, (std::sqrt(static_cast<double>(room.at(cell))) - 0.5) * kCellMm);
}

bool isOpenAround(const PlanningMap& map, CellIndex cell)
{
    for (int row = -1; row <= 1; ++row) {
        for (int column = -1; column <= 1; ++column) {
            if (map.at({cell.column + column, cell.row + row}) != Ground::Open) {
                return false;
            }
        }
    }
    return true;
}

Grid<std::uint8_t> squaredDistances(const Grid<CellState>& cells, CellState state, int far)
{
    const CellWindow& window = cells.window();
    const int columns = window.columns();
    const int rows = window.rows();
    const auto farthest = static_cast<std::uint8_t>(far * far);
    Grid<std::uint8_t> out(window, farthest, 0);
    if (window.empty()) {
        return out;
    }
    const auto width = static_cast<std::size_t>(columns);
    // Along each column: how far to the nearest such cell, upwards and downwards.
    std::vector<int> along(window.cells(), far);
    for (int column = 0; column < columns; ++column) {
        int away = far;
        for (int row = 0; row < rows; ++row) {
            const std::size_t at = static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column);
            away = cells.cells()[at] == state ? 0 : std::min(away + 1, far);
            along[at] = away;
        }
        away = far;
        for (int row = rows - 1; row >= 0; --row) {
            const std::size_t at = static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column);
            away = along[at] == 0 ? 0 : std::min(away + 1, far);
            along[at] = std::min(along[at], away);
        }
    }
    // Along each row, shifted against itself. The row has a rim of cells without any, so that the inner loop
    // is a plain one over numbers.
    const auto none = static_cast<std::uint16_t>(far * far);
    const auto rim = static_cast<std::size_t>(far);
    std::vector<std::uint16_t> row_squares(width + 2 * rim, none);
    std::vector<std::uint16_t> best(width);
    for (int row = 0; row < rows; ++row) {
        const std::size_t start = static_cast<std::size_t>(row) * width;
        for (std::size_t column = 0; column < width; ++column) {
            row_squares[column + rim] =
                static_cast<std::uint16_t>(along[start + column] * along[start + column]);
        }
        std::fill(best.begin(), best.end(), none);
        for (std::size_t shift = 0; shift <= 2 * rim; ++shift) {
            const int aside = static_cast<int>(shift) - far;
            const auto square = static_cast<std::uint16_t>(aside * aside);
            const std::uint16_t* shifted = row_squares.data() + shift;
            for (std::size_t column = 0; column < width; ++column) {
                best[column] = std::min(best[column], static_cast<std::uint16_t>(shifted[column] + square));
            }
        }
        for (std::size_t column = 0; column < width; ++column) {
            out.cells()[start + column] = static_cast<std::uint8_t>(best[column]);
        }
    }
    return out;
}

PlanningMap makePlanningMap(const Grid<CellState>& cells, const PlanningSources& sources)
{
    Grid<CellState> obstacles = cells;
    for (const PointMm contact : sources.contacts) {
        obstacles.set(cellAt(contact), CellState::Occupied);
    }
    PlanningMap map;
    map.room = squaredDistances(obstacles, CellState::Occupied, PlanningMap::kFarCells);
    const Grid<std::uint8_t> to_unknown = squaredDistances(obstacles, CellState::Unknown, kSeenAroundCells);
    map.ground = Grid<Ground>(cells.window(), Ground::Open, Ground::Solid);
    for (std::size_t i = 0; i < map.ground.cells().size(); ++i) {
        const int room = map.room.cells()[i];
        const bool fits =
            room > kFitsFrom || (room == kFitsFrom && !isBetween(obstacles, map.room.window().cellOf(i)));
        map.ground.cells()[i] = room == 0 ? Ground::Solid
                                : !fits   ? Ground::Tight
                                : to_unknown.cells()[i] < kSeenAroundCells * kSeenAroundCells
                                    ? Ground::Unknown
                                    : Ground::Open;
    }
    if (sources.virtual_walls != nullptr) {
        enterVirtualWalls(map, *sources.virtual_walls);
    }
    return map;
}

}  // namespace vemra::robot
