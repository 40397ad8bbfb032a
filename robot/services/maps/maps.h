#pragma once

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The stored map of the home and SLAM's part in opening and closing it.
class MapService final : public Service
{
public:
    MapService(const RobotParts& parts, const ScenarioStart& start);

    void install(leaf::LeafHost& host) override;

private:
    void installSlam(leaf::LeafHost& host);
    void presetKeys();
    void cleanComplete();
    /// Whether the rooms of a timed order become the robot's task: while it charges, while it does a task of
    /// that kind, and while it rests without a task.
    [[nodiscard]] bool takesOrder(Mode order) const;

    RobotParts parts_;
    bool stored_;          ///< a map of the home was saved
    double check_result_;  ///< what SLAM's check of it comes to; 0 is good
    bool slam_resumable_ = false;
};

}  // namespace vemra::robot
