#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "robot/belief/sensor_switches.h"
#include "robot/body/pose_source.h"
#include "robot/services/core/service.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// What the robot feels: bumper, edges of the floor, virtual edges that count as contacts, wheels in the air,
/// being moved, standing level. Virtual edges are where the robot believes them to be.
class SensingService final : public Service
{
public:
    SensingService(const RobotParts& parts, const PoseSource& pose, SensorSwitches& switches,
                   const VirtualWalls& walls);

    void install(leaf::LeafHost& host) override;
    void update() override;

    /// The direction of the contact there is now, in the words of sensing_direction.h. The bumper comes
    /// first, then edges of the floor, then virtual ones, then what is behind.
    [[nodiscard]] std::string contact() const;

    /// A further kind of virtual edge, which counts while the sensor of that name is on. `direction` says
    /// where it is felt now, or "None".
    void addEdge(std::string sensor, std::function<std::string()> direction);

private:
    struct Edge
    {
        std::string sensor;
        std::function<std::string()> direction;
    };

    void installContacts(leaf::LeafHost& host);
    void installScopes(leaf::LeafHost& host);
    void installBodyState(leaf::LeafHost& host);
    [[nodiscard]] std::string virtualContact() const;
    BT::NodeStatus tellContact(BT::TreeNode& node) const;

    RobotParts parts_;
    const PoseSource& pose_;
    SensorSwitches& switches_;
    const VirtualWalls& walls_;
    std::vector<Edge> edges_;
    bool cliffs_off_ = false;
    WheelDrop wheels_before_sleep_;
};

}  // namespace vemra::robot
