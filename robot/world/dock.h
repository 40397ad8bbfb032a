#pragma once

#include <optional>
#include <string>

#include "robot/world/home.h"

namespace vemra::robot {

inline constexpr double kRobotRadiusMm = 175;

struct Dock
{
    /// Where the dock's face stands at the wall; yaw is the direction in which it looks into the room.
    PoseMm face;
    bool backwards = false;  ///< the robot's contacts are at its back: it backs onto the dock
    bool operator==(const Dock&) const = default;
};

/// Docked, the robot touches the dock's face and looks at it; backed onto the dock, it looks into the room.
PoseMm dockedPose(const Dock& dock);

/// Throws InputError with the given file and line, naming what is wrong: the dock lies outside the map or in
/// a wall, the robot does not fit onto it, or it cannot back out 500 mm. What a map says about a dock is
/// believed to one cell, 50 mm.
void checkDock(const Home& home, const Dock& dock, const std::string& file, int line);

/// A place for a dock in a home that names none: the middle of the longest free stretch of wall, whatever its
/// angle, 600 mm at least with 1 m of free floor before it, on the largest floor that the robot can drive on.
/// Where there is no such wall the needs are lowered by steps. The same home gives the same place. No value
/// if there is none.
std::optional<Dock> placeDock(const Home& home);

/// Whether a yaw cannot be meant in degrees: it lies within a turn in radians and has more than three
/// decimals.
bool canOnlyBeRadians(double yaw);
/// Whether the yaw is at least doubtful: also a rounded fraction of pi, as 1.57.
bool looksLikeRadians(const Dock& dock);

/// "X,Y,DEG": metres and degrees, as in "1.25,-0.4,90". Throws InputError for "--dock".
Dock parseDock(const std::string& text);

/// The form that parse_dock reads.
std::string toText(const Dock& dock);

}  // namespace vemra::robot
