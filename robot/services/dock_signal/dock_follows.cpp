#include "robot/services/dock_signal/dock_follows.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

constexpr double kFollow = 200;    // mm/s
constexpr double kFinal = 150;     // mm/s
constexpr double kSlowFinal = 80;  // mm/s, close to the face
constexpr double kBackIn = 60;     // mm/s
constexpr double kSurround = 120;  // mm/s
constexpr double kSteerGain = 2.5;
constexpr double kMostTurn = 60;  // degrees/s
constexpr double kOnTheSpotDeg = 45;
/// Without a signal the robot feels its way on.
constexpr double kSilentShare = 0.5;

constexpr double kCentreAheadMm = 500;
constexpr double kCentralDeg = 13;  // in the middle of its sector
constexpr double kSideDeg = 40;     // likewise

constexpr double kCloseMm = 500;
constexpr double kAlongLineMm = 900;
constexpr double kOnLineDegPerMm = 0.4;
constexpr double kDegPerMmLeft = 0.15;
constexpr double kFirstDeg = 35;
constexpr double kLastDeg = 4;
/// How far the dock is kept off straight ahead for each step of DockHearing::side(), to get onto the line.
constexpr double kDegPerSide = 4;
constexpr double kMostSideDeg = 10;
constexpr std::uint64_t kLostFrames = 50;
constexpr std::uint64_t kMiddleGoneFrames = 100;
constexpr double kNearerMm = 50;

constexpr double kSurroundMm = 500;
constexpr double kIndirectMm = 800;
constexpr double kInwardsDegPerMm = 0.1;
constexpr double kMostInwardsDeg = 40;

constexpr double kLineDegPerMm = 0.15;
constexpr double kMostLineDeg = 15;

}  // namespace

BT::NodeStatus DockDrive::advance()
{
    if (state_.contacts.touching()) {
        drive({});
        return BT::NodeStatus::RUNNING;
    }
    look_();
    return approach();
}

std::optional<DockDrive::BesideLine> DockDrive::besideLine()
{
    const auto emitter = hearing_.emitter();
    const auto looks = hearing_.looks();
    if (!emitter || !looks) {
        return std::nullopt;
    }
    const PointMm from_dock = body().odometry().at - *emitter;
    const PointMm out = direction(*looks);
    return BesideLine{*looks, out.x * from_dock.y - out.y * from_dock.x};
}

void DockDrive::steer(double mm_s, double bearing_deg)
{
    const double turn = std::clamp(kSteerGain * bearing_deg, -kMostTurn, kMostTurn);
    driveArc(std::abs(bearing_deg) > kOnTheSpotDeg ? 0 : mm_s, turn);
}

BT::NodeStatus FollowDockSignalAction::approach()
{
    const bool silent = !hearing().hearsAny();
    steer(silent ? kSilentShare * kFollow : kFollow, hearing().bearingDeg().value_or(0));
    return BT::NodeStatus::RUNNING;
}

BT::NodeStatus FollowDockSignalFindCenterAction::approach()
{
    const double bearing = hearing().bearingDeg().value_or(0);
    const double away = hearing().awayMm().value_or(kCentreAheadMm);
    double off_line = 0;  // to the right as the robot faces the dock
    for (const Receiver receiver : {Receiver::MiddleLeft, Receiver::MiddleRight}) {
        const DockSignal signal = hearing().at(receiver);
        const double wide =
            signal == DockSignal::CentralLeft || signal == DockSignal::CentralRight ? kCentralDeg : kSideDeg;
        off_line += isRightHand(signal) ? wide / 2 : isLeftHand(signal) ? -wide / 2 : 0;
    }
    double aside = 0;
    if (away > kCentreAheadMm) {
        const double angle = radians({off_line});
        aside = degreesOfRadians(
                    std::atan2(kCentreAheadMm * std::sin(angle), away - kCentreAheadMm * std::cos(angle)))
                    .value;
    }
    const bool silent = !hearing().hearsAny();
    steer(silent ? kSilentShare * kFollow : kFollow, bearing + aside);
    return BT::NodeStatus::RUNNING;
}

