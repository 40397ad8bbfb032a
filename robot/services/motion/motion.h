#pragma once

#include "robot/body/pose_source.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// The leaves that move the wheels by themselves, and the keys that say where the robot is: `current_pose`,
/// `current_coord`, `current_yaw_deg` on the map, `current_odom` and `current_odom_yaw_deg` by dead
/// reckoning, `current_tick_cnt`. Yaws count on over whole turns.
class MotionService final : public Service
{
public:
    MotionService(const RobotParts& parts, const PoseSource& pose);

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    void installAccounts(leaf::LeafHost& host);
    void writePoseKeys();

    RobotParts parts_;
    const PoseSource& pose_;
    double looked_around_at_mm_ = 0;
    double wheel_mm_ = 0;
};

}  // namespace vemra::robot
