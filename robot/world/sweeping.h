#pragma once

#include "robot/geometry/points.h"

namespace vemra::robot {

// What the robot sweeps with. The body is a disc of kRobotRadiusMm; the pose is its middle.

/// The brush lies across the middle and reaches so far to both sides.
inline constexpr double kBrushWidthMm = 200;
/// The side brush is a disc at the front right.
inline constexpr double kSideBrushAheadMm = 75;
inline constexpr double kSideBrushRightMm = 110;
inline constexpr double kSideBrushRadiusMm = 85;
/// The farthest from the middle that any of them gets, at some heading.
inline constexpr double kSweepReachMm = 218;
/// The speed on a cleaning line: what the ideal time is reckoned with.
inline constexpr double kLineSpeedMmS = 300;

/// Calls visit(PointMm) for points no more than step_mm apart in all that brush and side brush touch at one
/// pose. A cell smaller than that is never skipped.
template <class Visit>
void forSweptPoints(const PoseMm& pose, double step_mm, const Visit& visit)
{
    const PointMm ahead = direction(pose.yaw);
    const PointMm left{-ahead.y, ahead.x};
    for (double across = -kBrushWidthMm / 2; across <= kBrushWidthMm / 2; across += step_mm) {
        visit(pose.at + across * left);
    }
    const PointMm middle = pose.at + kSideBrushAheadMm * ahead - kSideBrushRightMm * left;
    for (double dy = -kSideBrushRadiusMm; dy <= kSideBrushRadiusMm; dy += step_mm) {
        for (double dx = -kSideBrushRadiusMm; dx <= kSideBrushRadiusMm; dx += step_mm) {
            if (dx * dx + dy * dy <= kSideBrushRadiusMm * kSideBrushRadiusMm) {
                visit(middle + PointMm{dx, dy});
            }
        }
    }
}

/// The poses between two, near enough for what is swept to have no gaps of step_mm; `to` among them, `from`
/// not. A robot that was carried sweeps nothing on its way: more than kCarriedMm apart gives `to` alone.
inline constexpr double kCarriedMm = 100;
template <class Visit>
void forPosesBetween(const PoseMm& from, const PoseMm& to, double step_mm, const Visit& visit)
{
    const double turn = wrapped({to.yaw.value - from.yaw.value}).value;
    const double way = distance(from.at, to.at) + kSweepReachMm * std::abs(radians({turn}));
    const int steps = distance(from.at, to.at) > kCarriedMm ? 1 : 1 + static_cast<int>(way / step_mm);
    for (int i = 1; i <= steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        visit(PoseMm{from.at + share * (to.at - from.at), {from.yaw.value + share * turn}});
    }
}

}  // namespace vemra::robot
