#pragma once

#include "behaviortree_cpp/blackboard/blackboard.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// What the user forbade, as the app put it down: `virtual_wall_lines`, `virtual_wall_rects` and
/// `virtual_wall_mop_rects` are lists of x;y;x;y in mm, `polygon_virtual_walls` of the corners of one area.
/// What may not be mopped is forbidden while the cloth is used.
[[nodiscard]] VirtualWalls virtualWallsOf(const BT::Blackboard& keys);

}  // namespace vemra::robot
