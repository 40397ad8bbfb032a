#include "robot/services/navigation/drive/navigation_drive.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "robot/base/clock.h"
#include "robot/planning/lines.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

// Along a path.
constexpr double kArrivedMm = 30;
constexpr double kAheadMm = 260;
constexpr double kSeeAroundMm = 700;
constexpr int kDecideEveryFrames = 3;
// Nearest place on the path: a robot that was pushed back or cut a corner is found again.
constexpr double kBackMm = 150;
constexpr double kForthMm = 500;
constexpr double kGainMm = 20;
constexpr int kPatienceFrames = 200;
constexpr int kBlockedFrames = 90;
constexpr double kTurnToPathDeg = 6;
constexpr double kTurnToPathDegS = 80;
constexpr int kBackOffFrames = 30;
constexpr double kBackOffMmS = -80;
constexpr int kMostTimesBacked = 3;
constexpr double kCreepMmS = 60;
constexpr double kCreepLookS = 1;
constexpr double kClosedInMm = 25;
constexpr double kUnsureMm = 10;
constexpr double kFrameS = kFrameMs / 1000.0;

// Straight to a point.
constexpr double kThereMm = 15;
constexpr double kPastMm = 60;
constexpr double kFacingDeg = 4;
constexpr double kLostDeg = 40;
constexpr double kStraightMmS = 150;
constexpr double kSlowMmS = 40;
constexpr double kTurnDegS = 60;
constexpr double kLeastTurnDegS = 12;

double headingTo(const PoseMm& from, PointMm to)
{
    const PointMm way = to - from.at;
    return wrapped({degreesOfRadians(std::atan2(way.y, way.x)).value - from.yaw.value}).value;
}

// Where a short way leads clearly away from what is too near; no value when nothing is, or no way does.
std::optional<Degrees> headingClear(const PoseMm& pose, std::span<const PointMm> obstacles)
{
    constexpr int kHeadings = 36;
    constexpr double kWayMm = 60;
    constexpr double kTooNearMm = 10;
    constexpr double kWorthMm = 5;
    const double here = clearanceTo(obstacles, pose.at);
    if (here >= kTooNearMm) {
        return std::nullopt;
    }
    std::optional<Degrees> best;
    double most = here + kWorthMm;
    for (int i = 0; i < kHeadings; ++i) {
        const Degrees heading{i * 360.0 / kHeadings};
        const double there = clearanceTo(obstacles, pose.at + kWayMm * direction(heading));
        if (there > most) {
            most = there;
            best = heading;
        }
    }
    return best;
}

}  // namespace

bool PathDriveAction::begin()
{
    line_ = getParam<LinePtr>("path").value_or(nullptr);
    if (!line_ || line_->empty()) {
        return false;
    }
    length_mm_ = lengthOf(*line_);
    along_mm_ = nearestOnLine(*line_, view_.map.pose().at, 0, length_mm_).along_mm;
    best_left_mm_ = length_mm_ + 1e9;
    frames_without_gain_ = 0;
    frames_blocked_ = 0;
    frames_backing_ = 0;
    times_backed_ = 0;
    frames_ = 0;
    motion_ = {};
    return true;
}

bool PathDriveAction::stuck(double left_mm)
{
    if (left_mm < best_left_mm_ - kGainMm) {
        best_left_mm_ = left_mm;
        frames_without_gain_ = 0;
    } else {
        ++frames_without_gain_;
    }
    return frames_without_gain_ > kPatienceFrames || frames_blocked_ > kBlockedFrames;
}

