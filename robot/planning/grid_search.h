#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// What a step onto a cell costs, in tenths of a plain straight step; 0: it cannot be entered. A diagonal
/// step costs 1.4 times as much and needs both cells beside it.
using CostGrid = Grid<std::uint8_t>;
inline constexpr int kPlainStep = 10;
/// No cell costs more.
inline constexpr int kMostStep = 160;

struct GridPath
{
    std::vector<CellIndex> cells;  ///< from the source to the goal, both included
    int cost = 0;
};

/// The cheapest way to a cell (A* with the octile distance; Hart, Nilsson and Raphael 1968). The source may
/// be a cell that cannot be entered. Nothing if there is no way.
std::optional<GridPath> findPath(const CostGrid& costs, CellIndex from, CellIndex to);

/// The cheapest way to any cell that is wanted (Dijkstra 1959).
std::optional<GridPath> findNearest(const CostGrid& costs, CellIndex from,
                                    const std::function<bool(CellIndex)>& wanted);

/// The way to the reachable cell that lies nearest to a point as the crow flies, if that is within a radius.
std::optional<GridPath> findWayCloseTo(const CostGrid& costs, CellIndex from, PointMm to, double radius_mm);

/// How many cells can be reached, the source among them; counting stops at `enough`.
std::size_t countReachable(const CostGrid& costs, CellIndex from, std::size_t enough);

}  // namespace vemra::robot
