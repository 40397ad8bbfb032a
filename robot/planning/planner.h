#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "robot/planning/grid_search.h"
#include "robot/planning/planning_map.h"

namespace vemra::robot {

/// Over what a way may lead.
struct WayRules
{
    bool unknown = true;  ///< over floor that nobody has seen yet
    /// Over stretches that are too narrow by the map, at a high price: gives the cells of those that may be
    /// tried. None: no such stretch.
    std::function<bool(CellIndex)> narrow = {};
    /// Where the robot has been: out of a narrow place it goes the way that it came.
    std::function<bool(CellIndex)> came_by = {};
    std::optional<CellWindow> region = {};  ///< nothing beyond it, unless the way begins there
};

/// The costs of a search that begins at `from`. Steps near obstacles cost more. Around a robot that stands
/// too near to something, and in a virtual wall in which it stands, the way out is open, at a price.
CostGrid costsFor(const PlanningMap& map, CellIndex from, const WayRules& rules);

enum class Stretch : std::uint8_t
{
    Plain,
    OutOfVirtualWall,
    Narrow
};

/// A piece of a way, drawn with straight lines.
struct WayPiece
{
    Stretch kind = Stretch::Plain;
    std::vector<CellIndex> cells;  ///< all of them; the last one of the piece before is the first one here
    std::vector<PointMm> corners;  ///< middles of cells
};

/// Cuts a path where the kind of ground changes. What is not plain begins on the last plain cell before it
/// and ends a little behind the next one.
std::vector<WayPiece> piecesOf(const PlanningMap& map, const CostGrid& costs, const GridPath& path);

/// The way to a place, or, when the body does not fit there, to the nearest place within radius_mm that can
/// be reached and from which nothing solid lies before it. Nothing if there is none.
std::optional<GridPath> findWay(const PlanningMap& map, const CostGrid& costs, CellIndex from, PointMm to,
                                double radius_mm);

}  // namespace vemra::robot
