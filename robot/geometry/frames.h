#pragma once

#include "robot/geometry/points.h"

namespace vemra::robot {

// A pose is a frame too: x ahead of it, y to its left.

/// A place that is given in a frame, and the place seen from it.
inline PointMm placed(const PoseMm& frame, PointMm inner)
{
    const PointMm ahead = direction(frame.yaw);
    return frame.at + PointMm{inner.x * ahead.x - inner.y * ahead.y, inner.x * ahead.y + inner.y * ahead.x};
}
inline PointMm seenFrom(const PoseMm& frame, PointMm place)
{
    const PointMm ahead = direction(frame.yaw);
    const PointMm off = place - frame.at;
    return {off.x * ahead.x + off.y * ahead.y, ahead.x * off.y - ahead.y * off.x};
}

/// The same of poses.
inline PoseMm placed(const PoseMm& frame, const PoseMm& inner)
{
    return {placed(frame, inner.at), {frame.yaw.value + inner.yaw.value}};
}
inline PoseMm seenFrom(const PoseMm& frame, const PoseMm& pose)
{
    return {seenFrom(frame, pose.at), {pose.yaw.value - frame.yaw.value}};
}

}  // namespace vemra::robot
