#pragma once

#include <string>

#include "robot/belief/robot_map.h"
#include "robot/services/core/service.h"
#include "robot/services/sensing/sensing.h"

namespace vemra::robot {

/// Leaves that keep steps in the floor closed while a home is cleaned and open them one by one when no other
/// floor is left. A closed step is met like a virtual wall (sensor `Step`).
class StepLeaves final
{
public:
    StepLeaves(const RobotParts& parts, RobotMap& map) : parts_(parts), map_(map) {}

    void install(leaf::LeafHost& host);
    /// Closed steps count among what is felt.
    void feltBy(SensingService& sensing) const;

private:
    [[nodiscard]] std::string contact() const;

    RobotParts parts_;
    RobotMap& map_;
};

}  // namespace vemra::robot
