#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"
#include "robot/services/sensing/sensing.h"

namespace vemra::robot {

/// Borders that nobody sees and that the robot takes for walls: of the part of the floor in work
/// (`SubregionBorder`) and of the map (`MapBorder`). A drive and a wall follow keep off them while their
/// sensor is on; touching one is a contact.
class BorderLeaves final
{
public:
    BorderLeaves(const RobotParts& parts, RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host);
    /// Takes the borders from their keys.
    void update();
    /// The borders count among what is felt.
    void feltBy(SensingService& sensing) const;

private:
    [[nodiscard]] std::string contact(std::string_view sensor) const;
    [[nodiscard]] std::optional<PointMm> nearestOf(std::string_view sensor) const;
    BT::NodeStatus trigger(const BT::TreeNode& node);

    RobotParts parts_;
    RobotMap& map_;
    const SensorSwitches& switches_;
};

}  // namespace vemra::robot
