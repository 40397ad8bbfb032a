#pragma once

#include <utility>
#include <vector>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What the user has set in the app and the robot kept over power-off, and whatever a scenario writes on the
/// blackboard itself.
class SettingsService final : public Service
{
public:
    SettingsService(const RobotParts& parts, const ScenarioStart& start) : parts_(parts), start_(start.keys)
    {}

    void install(leaf::LeafHost& host) override;
    bool take(const Happening& what) override;

private:
    void write(const SetKeys& set);

    RobotParts parts_;
    SetKeys start_;
};

}  // namespace vemra::robot
