#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "robot/planning/grid_search.h"

namespace vemra::robot {

/// Visits the cells that a straight line touches, in order; where it passes through a corner both cells at
/// its sides as well. Stops when `visit` gives false, and then gives false itself.
bool walkLine(CellIndex from, CellIndex to, const std::function<bool(CellIndex)>& visit);

/// Whether no cell of the line costs more than `most`, or cannot be entered.
bool lineCosts(const CostGrid& costs, CellIndex from, CellIndex to, int most);

/// The corners of a path of cells when it is drawn with straight lines: the fewest, taken greedily, so that
/// no line leads over a cell dearer than the dearest that it spares. First and last cell are kept.
std::vector<CellIndex> straightened(const CostGrid& costs, std::span<const CellIndex> path);

/// A point on a line of corners: how far along it lies, in mm, and between which corners.
struct PlaceOnLine
{
    PointMm at;
    double along_mm = 0;
    double away_mm = 0;
};
/// The place nearest to a point, among those from `from_mm` to `to_mm` along the line. The line has one
/// corner at least.
PlaceOnLine nearestOnLine(std::span<const PointMm> line, PointMm point, double from_mm, double to_mm);
/// The point so far along; the end when the line is shorter.
PointMm pointAlong(std::span<const PointMm> line, double along_mm);
double lengthOf(std::span<const PointMm> line);

}  // namespace vemra::robot
