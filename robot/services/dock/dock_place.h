#pragma once

#include <optional>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Where the dock stands on the map: where the robot last stood on its contacts, kept with the stored map,
/// or reckoned from the drive off the dock.
class DockPlace final : public Service
{
public:
    DockPlace(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    /// A free place on the dock's middle line about 700 mm before its face; never the dock itself.
    [[nodiscard]] std::optional<PointMm> placeBefore() const;
    [[nodiscard]] BT::NodeStatus reckon(BT::TreeNode& node) const;

    RobotParts parts_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    std::optional<PoseMm> docked_;  ///< the robot's pose on the contacts, on the map
};

}  // namespace vemra::robot
