#pragma once

#include <optional>

#include "robot/belief/localisation.h"
#include "robot/belief/map_store.h"
#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Where the dock stands on the map: where the robot last stood on its contacts, kept with the stored map,
/// or reckoned from the drive off the dock. With the frame of the map goes what was known in it; on the
/// stored map it stands where it stood when that was kept.
class DockPlace final : public Service
{
public:
    DockPlace(const RobotParts& parts, const Localisation& localisation, const MapStore& store,
              const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), localisation_(localisation), store_(store), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    /// A free place on the dock's middle line about 700 mm before its face; never the dock itself.
    [[nodiscard]] std::optional<PointMm> placeBefore() const;
    [[nodiscard]] BT::NodeStatus reckon(BT::TreeNode& node) const;

    RobotParts parts_;
    const Localisation& localisation_;
    const MapStore& store_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    std::optional<PoseMm> docked_;  ///< the robot's pose on the contacts, on the map
    int frames_of_map_ = 0;
};

}  // namespace vemra::robot
