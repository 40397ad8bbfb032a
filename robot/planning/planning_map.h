#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "robot/belief/grid.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// What the middle of the robot may do on a cell.
enum class Ground : std::uint8_t
{
    Open,            ///< stand there
    Unknown,         ///< perhaps: nobody has seen all of what the body would stand on
    Tight,           ///< the body would touch something, as far as the map knows
    Forbidden,       ///< nothing but a virtual wall is in the way
    ForbiddenTight,  ///< a virtual wall, and the body would touch something as well
    ForbiddenLine,   ///< the very line of a virtual wall, which no way crosses
    Solid            ///< there is something
};

/// A virtual wall holds the robot off the place, or in it.
inline bool isForbidden(Ground ground)
{
    return ground == Ground::Forbidden || ground == Ground::ForbiddenTight || ground == Ground::ForbiddenLine;
}

/// The same ground within a virtual wall.
inline Ground forbidden(Ground ground)
{
    switch (ground) {
        case Ground::Open:
        case Ground::Unknown:
            return Ground::Forbidden;
        case Ground::Tight:
            return Ground::ForbiddenTight;
        default:
            return ground;
    }
}

/// The map as a search sees it: obstacles grown by the robot's radius.
struct PlanningMap
{
    /// Distances are looked at up to this many cells.
    static constexpr int kFarCells = 10;

    Grid<Ground> ground{Ground::Solid};
    /// Square of the distance to the middle of the nearest obstacle cell, in cells; at most kFarCells
    /// squared.
    Grid<std::uint8_t> room{0};

    const CellWindow& window() const { return ground.window(); }
    Ground at(CellIndex cell) const { return ground.at(cell); }
    /// From the middle of the cell to the nearest edge of an obstacle, about; at most 475 mm.
    double clearanceMm(CellIndex cell) const;
};

/// The cell and the eight around it are open.
bool isOpenAround(const PlanningMap& map, CellIndex cell);

struct PlanningSources
{
    std::span<const PointMm> contacts = {};       ///< things that only the bumper met
    const VirtualWalls* virtual_walls = nullptr;  ///< none if they are switched off
};

/// The window of `cells` as a planning map; beyond it everything counts as solid. The disc of the robot fits
/// on a cell when the nearest obstacle cell is four or more cells away, middle to middle. Where the robot
/// came through a narrower gap the way is a bridge, which is crossed with care; a plain drive would refuse
/// it.
PlanningMap makePlanningMap(const Grid<CellState>& cells, const PlanningSources& sources);

/// For each cell the square of the distance to the nearest cell of a state, at most `far` cells. Two passes,
/// column by column and row by row (Rosenfeld and Pfaltz 1968; exact within `far`).
Grid<std::uint8_t> squaredDistances(const Grid<CellState>& cells, CellState state, int far);

}  // namespace vemra::robot
