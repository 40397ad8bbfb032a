#pragma once

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Leaves that look for places on the robot's own track. A place is "slamclear" when the laser's map alone
/// leaves the body room there, "clear" when what it bumped into and virtual walls do as well. The key
/// `robot_trajectory` is there as soon as the robot has a track, and gives its length.
class TrajectoryService final : public Service
{
public:
    TrajectoryService(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    [[nodiscard]] Track::Usable usable(const BT::TreeNode& node) const;

    RobotParts parts_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
};

}  // namespace vemra::robot
