#include "robot/services/motion/motion_turns.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

constexpr double kDefaultTurn = 60;  // degrees/s
constexpr double kSlowestTurn = 6;   // degrees/s, at the end of a turn
constexpr double kEaseOff = 400;     // degrees/s^2
constexpr double kCloseEnough = 0.5;
constexpr double kFullTurn = 360;

}  // namespace

void TurnControl::begin(const Body& body, double turn_deg, double deg_s)
{
    target_deg_ = body.odometry().yaw.value + turn_deg;
    deg_s_ = deg_s;
}

double TurnControl::remaining(const Body& body) const
{
    return target_deg_ - body.odometry().yaw.value;
}

bool TurnControl::done(const Body& body) const
{
    return std::abs(remaining(body)) <= kCloseEnough;
}

double TurnControl::rate(const Body& body) const
{
    const double left = remaining(body);
    // As fast as it may be to stop in time.
    const double fast = std::sqrt(2 * kEaseOff * std::abs(left));
    return std::copysign(std::min(deg_s_, std::max(kSlowestTurn, fast)), left);
}

bool RotateAction::begin()
{
    double angle = 0;
    if (!getParam("angle_deg", angle)) {
        return false;
    }
    double deg_s = kDefaultTurn;
    getParam("angular_velocity_deg_s", deg_s);
    bool absolute = false;
    getParam("false_relative_true_absolute", absolute);
    if (absolute) {
        angle = wrapped({angle - pose_.pose().yaw.value}).value;
    }
    turn_.begin(body(), angle, std::max(std::abs(deg_s), kSlowestTurn));
    return true;
}

BT::NodeStatus RotateAction::advance()
{
    if (turn_.done(body())) {
        return BT::NodeStatus::SUCCESS;
    }
    driveArc(0, turn_.rate(body()));
    return BT::NodeStatus::RUNNING;
}

bool TurnAroundAction::begin()
{
    double angle = 0;
    double max_mm_s = 0;
    double max_deg_s = 0;
    if (!getParam("turn_angle", angle) || !getParam("turn_radius", radius_mm_) ||
        !getParam("max_linear_speed", max_mm_s) || !getParam("max_angular_speed", max_deg_s)) {
        return false;
    }
    radius_mm_ = std::abs(radius_mm_);
    // On an arc of this radius v = r * w.
    const double by_way = radius_mm_ > 0 ? degreesOfRadians(max_mm_s / radius_mm_).value : kFullTurn;
    turn_.begin(body(), angle, std::min(max_deg_s, by_way));
    return true;
}

BT::NodeStatus TurnAroundAction::advance()
{
    if (turn_.done(body())) {
        return BT::NodeStatus::SUCCESS;
    }
    const double rate = turn_.rate(body());
    driveArc(radius_mm_ * std::abs(radians({rate})), rate);
    return BT::NodeStatus::RUNNING;
}

}  // namespace vemra::robot