bool FollowDockSignalFinalAction::begin()
{
    begun_ = state().frame;
    nearest_mm_ = 1e9;
    ++approaches_.begun;
    return true;
}

BT::NodeStatus FollowDockSignalFinalAction::approach()
{
    const double away = hearing().awayMm().value_or(kCloseMm);
    if (hearing().frontHears()) {
        nearest_mm_ = std::min(nearest_mm_, away);
    }
    if (std::min(hearing().frontSilentFrames(), state().frame - begun_) >= kLostFrames) {
        const bool nearer = nearest_mm_ < approaches_.failed_at_mm - kNearerMm;
        if (nearer || hearing().offMiddleFrames() >= kMiddleGoneFrames) {
            approaches_.failed_at_mm = std::min(nearest_mm_, approaches_.failed_at_mm);
            return BT::NodeStatus::FAILURE;
        }
    }
    // Along the line as far as it is known: right before the face the receivers look past each side of it.
    // The nearer the face the straighter, so that the robot arrives as it has to stand.
    if (const auto line = besideLine(); line && away <= kAlongLineMm) {
        const double most = std::clamp(kDegPerMmLeft * (away - kRobotRadiusMm), kLastDeg, kFirstDeg);
        const double wanted =
            line->looks.value + 180 + std::clamp(kOnLineDegPerMm * line->to_left_mm, -most, most);
        steer(away > kCloseMm ? kFinal : kSlowFinal, wrapped({wanted - body().odometry().yaw.value}).value);
        return BT::NodeStatus::RUNNING;
    }
    // A robot on the right of the line turns a little left of the dock, and so gets onto the line.
    const double aside = std::clamp(kDegPerSide * hearing().side(), -kMostSideDeg, kMostSideDeg);
    steer(away > kCloseMm ? kFinal : kSlowFinal, hearing().bearingDeg().value_or(0) + aside);
    return BT::NodeStatus::RUNNING;
}

bool SurroundChargerAction::begin()
{
    std::string way;
    if (!getParam("direction", way)) {
        return false;
    }
    left_ = way.starts_with("Left");
    radius_mm_ = way.ends_with("Indirect") ? kIndirectMm : kSurroundMm;
    const PoseMm now = body().odometry();
    guess_ = now.at + radius_mm_ * direction({now.yaw.value + (left_ ? 90.0 : -90.0)});
    return true;
}

// A robot that keeps the dock on its left comes from the left-hand signals.
bool SurroundChargerAction::passedLine() const
{
    const DockSignal signal = hearing().at(left_ ? Receiver::Left : Receiver::Right);
    return signal == DockSignal::Middle || (left_ ? isRightHand(signal) : isLeftHand(signal));
}

BT::NodeStatus SurroundChargerAction::approach()
{
    if (radius_mm_ == kSurroundMm && passedLine()) {
        blackboard()->set("docking_small_loop_break", std::string("true"));
    }
    const PoseMm now = body().odometry();
    const PointMm from_dock = now.at - hearing().emitter().value_or(guess_);
    const double outward = degreesOfRadians(std::atan2(from_dock.y, from_dock.x)).value;
    const double inwards = std::clamp(kInwardsDegPerMm * (std::hypot(from_dock.x, from_dock.y) - radius_mm_),
                                      -kMostInwardsDeg, kMostInwardsDeg);
    const double heading = left_ ? outward + 90 + inwards : outward - 90 - inwards;
    steer(kSurround, wrapped({heading - now.yaw.value}).value);
    return BT::NodeStatus::RUNNING;
}

BT::NodeStatus BackOntoDockAction::approach()
{
    double turn = 0;
    if (const auto line = besideLine()) {
        // The robot looks where the dock looks; beside the line it turns its back to it.
        const double wanted =
            line->looks.value + std::clamp(kLineDegPerMm * line->to_left_mm, -kMostLineDeg, kMostLineDeg);
        turn = kSteerGain * wrapped({wanted - body().odometry().yaw.value}).value;
    }
    driveArc(-kBackIn, std::clamp(turn, -kMostTurn, kMostTurn));
    return BT::NodeStatus::RUNNING;
}

}  // namespace vemra::robot
