#pragma once

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Leaves about the edge of what is known, and about goals that cannot be reached as they are. The goal is
/// `navi_target_point`.
class ExploreLeaves final : public Service
{
public:
    ExploreLeaves(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;

private:
    BT::NodeStatus takeNearestReachable();
    [[nodiscard]] bool targetIsKnown() const;

    RobotParts parts_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
};

}  // namespace vemra::robot
