#pragma once

#include <optional>
#include <span>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

/// A way of moving: forward speed in mm/s, turn to the left in degrees/s.
struct Motion
{
    double forward = 0;
    double turn = 0;
    bool operator==(const Motion&) const = default;
};

/// Where a robot is after it has moved so for some seconds.
PoseMm after(const PoseMm& from, const Motion& motion, double seconds);

/// From the edge of the robot to the nearest of the points, mm; negative when one is within it. Infinite
/// without points.
double clearanceTo(std::span<const PointMm> points, PointMm at);

/// The points within a distance of a place.
std::vector<PointMm> within(std::span<const PointMm> points, PointMm at, double radius_mm);

// --- along a path

struct DriveLimits
{
    double forward_mm_s = 300;
    double turn_deg_s = 100;
    double braking_mm_s2 = 600;  ///< with which it comes to rest at the end of the path
    double gap_mm = 12;          ///< it keeps so far off where it can
};

/// The motion of the next moment towards `carrot`, a point of the path a little ahead: of a fan of arcs the
/// one that ends nearest to it without coming too near to a point, and on the spot when the carrot is not
/// ahead (dynamic window approach; Fox, Burgard and Thrun 1997). `left_mm` is the way to the end of the path.
/// Nothing when every arc is blocked.
std::optional<Motion> towards(PointMm carrot, double left_mm, const PoseMm& pose,
                              std::span<const PointMm> obstacles, const DriveLimits& limits);

// --- along a wall

enum class Side : unsigned char
{
    Left,
    Right
};

struct FollowManner
{
    Side wall = Side::Right;
    double gap_mm = 15;  ///< between the robot's edge and the wall
    double forward_mm_s = 250;
    double most_towards_deg_s = 78;  ///< turn towards the wall's side; 0 while it is still to be found
};

/// The motion of the next moment along a wall: of the arcs that keep the gap the one that turns most towards
/// the wall's side, the faster ones first; on the spot away from the wall when none is left. Where the wall
/// ends it curves round the corner; into a corner it goes until it can only turn.
Motion alongWall(const PoseMm& pose, std::span<const PointMm> obstacles, const FollowManner& manner);

/// The side on which an obstacle should be kept so that the way along it leads more or less along `wanted`.
/// Both are headings from the robot.
Side sideFor(Degrees obstacle, Degrees wanted);
/// Whether a wall on this side still is in the way of where the robot wants to go: false once that lies
/// clearly on the free side.
bool wallIsInTheWay(Side wall, Degrees heading, Degrees wanted);

}  // namespace vemra::robot
