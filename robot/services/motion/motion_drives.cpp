#include "robot/services/motion/motion_drives.h"

#include <algorithm>
#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"

namespace vemra::robot {
namespace {

constexpr double kBackwards = 100;  // mm/s
constexpr double kDetachedMm = 600;
constexpr double kLevelDeg = 2;

constexpr double kLineSpeed = 300;  // mm/s
constexpr double kSlowest = 60;     // mm/s, at the end of a line
constexpr double kArrivedMm = 15;
constexpr double kFaceTurn = 100;      // degrees/s
constexpr double kMostSteer = 60;      // degrees/s
constexpr double kOffLineGain = 0.15;  // degrees of steering a mm beside the line
constexpr double kMostSteerDeg = 15;
constexpr double kSteerGain = 3;  // degrees/s a degree
constexpr double kEaseOff = 800;  // mm/s^2, before the end

}  // namespace

BT::NodeStatus OpenCloseMoveAction::advance()
{
    WheelSpeeds speeds;
    if (!getParam("left_mm_s", speeds.left) || !getParam("right_mm_s", speeds.right)) {
        return BT::NodeStatus::FAILURE;
    }
    drive(speeds);
    return BT::NodeStatus::RUNNING;
}

BT::NodeStatus GoBackwardsAction::advance()
{
    drive({-kBackwards, -kBackwards});
    return BT::NodeStatus::RUNNING;
}

bool DetachAction::begin()
{
    from_ = body().odometry().at;
    tilted_ = body().tiltDeg() > kLevelDeg;
    return true;
}

BT::NodeStatus DetachAction::advance()
{
    double speed = 0;
    if (!getParam("back_speed", speed)) {
        return BT::NodeStatus::FAILURE;
    }
    const bool level = body().tiltDeg() <= kLevelDeg;
    if (level && (tilted_ || distance(from_, body().odometry().at) >= kDetachedMm)) {
        return BT::NodeStatus::SUCCESS;
    }
    drive({speed, speed});
    return BT::NodeStatus::RUNNING;
}

bool StraightDriveAction::begin()
{
    const auto target = pointOf(*this, "target_point");
    if (!target) {
        return false;
    }
    const PoseMm now = pose_.pose();
    from_ = now.at;
    to_ = *target;
    facing_ = distance(from_, to_) <= kArrivedMm;
    const PointMm way = to_ - from_;
    const double heading = degreesOfRadians(std::atan2(way.y, way.x)).value;
    turn_.begin(body(), facing_ ? 0 : wrapped({heading - now.yaw.value}).value, kFaceTurn);
    return true;
}

BT::NodeStatus StraightDriveAction::advance()
{
    if (!facing_) {
        facing_ = turn_.done(body());
        if (!facing_) {
            driveArc(0, turn_.rate(body()));
            return BT::NodeStatus::RUNNING;
        }
    }
    const PoseMm now = pose_.pose();
    const PointMm way = to_ - from_;
    const double length = std::hypot(way.x, way.y);
    if (length <= kArrivedMm) {
        return BT::NodeStatus::SUCCESS;
    }
    const PointMm along = 1 / length * way;
    const PointMm gone = now.at - from_;
    const double left_mm = length - (gone.x * along.x + gone.y * along.y);
    if (left_mm <= kArrivedMm) {
        return BT::NodeStatus::SUCCESS;
    }
    const double off_line_mm = along.x * gone.y - along.y * gone.x;  // to the left of the line
    const double line_deg = degreesOfRadians(std::atan2(way.y, way.x)).value;
    const double wanted = line_deg - std::clamp(kOffLineGain * off_line_mm, -kMostSteerDeg, kMostSteerDeg);
    const double steer = kSteerGain * wrapped({wanted - now.yaw.value}).value;
    driveArc(std::clamp(std::sqrt(2 * kEaseOff * left_mm), kSlowest, kLineSpeed),
             std::clamp(steer, -kMostSteer, kMostSteer));
    return BT::NodeStatus::RUNNING;
}

}  // namespace vemra::robot
