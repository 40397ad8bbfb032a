#pragma once

#include "robot/geometry/points.h"

namespace vemra::robot {

/// Where the robot believes it is, in the frame of the map. The yaw counts on over whole turns: after one
/// turn to the left it is 360 degrees larger than before.
class PoseSource
{
public:
    virtual ~PoseSource() = default;
    [[nodiscard]] virtual PoseMm pose() const = 0;

protected:
    PoseSource() = default;
    PoseSource(const PoseSource&) = default;
    PoseSource& operator=(const PoseSource&) = default;
};

}  // namespace vemra::robot
