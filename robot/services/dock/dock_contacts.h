#pragma once

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What the robot knows of its dock by touch.
class DockContactService final : public Service
{
public:
    explicit DockContactService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    RobotParts parts_;
};

}  // namespace vemra::robot
