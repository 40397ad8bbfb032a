#pragma once

#include <vector>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Places all over the reachable floor to look for the dock from, visited one after the other. The list is
/// `generate_points` on the blackboard; `navi_target_point` gets the next one.
class RandomPoints final : public Service
{
public:
    RandomPoints(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), chance_(parts.chance.branch()), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;

private:
    BT::NodeStatus generate();
    BT::NodeStatus takeNext();

    RobotParts parts_;
    Chance chance_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    std::vector<PointMm> left_;
};

}  // namespace vemra::robot
