#pragma once

#include <optional>

#include "robot/body/laser.h"

namespace vemra::robot {

/// The bearing in which a straight wall looks that the laser sees in a direction, within 25 degrees of it:
/// the normal of the first principal axis of its points, towards the robot. No value where too little is
/// seen, or what is seen is no straight line.
[[nodiscard]] std::optional<Degrees> wallNormal(const LaserScan& scan, Degrees bearing);

}  // namespace vemra::robot
