#pragma once

#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

/// A straight piece of wall with free floor before all of it.
struct WallStretch
{
    PointMm middle;  ///< on the wall's surface
    Degrees looks;   ///< from the wall into the room
    double length_mm = 0;
};

struct WallNeeds
{
    double length_mm = 600;
    double depth_mm = 1000;  ///< free floor before the wall
    /// By how many cells the wall may stand back here and there: walls of a scanned home are seldom straight.
    int uneven_cells = 0;
};

/// All stretches along the rows and columns of the map, as long as they go, in a fixed order: walls that look
/// up, right, down, left, each from the lowest row or column on.
std::vector<WallStretch> freeWalls(const Home& home, const WallNeeds& needs);

/// The stretches that stand at an angle to the map, in a fixed order. A long wall may be given more than
/// once. They look into the room at right angles to the line through the steps of their cells, and `middle`
/// lies before the outermost of these. `uneven_cells` is not looked at.
std::vector<WallStretch> slantedWalls(const Home& home, const WallNeeds& needs);

}  // namespace vemra::robot
