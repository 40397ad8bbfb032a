#pragma once

#include <vector>

#include "robot/world/world.h"

namespace vemra::robot {

/// The floor that a laser of this range sees from somewhere: middles of free cells that a beam crosses on its
/// way from a place that the robot can get to from `from`. Looked at from places 200 mm apart, with two beams
/// a degree. Ground truth, for figures alone.
[[nodiscard]] std::vector<PointMm> floorInSight(const World& world, PointMm from, double range_mm);

}  // namespace vemra::robot