// Where no arc is open it turns to the path, and then backs off a little to try again from there.
void PathDriveAction::decide(const PoseMm& pose, double left_mm)
{
    if (frames_backing_ > 0) {
        frames_backing_ -= kDecideEveryFrames;
        return;
    }
    const std::vector<PointMm> obstacles = obstaclesAround(view_.map, view_.switches, kSeeAroundMm);
    const PointMm carrot = pointAlong(*line_, along_mm_ + kAheadMm);
    if (const auto motion = towards(carrot, left_mm, pose, obstacles, DriveLimits{})) {
        motion_ = *motion;
        frames_blocked_ = 0;
        return;
    }
    const double off = headingTo(pose, carrot);
    frames_blocked_ += kDecideEveryFrames;
    if (std::abs(off) > kTurnToPathDeg) {
        motion_ = {0, std::copysign(kTurnToPathDegS, off)};
        return;
    }
    // Closed in, it feels its way on: what the map says of a few millimetres is not sure.
    const Motion creep{kCreepMmS, 0};
    const double here = clearanceTo(obstacles, pose.at);
    const double there = clearanceTo(obstacles, after(pose, creep, kCreepLookS).at);
    if (here < kClosedInMm && there > std::min(here, 0.0) - kUnsureMm) {
        frames_blocked_ -= kDecideEveryFrames;
        motion_ = creep;
        return;
    }
    const Motion back{kBackOffMmS, 0};
    const double room = clearanceTo(obstacles, after(pose, back, kBackOffFrames * kFrameS).at);
    if (times_backed_ < kMostTimesBacked && room > here) {
        ++times_backed_;
        frames_backing_ = kBackOffFrames;
        motion_ = back;
    } else if (const auto clear = headingClear(pose, obstacles)) {
        // Too near to something on all sides, it gets to where there is the most room first.
        const double turn = wrapped({clear->value - pose.yaw.value}).value;
        motion_ = std::abs(turn) > kTurnToPathDeg ? Motion{0, std::copysign(kTurnToPathDegS, turn)} : creep;
    } else {
        motion_ = {};
    }
}

BT::NodeStatus PathDriveAction::advance()
{
    const PoseMm pose = view_.map.pose();
    const double to_end = distance(pose.at, line_->back());
    if (to_end <= kArrivedMm) {
        return BT::NodeStatus::SUCCESS;
    }
    const PlaceOnLine here =
        nearestOnLine(*line_, pose.at, std::max(0.0, along_mm_ - kBackMm), along_mm_ + kForthMm);
    along_mm_ = here.along_mm;
    // What is left: along the path, and back to it.
    const double left = std::max(to_end, length_mm_ - along_mm_ + here.away_mm);
    if (stuck(left)) {
        return BT::NodeStatus::FAILURE;
    }
    if (frames_++ % kDecideEveryFrames == 0) {
        decide(pose, left);
    }
    driveArc(motion_.forward, motion_.turn);
    return BT::NodeStatus::RUNNING;
}

bool PointDriveAction::begin()
{
    const auto to = pointOf(*this, "target_point");
    if (!to) {
        return false;
    }
    to_ = *to;
    best_mm_ = 1e9;
    frames_without_gain_ = 0;
    facing_ = false;
    return true;
}

BT::NodeStatus PointDriveAction::advance()
{
    const PoseMm pose = view_.map.pose();
    const double away = distance(pose.at, to_);
    if (away <= kThereMm) {
        return BT::NodeStatus::SUCCESS;
    }
    const double off = headingTo(pose, to_);
    facing_ = facing_ ? std::abs(off) < kLostDeg : std::abs(off) < kFacingDeg;
    if (facing_ || away > best_mm_ + kPastMm) {
        if (away < best_mm_ - 5) {
            best_mm_ = away;
            frames_without_gain_ = 0;
        } else if (++frames_without_gain_ > kPatienceFrames) {
            return BT::NodeStatus::FAILURE;
        }
    }
    if (!facing_) {
        // Beside the point and about to turn round for a few millimetres: it is there.
        if (best_mm_ < 2 * kThereMm && away < 2 * kThereMm) {
            return BT::NodeStatus::SUCCESS;
        }
        if (away > best_mm_ + kPastMm) {
            return BT::NodeStatus::FAILURE;
        }
        driveArc(0, std::copysign(std::clamp(2 * std::abs(off), kLeastTurnDegS, kTurnDegS), off));
        return BT::NodeStatus::RUNNING;
    }
    driveArc(std::clamp(2 * away, kSlowMmS, kStraightMmS), std::clamp(3 * off, -kTurnDegS, kTurnDegS));
    return BT::NodeStatus::RUNNING;
}

}  // namespace vemra::robot
